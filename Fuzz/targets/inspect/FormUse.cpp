#include "targets/inspect/FormUse.h"

#include <KivInspect/JsonForm.h>
#include <KivInspect/TextForm.h>

#include "targets/PeakBuffer.h"
#include "targets/Require.h"
#include "targets/TreeUse.h"

namespace KivFuzz {
namespace {

constexpr std::size_t kBytesPerByte = 64;
constexpr std::size_t kBytesAtLeast = std::size_t{1} << 20;

}  // namespace

std::string TextOf(const KivGenerics::Tree& tree) {
    KivInspect::StringSink sink;
    KivInspect::WriteText(&tree, sink);
    return sink.GetText();
}

std::string JsonOf(const KivGenerics::Tree& tree) {
    KivInspect::StringSink sink;
    KivInspect::WriteJson(&tree, sink);
    return sink.GetText();
}

KivStorage::LoadResult LoadText(std::string_view text) {
    KivInspect::MemorySource source(text);
    return KivInspect::ReadText(source, "input");
}

KivStorage::LoadResult LoadJson(std::string_view text) {
    KivInspect::MemorySource source(text);
    return KivInspect::ReadJson(source, "input");
}

void CheckForm(KivStorage::LoadResult (*load)(std::string_view text), std::string_view text) {
    KivStorage::LoadResult loaded;
    {
        const PeakBuffers buffers;
        loaded = load(text);
        Require(buffers.GetReserved() <= kBytesPerByte * text.size() + kBytesAtLeast,
                "A form takes more memory than its size allows.");
    }
    Require(loaded.result.Ok() == static_cast<bool>(loaded.tree), "A refused form hands over a tree.");
    Require(loaded.result.Ok() || loaded.result.sentence.rfind("input", 0) == 0, "A refusal does not name the place.");
    if (!loaded.tree) {
        return;
    }
    const std::string asText = TextOf(*loaded.tree);
    const auto fromText = LoadText(asText);
    Require(fromText.result.Ok(), "What was written as text does not read back.");
    Require(TextOf(*fromText.tree) == asText, "What was written as text reads back otherwise.");
    const auto fromJson = LoadJson(JsonOf(*loaded.tree));
    Require(fromJson.result.Ok(), "What was written as JSON does not read back.");
    Require(TextOf(*fromJson.tree) == asText, "What was written as JSON reads back otherwise.");
    UseTree(*loaded.tree);
}

}  // namespace KivFuzz
