#include "kivtree/Context.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include <KivInspect/FileSource.h>

#include "kivtree/system/System.h"

namespace KivTree {
namespace {

bool WantsColors(const std::string& when) {
    if (when != "auto") {
        return when == "always";
    }
    const char* const no = std::getenv("NO_COLOR");
    return IsOutputTerminal() && (no == nullptr || *no == '\0');
}

/// Damage, of which a salvage may save something: what an intact file would not be called.
bool IsDamage(std::int32_t code) {
    using namespace KivStorage;
    return code == StorageHeaderDamaged || code == StorageTruncated || code == StorageBlockLength ||
           code == StorageBlockDamaged || code == StorageTrailerDamaged || code == StorageTotalsDiffer ||
           code == StorageTrailingBytes;
}

}  // namespace

void ThrowLoadFailure(const std::string& file, const KivStorage::Result& result) {
    std::string sentence = result.sentence;
    std::error_code ignored;
    if (result.code == KivStorage::StorageTruncated && file != "-" &&
        std::filesystem::file_size(std::filesystem::u8path(file), ignored) == 0) {
        sentence = "file \"" + file + "\" is empty. Take it from a copy.";
    } else if (IsDamage(result.code)) {
        sentence += " Or see what can still be read: kivtree salvage " + file;
    }
    throw Trouble(sentence);
}

Context::Context(const CommonOptions& options) : options_(options), colors_(WantsColors(options.color)) {}

void Context::Note(const std::string& sentence) {
    std::fprintf(stderr, "kivtree: %s\n", sentence.c_str());
}

ProgressBar Context::NewBarBesideResults(const std::string& what) const {
    return {!options_.noProgress && !IsOutputTerminal(), what};
}

std::string Context::ReadStandardInput() const {
    if (inputIsRead_) {
        throw Trouble("standard input can be read but once: name a file for the other tree.");
    }
    inputIsRead_ = true;
    ProgressBar bar = NewBar("reading standard input");
    std::string bytes;
    char part[65536];
    while (true) {
        const long count = ReadStandardInputBytes(part, sizeof part);
        if (count < 0) {
            throw Trouble("standard input cannot be read. Check where it comes from.");
        }
        if (count == 0) {
            return bytes;
        }
        bytes.append(part, static_cast<std::size_t>(count));
        bar.Show(bytes.size(), 0);
    }
}

KivInspect::Names Context::LoadNames(const std::string& file) const {
    if (options_.noNames) {
        return {};
    }
    const bool asked = !options_.names.empty();
    const auto path = std::filesystem::u8path(asked ? options_.names : file + ".names.json");
    std::error_code ignored;
    if (!asked && (file == "-" || !std::filesystem::exists(path, ignored))) {
        return {};
    }
    KivInspect::NamesResult read;
    read.result = KivInspect::ReadFile(path, [&](KivInspect::Source& source, const std::string& place) {
        read = KivInspect::ReadNames(source, place);
        return read.result;
    });
    if (!read.result.Ok()) {
        throw Trouble(read.result.sentence + " (--no-names goes on without names.)");
    }
    return std::move(read.names);
}

Input Context::Load(const std::string& file) const {
    KivInspect::LoadFileOptions load;
    ProgressBar bar = NewBar("reading " + file);
    load.progress = bar.OfBytes();
    KivInspect::LoadedFile loaded = file == "-" ? KivInspect::LoadBytes(ReadStandardInput(), "standard input", load)
                                                : KivInspect::LoadFile(std::filesystem::u8path(file), load);
    if (!loaded.result.Ok()) {
        ThrowLoadFailure(file, loaded.result);
    }
    return {file, loaded.form, std::move(loaded.tree), LoadNames(file)};
}

}  // namespace KivTree
