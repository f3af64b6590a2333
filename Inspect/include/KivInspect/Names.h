#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <KivGenerics/SemanticTag.h>
#include <KivInspect/Sink.h>
#include <KivInspect/Source.h>
#include <KivStorage/Result.h>

namespace KivInspect {

/// A dictionary of names: of semantic tags and, within a tag, of the indexes of the maps that have it. All are UTF-8.
///
/// Nothing needs names: they are shown beside the numbers, and accepted in keys in their place.
class Names {
public:
    /// Replaces an older name.
    void SetTag(KivGenerics::SemanticTag tag, std::string name);
    void SetIndex(KivGenerics::SemanticTag tag, int index, std::string name);

    /// Null where there is no name.
    const std::string* FindTag(KivGenerics::SemanticTag tag) const;
    const std::string* FindIndex(KivGenerics::SemanticTag tag, int index) const;
    /// The smallest tag of that name.
    std::optional<KivGenerics::SemanticTag> FindTagByName(std::string_view name) const;
    /// The smallest index of that name in maps of `tag`.
    std::optional<int> FindIndexByName(KivGenerics::SemanticTag tag, std::string_view name) const;

    bool IsEmpty() const noexcept { return tags_.empty(); }

private:
    friend void WriteNames(const Names& names, Sink& sink);

    struct OfTag {
        std::optional<std::string> name;
        std::map<int, std::string> byIndex;
        std::map<std::string, int, std::less<>> byName;
    };

    std::map<KivGenerics::SemanticTag, OfTag> tags_;
    std::map<std::string, KivGenerics::SemanticTag, std::less<>> byName_;
};

/// Writes a dictionary as a JSON document, drawn in Docs/kivtree.md: one name a line, in ascending order.
void WriteNames(const Names& names, Sink& sink);

struct NamesResult {
    KivStorage::Result result;
    Names names;  ///< empty after a failure
};

/// Reads what WriteNames writes. `place` is how messages call the document.
NamesResult ReadNames(Source& source, const std::string& place);

}  // namespace KivInspect
