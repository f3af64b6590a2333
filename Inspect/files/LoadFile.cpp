#include <KivInspect/LoadFile.h>

#include <cstring>
#include <new>
#include <utility>

#include <KivInspect/JsonForm.h>
#include <KivInspect/TextForm.h>
#include <KivStorage/FileReadStream.h>
#include <KivStorage/LoadTree.h>

#include "files/CountingStream.h"
#include "files/Failure.h"

namespace KivInspect {
namespace {

constexpr std::size_t FirstBytes = 64;

/// What was read already, then the rest.
class PutBackSource final : public Source {
public:
    PutBackSource(std::string_view first, Source& rest) noexcept : first_(first), rest_(rest) {}

    std::size_t Read(char* bytes, std::size_t size) override {
        const std::size_t count = first_.Read(bytes, size);
        return count > 0 ? count : rest_.Read(bytes, size);
    }

private:
    MemorySource first_;
    Source& rest_;
};

/// As many of the first bytes as there are.
std::string TakeFirst(Source& source) {
    std::string first(FirstBytes, '\0');
    std::size_t size = 0;
    while (size < first.size()) {
        const std::size_t count = source.Read(&first[size], first.size() - size);
        if (count == 0) {
            break;
        }
        size += count;
    }
    first.resize(size);
    return first;
}

std::string TakeAll(Source& source) {
    constexpr std::size_t piece = 65536;
    std::string all;
    std::size_t size = 0;
    do {
        size = all.size();
        all.resize(size + piece);
        all.resize(size + source.Read(&all[size], piece));
    } while (all.size() > size);
    return all;
}

/// The readers of saved data know no name for bytes in memory; whoever reads the message does.
KivStorage::Result Renamed(KivStorage::Result result, const std::string& place) {
    const std::size_t memory = result.sentence.find("(memory");
    if (memory != std::string::npos) {
        result.sentence.replace(memory + 1, std::strlen("memory"), place);
    }
    return result;
}

void LoadBinary(std::string_view bytes, const std::string& place, const LoadFileOptions& options, LoadedFile& loaded) {
    KivStorage::LoadResult read = KivStorage::LoadTreeFromMemory(bytes.data(), bytes.size(), options.load);
    loaded.result = Renamed(std::move(read.result), place);
    loaded.tree = std::move(read.tree);
}

void LoadOther(Source& source, const std::string& place, const LoadFileOptions& options, LoadedFile& loaded) {
    KivStorage::LoadResult read =
        loaded.form == Form::Text ? ReadText(source, place, options.load) : ReadJson(source, place, options.load);
    loaded.result = std::move(read.result);
    loaded.tree = std::move(read.tree);
}

KivStorage::Result Load(Source& source, const std::string& place, const LoadFileOptions& options, LoadedFile& loaded,
                        bool& isBinaryFile) {
    const std::string first = TakeFirst(source);
    PutBackSource whole(first, source);
    loaded.form = DetectForm(first);
    if (loaded.form != Form::Binary) {
        LoadOther(whole, place, options, loaded);
    } else if (!isBinaryFile) {
        LoadBinary(TakeAll(whole), place, options, loaded);
    }
    isBinaryFile = isBinaryFile && loaded.form == Form::Binary;
    return loaded.result;
}

/// Loads a file of the binary form, telling how far it is.
KivStorage::LoadResult LoadWithProgress(const std::filesystem::path& path, const LoadFileOptions& options) {
    KivStorage::LoadResult loaded;
    const auto stream = KivStorage::FileReadStream::Create(path, options.load.limits);
    auto tree = KivGenerics::CreateGenericTree(options.load.objectType);
    if (!stream || !tree) {
        throw std::bad_alloc();
    }
    loaded.result = stream->GetError();
    if (!loaded.result.Ok()) {
        return loaded;
    }
    std::error_code ignored;
    CountingStream counting(*stream, std::filesystem::file_size(path, ignored), options.progress);
    const std::int32_t code = tree->LoadFromStream(&counting);
    if (code >= 0) {
        loaded.result = stream->Finish();
    } else if (stream->GetError().Ok()) {
        loaded.result = {code, KivStorage::DescribeCode(code) + " (" + stream->GetPlace() + ")"};
    } else {
        loaded.result = stream->GetError();
    }
    if (loaded.result.Ok()) {
        loaded.tree = std::move(tree);
    }
    return loaded;
}

/// Runs a load, and makes a result of what it throws.
template <class Step>
LoadedFile Caught(Step step) noexcept {
    LoadedFile loaded;
    try {
        const KivStorage::Result result = Guarded([&] { step(loaded); });
        loaded.result = result.Ok() ? loaded.result : result;
    } catch (...) {
        loaded.result.code = KivStorage::StorageOutOfMemory;
    }
    if (!loaded.result.Ok()) {
        loaded.tree.Reset();
    }
    return loaded;
}

}  // namespace

Form DetectForm(std::string_view firstBytes) noexcept {
    if (firstBytes.substr(0, std::strlen(TextFormBegins)) == TextFormBegins) {
        return Form::Text;
    }
    const std::size_t begin = firstBytes.find_first_not_of(" \t\r\n");
    return begin != std::string_view::npos && firstBytes[begin] == '{' ? Form::Json : Form::Binary;
}

LoadedFile LoadFile(const std::filesystem::path& path, const LoadFileOptions& options) noexcept {
    return Caught([&](LoadedFile& loaded) {
        // What is no regular file can be read once alone, so it is kept.
        bool isBinaryFile = std::filesystem::is_regular_file(path);
        loaded.result = ReadFile(
            path,
            [&](Source& source, const std::string& place) {
                return Load(source, place, options, loaded, isBinaryFile);
            },
            options.progress);
        if (loaded.result.Ok() && isBinaryFile) {
            KivStorage::LoadResult read =
                options.progress ? LoadWithProgress(path, options) : KivStorage::LoadTree(path, options.load);
            loaded.result = std::move(read.result);
            loaded.tree = std::move(read.tree);
        }
    });
}

LoadedFile LoadBytes(std::string_view bytes, const std::string& place, const LoadFileOptions& options) noexcept {
    return Caught([&](LoadedFile& loaded) {
        loaded.form = DetectForm(bytes.substr(0, FirstBytes));
        if (loaded.form == Form::Binary) {
            LoadBinary(bytes, place, options, loaded);
        } else {
            MemorySource source(bytes);
            LoadOther(source, place, options, loaded);
        }
    });
}

}  // namespace KivInspect
