#include <KivStorage/MemoryWriteStream.h>

#include <new>
#include <utility>

#include "format/Failure.h"
#include "memory/MemorySink.h"

namespace KivStorage {

Result MemorySink::Write(const std::uint8_t* from, std::size_t count) {
    try {
        bytes.insert(bytes.end(), from, from + count);
        return {};
    } catch (const std::bad_alloc&) {
        return FailQuietly(StorageOutOfMemory, "memory");
    }
}

std::string MemorySink::GetPlace() const {
    return "memory";
}

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
    return FinishItems() < 0 ? GetError() : Result{};
}

const std::vector<std::uint8_t>& MemoryWriteStream::GetBytes() const noexcept {
    return sink_->bytes;
}

std::vector<std::uint8_t> MemoryWriteStream::TakeBytes() noexcept {
    return std::exchange(sink_->bytes, {});
}

}  // namespace KivStorage
