#include <KivStorage/FileWriteStream.h>

#include <new>
#include <utility>

#include "file/FileSink.h"
#include "format/Failure.h"

namespace KivStorage {

FileWriteStream::FileWriteStream(std::unique_ptr<FileSink> sink) : WriteStream(std::move(sink)), sink_(nullptr) {}
FileWriteStream::~FileWriteStream() = default;

KivBase::ReturnPtrI<FileWriteStream> FileWriteStream::Create(const std::filesystem::path& path) noexcept {
    try {
        auto sink = std::make_unique<FileSink>();
        FileSink* const kept = sink.get();
        KivBase::ReturnPtrI<FileWriteStream> stream(new FileWriteStream(std::move(sink)));
        stream->sink_ = kept;
        if (Result result = kept->file.Open(path); !result.Ok()) {
            stream->SetError(std::move(result));
        }
        return stream;
    } catch (...) {
        return {};
    }
}

Result FileWriteStream::Commit() {
    std::int32_t code = FinishItems();
    if (code >= 0) {
        try {
            Result result = sink_->file.Commit();
            code = result.Ok() ? code : SetError(std::move(result));
        } catch (...) {
            code = SetError(FailQuietly(StorageOutOfMemory, ""));
        }
    }
    sink_->file.Abandon();
    return code < 0 ? GetError() : Result{};
}

}  // namespace KivStorage
