#include <KivStorage/SaveTree.h>

#include <exception>
#include <new>
#include <utility>

#include <KivBase/Utf.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/FileWriteStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <KivStorage/UnsavedParts.h>

#include "file/PathText.h"
#include "format/Failure.h"
#include "tree/Guarded.h"
#include "tree/TreeChecks.h"

namespace KivStorage {
namespace {

constexpr std::size_t kPartsNamed = 3;

/// `12 parts, at "0:3:": …; at …; and 9 more`
std::string NameParts(const std::vector<UnsavedPart>& parts) {
    std::string text = std::to_string(parts.size()) + (parts.size() == 1 ? " part" : " parts");
    for (std::size_t i = 0; i < parts.size() && i < kPartsNamed; ++i) {
        text += (i == 0 ? ", at \"" : "; at \"") + KivBase::ToUtf8(parts[i].key) + "\": ";
        text += parts[i].sentence.substr(0, parts[i].sentence.size() - 1);
    }
    if (parts.size() > kPartsNamed) {
        text += "; and " + std::to_string(parts.size() - kPartsNamed) + " more";
    }
    return text;
}

Result CheckBeforeSave(KivGenerics::Tree* tree, const SaveOptions& options, const std::string& place) {
    if (tree != nullptr && !options.saveDespiteLosses) {
        const std::vector<UnsavedPart> parts = FindUnsavedParts(tree, options.withTransient);
        if (!parts.empty()) {
            return Fail(StorageUnsavedParts, place + ": " + NameParts(parts));
        }
    }
    return CheckSavable(tree, options.withTransient, place);
}

/// A stream's own error says more than the code that came back through the tree.
template <class Stream>
Result WriteTree(KivGenerics::Tree* tree, Stream& stream, const SaveOptions& options, const std::string& place) {
    if (!stream) {
        return Fail(StorageOutOfMemory, place);
    }
    if (!stream->GetError().Ok()) {
        return stream->GetError();
    }
    const std::int32_t code = tree->SaveToStream(stream.Get(), options.withTransient);
    if (code < 0) {
        return stream->GetError().Ok() ? Fail(code, place) : stream->GetError();
    }
    return {};
}

}  // namespace

Result SaveTree(KivGenerics::Tree* tree, const std::filesystem::path& path, const SaveOptions& options) noexcept {
    return Guarded([&] {
        const std::string place = FilePlace(path);
        if (Result result = CheckBeforeSave(tree, options, place); !result.Ok()) {
            return result;
        }
        const auto stream = FileWriteStream::Create(path);
        if (Result result = WriteTree(tree, stream, options, place); !result.Ok()) {
            return result;
        }
        return stream->Commit();
    });
}

Result SaveTreeToMemory(KivGenerics::Tree* tree, std::vector<std::uint8_t>& bytes,
                        const SaveOptions& options) noexcept {
    return Guarded([&] {
        const std::string place = "memory";
        if (Result result = CheckBeforeSave(tree, options, place); !result.Ok()) {
            return result;
        }
        const auto stream = MemoryWriteStream::Create();
        if (Result result = WriteTree(tree, stream, options, place); !result.Ok()) {
            return result;
        }
        Result result = stream->Finish();
        if (result.Ok()) {
            bytes = stream->GetBytes().ToVector();
        }
        return result;
    });
}

}  // namespace KivStorage
