#include <KivStorage/FileReadStream.h>

#include <utility>

#include "file/InputFile.h"
#include "format/Failure.h"

namespace KivStorage {

FileReadStream::FileReadStream(std::unique_ptr<ByteSource> source, const ReadLimits& limits)
    : ReadStream(std::move(source), limits) {}
FileReadStream::~FileReadStream() = default;

KivBase::ReturnPtrI<FileReadStream> FileReadStream::Create(const std::filesystem::path& path,
                                                           const ReadLimits& limits) noexcept {
    try {
        auto source = std::make_unique<InputFile>();
        Result opened = source->Open(path);
        KivBase::ReturnPtrI<FileReadStream> stream(new FileReadStream(std::move(source), limits));
        if (!opened.Ok()) {
            stream->SetError(std::move(opened));
        }
        return stream;
    } catch (...) {
        return {};
    }
}

}  // namespace KivStorage
