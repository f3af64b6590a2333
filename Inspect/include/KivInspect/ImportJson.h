#pragma once

#include <cstdint>
#include <string>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/SemanticTag.h>
#include <KivGenerics/Tree.h>
#include <KivInspect/Names.h>
#include <KivInspect/Source.h>
#include <KivStorage/Options.h>
#include <KivStorage/Result.h>

namespace KivInspect {

// The tags of the maps that a JSON document becomes. Docs/json-form.md has the whole table.
inline constexpr auto ImportTagDocument = static_cast<KivGenerics::SemanticTag>(18000);  ///< the root
inline constexpr auto ImportTagObject =
    static_cast<KivGenerics::SemanticTag>(18001);    ///< members by number of their name
inline constexpr auto ImportTagList =
    static_cast<KivGenerics::SemanticTag>(18002);  ///< an array whose elements differ in kind
inline constexpr auto ImportTagNull = static_cast<KivGenerics::SemanticTag>(18003);
inline constexpr auto ImportTagValue =
    static_cast<KivGenerics::SemanticTag>(18004);   ///< around a document that is one value
inline constexpr auto ImportTagNumber =
    static_cast<KivGenerics::SemanticTag>(18005);  ///< around the digits of a number
inline constexpr auto ImportTagText = static_cast<KivGenerics::SemanticTag>(18006);  ///< around the pieces of a text

/// What an import answers: the tree, or null and the reason.
struct ImportResult {
    KivStorage::Result result;
    KivBase::ReturnPtrI<KivGenerics::Tree> tree;
    Names names;  ///< the names of the tags above, and of the members of objects
    std::uint64_t replaced = 0;  ///< members that a later one of the same name has replaced
};

/// Makes a tree of any JSON document, one that a save takes whole. `place` is how messages call it. The document is never in
/// memory, only the tree and its names are. Levels and bytes have the limits of saved files. Never throws but std::bad_alloc.
ImportResult ImportJson(Source& source, const std::string& place, const KivStorage::LoadOptions& options = {});

}  // namespace KivInspect
