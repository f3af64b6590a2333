#include <KivStorage/MemoryWriteStream.h>

#include <new>
#include <utility>

#include "format/Failure.h"
#include "memory/MemorySink.h"

namespace KivStorage {

MemoryWriteStream::MemoryWriteStream(std::unique_ptr<MemorySink> sink) : WriteStream(std::move(sink)), sink_(nullptr) {}
MemoryWriteStream::~MemoryWriteStream() = default;

KivBase::ReturnPtrI<MemoryWriteStream> MemoryWriteStream::Create() noexcept {
    try {
        auto sink = std::make_unique<MemorySink>();
        MemorySink* const kept = sink.get();
        KivBase::ReturnPtrI<MemoryWriteStream> stream(new MemoryWriteStream(std::move(sink)));
        stream->sink_ = kept;
        return stream;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

Result MemoryWriteStream::Finish() {
    if (FinishItems() < 0) {
        return GetError();
    }
    try {
        sink_->Join();
    } catch (const std::bad_alloc&) {
        SetError(FailQuietly(StorageOutOfMemory, "memory"));
    }
    return GetError();
}

const std::vector<std::uint8_t>& MemoryWriteStream::GetBytes() const {
    return sink_->Join();
}

std::vector<std::uint8_t> MemoryWriteStream::TakeBytes() {
    return std::exchange(sink_->Join(), {});
}

}  // namespace KivStorage
