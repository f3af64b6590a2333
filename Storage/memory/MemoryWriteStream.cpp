#include <KivStorage/MemoryWriteStream.h>

#include <new>
#include <utility>

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
    finished_ = FinishItems() >= 0 || finished_;
    return GetError();
}

const SavedBytes& MemoryWriteStream::GetBytes() const noexcept {
    return sink_->GetBytes();
}

SavedBytes MemoryWriteStream::TakeBytes() {
    return finished_ ? sink_->TakeAll() : sink_->TakeSoFar();
}

}  // namespace KivStorage
