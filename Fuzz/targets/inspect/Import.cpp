#include <string>

#include <KivInspect/ImportJson.h>
#include <KivInspect/Names.h>
#include <KivStorage/UnsavedParts.h>

#include "targets/Require.h"
#include "targets/TreeUse.h"
#include "targets/inspect/FormUse.h"
#include "targets/inspect/InspectTargets.h"

namespace KivFuzz {
namespace {

std::string TextOf(const KivInspect::Names& names) {
    KivInspect::StringSink sink;
    KivInspect::WriteNames(names, sink);
    return sink.GetText();
}

/// A dictionary is refused with a sentence, or written to what reads back the same.
void CheckNames(std::string_view text) {
    KivInspect::MemorySource source(text);
    const auto read = KivInspect::ReadNames(source, "input");
    Require(read.result.Ok() || read.result.sentence.rfind("input", 0) == 0, "A refusal does not name the place.");
    Require(read.result.Ok() || read.names.IsEmpty(), "A refused dictionary has names.");
    const std::string written = TextOf(read.names);
    KivInspect::MemorySource again(written);
    const auto reread = KivInspect::ReadNames(again, "written");
    Require(reread.result.Ok(), "A dictionary that was written does not read back.");
    Require(TextOf(reread.names) == written, "A dictionary that was written reads back otherwise.");
}

}  // namespace

void RunImport(const std::uint8_t* bytes, std::size_t count) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), count);
    CheckNames(text);
    KivInspect::MemorySource source(text);
    const auto imported = KivInspect::ImportJson(source, "input");
    Require(imported.result.Ok() == static_cast<bool>(imported.tree), "A refused import hands over a tree.");
    Require(imported.result.Ok() || imported.result.sentence.rfind("input", 0) == 0,
            "A refusal does not name the place.");
    if (!imported.tree) {
        return;
    }
    CheckNames(TextOf(imported.names));
    CheckForm(LoadText, TextOf(*imported.tree));
    Require(KivStorage::FindUnsavedParts(imported.tree.Get()).empty(), "A save does not take an imported tree whole.");
    CheckRoundTrip(*imported.tree, false);
}

}  // namespace KivFuzz
