#include "kivtree/Forms.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <vector>

#include <KivBase/Utf.h>
#include <KivInspect/Diff.h>
#include <KivInspect/JsonForm.h>
#include <KivInspect/TextForm.h>
#include <KivInspect/Walk.h>
#include <KivStorage/SaveTree.h>
#include <KivStorage/UnsavedParts.h>

namespace KivTree {
namespace {

using KivGenerics::Tree;
using KivInspect::Form;

constexpr std::size_t PartsToTell = 20;

/// Says why a tree cannot be saved, part by part, and throws.
[[noreturn]] void RefuseLosses(Tree* tree) {
    const std::vector<KivStorage::UnsavedPart> parts = KivStorage::FindUnsavedParts(tree, true);
    for (std::size_t i = 0; i < parts.size() && i < PartsToTell; ++i) {
        const std::string key = KivBase::ToUtf8(parts[i].key);
        Context::Note((key.empty() ? "(root)" : key) + " " + parts[i].sentence);
    }
    throw Trouble("the binary form cannot hold this tree: " + std::to_string(parts.size()) +
                  " of its nodes would be lost or altered. The text and the JSON form hold any tree.");
}

void TellTemporary(Tree* tree) {
    std::uint64_t count = 0;
    KivInspect::Walk walk(tree->GetRoot());
    while (KivGenerics::Node* const node = walk.Next()) {
        if (node->GetTemporality() == KivGenerics::TemporalityTemporary) {
            ++count;
            walk.SkipChildren();
        }
    }
    if (count > 0) {
        Context::Note(std::to_string(count) + (count == 1 ? " temporary node is left out: it is never saved."
                                                          : " temporary nodes are left out: they are never saved."));
    }
}

void Prove(Tree* tree, const KivInspect::LoadedFile& back, const KivInspect::DiffOptions& options) {
    if (!back.result.Ok()) {
        throw Trouble("what was written does not read back: " + back.result.sentence + " Nothing was kept.");
    }
    std::string where;
    const KivInspect::DiffTotals totals =
        KivInspect::Diff(tree, back.tree.Get(), options, [&where](const KivInspect::Change& change) {
            where = change.key;
            return false;
        });
    if (totals.Any()) {
        throw Trouble("what was written reads back as another tree, first at \"" + where + "\". Nothing was kept.");
    }
}

std::vector<std::uint8_t> Save(Tree* tree) {
    std::vector<std::uint8_t> bytes;
    KivStorage::SaveOptions options;
    options.withTransient = true;
    const KivStorage::Result saved = KivStorage::SaveTreeToMemory(tree, bytes, options);
    if (saved.code == KivStorage::StorageUnsavedParts) {
        RefuseLosses(tree);
    }
    if (!saved.Ok()) {
        throw Trouble(saved.sentence);
    }
    return bytes;
}

/// Writes the form to a sink, while a bar shows how far it is.
void Write(Tree* tree, Form form, const OutputFile& out, KivInspect::Sink& sink,
           const std::function<std::uint64_t()>& written) {
    ProgressBar bar = out.NewBar("writing");
    if (form == Form::Text) {
        KivInspect::WriteText(tree, sink, bar.OfNodes(written));
    } else if (form == Form::Json) {
        KivInspect::WriteJson(tree, sink, bar.OfNodes(written));
    } else {
        const std::vector<std::uint8_t> bytes = Save(tree);
        constexpr std::size_t piece = 1U << 20U;
        for (std::size_t at = 0; at < bytes.size(); at += piece) {
            bar.Show(at, bytes.size());
            sink.Write({reinterpret_cast<const char*>(bytes.data()) + at, (std::min)(piece, bytes.size() - at)});
        }
    }
}

KivInspect::LoadedFile ReadBack(const OutputFile& out) {
    ProgressBar bar = out.NewBar("checking");
    KivInspect::LoadFileOptions options;
    options.progress = bar.OfBytes();
    return KivInspect::LoadFile(out.GetScratchPath(), options);
}

}  // namespace

Form ChooseForm(const std::string& name, const std::string& file) {
    const std::string ending = name.empty() ? std::filesystem::u8path(file).extension().u8string() : name;
    if (ending == "text" || ending == ".kivtext") {
        return Form::Text;
    }
    if (ending == "json" || ending == ".json") {
        return Form::Json;
    }
    if (ending == "binary" || ending == ".kiv") {
        return Form::Binary;
    }
    throw Trouble((file == "-" ? "standard output" : "\"" + file + "\"") +
                  " does not tell the form by an ending .kiv, .kivtext or .json: name it with --to.");
}

void WriteProved(Tree* tree, Form form, OutputFile& out) {
    KivInspect::DiffOptions kept;
    if (form == Form::Binary) {
        kept.limit = KivGenerics::TemporalityTransient;
    }
    if (out.GetScratchPath().empty()) {
        KivInspect::StringSink bytes;
        Write(tree, form, out, bytes, [&bytes] { return bytes.GetText().size(); });
        Prove(tree, KivInspect::LoadBytes(bytes.GetText(), "what was written"), kept);
        out.Write(bytes.GetText());
    } else {
        Write(tree, form, out, out, [&out] { return out.GetWritten(); });
        out.Finish();
        Prove(tree, ReadBack(out), kept);
    }
    if (form == Form::Binary) {
        TellTemporary(tree);
    }
}

}  // namespace KivTree
