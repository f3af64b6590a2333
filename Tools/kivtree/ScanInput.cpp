#include "kivtree/ScanInput.h"

#include <filesystem>

#include <KivInspect/FileSource.h>
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

ScanInput OpenBinaryScan(const std::string& file) {
    ScanInput input;
    if (file == "-") {
        const std::string bytes = Context::ReadStandardInput();
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

ScanInput OpenScan(Context& context, const std::string& file) {
    ScanInput input = OpenBinaryScan(file);
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
    KivStorage::SaveOptions options;
    options.withTransient = true;
    options.saveDespiteLosses = true;
    const KivStorage::Result saved = KivStorage::SaveTreeToMemory(loaded.tree.Get(), input.saved, options);
    if (!saved.Ok()) {
        throw Trouble(saved.sentence);
    }
    input.scanner = KivStorage::FileScanner::OpenMemory(input.saved.data(), input.saved.size());
    return input;
}

}  // namespace KivTree
