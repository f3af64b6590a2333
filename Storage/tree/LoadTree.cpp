#include <KivStorage/LoadTree.h>

#include <utility>

#include <KivStorage/FileReadStream.h>
#include <KivStorage/MemoryReadStream.h>

#include "file/PathText.h"
#include "tree/Guarded.h"

namespace KivStorage {
namespace {

/// The tree is built here and leaves only when everything has been read and verified.
template <class Stream>
Result ReadTree(Stream& stream, const LoadOptions& options, const std::string& place,
                KivBase::ReturnPtrI<KivGenerics::Tree>& loaded) {
    if (!stream) {
        return Fail(StorageOutOfMemory, place);
    }
    if (!stream->GetError().Ok()) {
        return stream->GetError();
    }
    auto tree = KivGenerics::CreateGenericTree(options.objectType);
    if (!tree) {
        return Fail(StorageOutOfMemory, place);
    }
    const std::int32_t code = tree->LoadFromStream(stream.Get());
    if (code < 0) {
        // A stream's own error says more than the code that came back through the tree.
        return stream->GetError().Ok() ? Fail(code, stream->GetPlace()) : stream->GetError();
    }
    Result result = stream->Finish();
    if (result.Ok()) {
        loaded = std::move(tree);
    }
    return result;
}

}  // namespace

LoadResult LoadTree(const std::filesystem::path& path, const LoadOptions& options) noexcept {
    LoadResult loaded;
    loaded.result = Guarded([&] {
        const auto stream = FileReadStream::Create(path, options.limits);
        return ReadTree(stream, options, FilePlace(path), loaded.tree);
    });
    return loaded;
}

LoadResult LoadTreeFromMemory(const void* bytes, std::size_t count, const LoadOptions& options) noexcept {
    LoadResult loaded;
    loaded.result = Guarded([&] {
        const auto stream = MemoryReadStream::Create(bytes, count, options.limits);
        return ReadTree(stream, options, "memory", loaded.tree);
    });
    return loaded;
}

}  // namespace KivStorage
