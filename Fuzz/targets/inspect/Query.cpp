#include <string>

#include <KivBase/Utf.h>
#include <KivInspect/Find.h>
#include <KivInspect/Key.h>
#include <KivInspect/KeyPattern.h>
#include <KivInspect/Names.h>
#include <KivInspect/Regex.h>

#include "storage/Support.h"
#include "targets/Require.h"
#include "targets/inspect/InspectTargets.h"

namespace KivFuzz {
namespace {

using namespace KivInspect;

/// The characters up to the next line's end, which is taken away with them.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

Names NewNames() {
    Names names;
    names.SetTag(KivGenerics::SemanticTag(4100), "group");
    names.SetIndex(KivGenerics::SemanticTag(4100), 1, "a:b\\");
    names.SetIndex(KivGenerics::SemanticTag(4100), 2, "17");
    names.SetIndex(KivGenerics::SemanticTag(4100), 3, "");
    return names;
}

/// Whatever is found must match, and be found by its own key.
void Search(const KivGenerics::Tree& tree, const Names& names, std::string_view regex, std::string_view pattern) {
    FindQuery query;
    query.key = KeyPattern(pattern);
    if (auto compiled = Regex::Compile(regex, pattern.size() % 2 == 1); compiled.problem.empty()) {
        query.regex = compiled.regex;
    }
    Find(&tree, query, &names, [&](KivGenerics::Node* node, const Walk& walk) {
        Require(FindNode(&tree, walk.GetKey()).node == node, "A node is not found by its own key.");
        Require(FindNode(&tree, walk.GetKey(&names), &names).node == node, "A node is not found by its names.");
        return true;
    });
}

void LookUp(const KivGenerics::Tree& tree, const Names& names, std::string_view key) {
    const FoundNode found = FindNode(&tree, key, &names);
    Require((found.node == nullptr) != found.problem.empty(), "A key that names nothing has no sentence.");
    if (found.node != nullptr) {
        Require(FindNode(&tree, GetKey(found.node, &names), &names).node == found.node,
                "A node is not found by its own key.");
    }
}

}  // namespace

void RunQuery(const std::uint8_t* bytes, std::size_t count) {
    static const auto tree = StorageTest::TreeOfEveryKind();
    static const Names names = NewNames();
    std::string_view text(reinterpret_cast<const char*>(bytes), count);
    const std::string_view regex = TakeLine(text);
    const std::string_view pattern = TakeLine(text);
    LookUp(*tree, names, TakeLine(text));
    Search(*tree, names, regex, pattern);
    // The rest is text that the expression is tried on.
    if (const auto compiled = Regex::Compile(regex); compiled.problem.empty()) {
        const KivBase::WString units = KivBase::FromUtf8(std::string(text));
        compiled.regex.Matches(units.data(), units.size());
    }
}

}  // namespace KivFuzz
