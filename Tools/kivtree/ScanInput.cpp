#include "kivtree/ScanInput.h"

#include <filesystem>

#include <KivInspect/FileSource.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>

namespace KivTree {
namespace {

// Enough to tell the forms apart.
constexpr std::size_t kFirstBytes = 256;

KivInspect::Form DetectFormOfFile(const std::string& file) {
    std::string first(kFirstBytes, '\0');
    const auto read = [&first](KivInspect::Source& source, const std::string& /*place*/) {
        first.resize(source.Read(&first[0], first.size()));
        return KivStorage::Result{};
    };
    const KivStorage::Result result = KivInspect::ReadFile(std::filesystem::u8path(file), read);
    if (!result.Ok()) {
        throw Trouble(result.sentence);
    }
    return KivInspect::DetectForm(first);
}

}  // namespace

ScanInput OpenBinaryScan(const Context& context, const std::string& file) {
    ScanInput input;
    if (file == "-") {
        const std::string bytes = context.ReadStandardInput();
        input.bytes.assign(bytes.begin(), bytes.end());
        input.form = KivInspect::DetectForm(bytes);
        input.scanner = KivStorage::FileScanner::OpenMemory(input.bytes.data(), input.bytes.size());
    } else {
        input.form = DetectFormOfFile(file);
        input.scanner = KivStorage::FileScanner::OpenFile(std::filesystem::u8path(file));
    }
    if (!input.scanner->GetError().Ok()) {
        ThrowLoadFailure(file, input.scanner->GetError());
    }
    return input;
}

namespace {

/// The bytes that a save would write. What it would cut or leave out does no harm here; what makes data that no load takes does.
void SaveForScan(const std::string& file, KivGenerics::Tree* tree, std::vector<std::uint8_t>& bytes) {
    KivStorage::SaveOptions options;
    options.withTransient = true;
    KivStorage::Result saved = KivStorage::SaveTreeToMemory(tree, bytes, options);
    if (saved.code == KivStorage::StorageUnsavedParts) {
        options.saveDespiteLosses = true;
        saved = KivStorage::SaveTreeToMemory(tree, bytes, options);
        if (saved.Ok() && !KivStorage::LoadTreeFromMemory(bytes.data(), bytes.size()).result.Ok()) {
            throw Trouble(file + " holds a tree that has no binary form, of which this would tell. kivtree check " +
                          file + " lists the nodes that a save would lose.");
        }
    }
    if (!saved.Ok()) {
        throw Trouble(saved.sentence);
    }
}

}  // namespace

ScanInput OpenScan(const Context& context, const std::string& file) {
    ScanInput input = OpenBinaryScan(context, file);
    if (input.form == KivInspect::Form::Binary) {
        return input;
    }
    KivInspect::LoadedFile loaded;
    if (file == "-") {
        loaded = KivInspect::LoadBytes(input.GetBytes(), "standard input");
    } else {
        loaded.tree = context.Load(file).tree;
    }
    if (!loaded.result.Ok()) {
        ThrowLoadFailure(file, loaded.result);
    }
    SaveForScan(file, loaded.tree.Get(), input.saved);
    input.scanner = KivStorage::FileScanner::OpenMemory(input.saved.data(), input.saved.size());
    return input;
}

}  // namespace KivTree
