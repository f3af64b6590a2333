#include <KivStorage/WriteStream.h>

#include <KivStorage/Interfaces.h>

#include "format/ItemWriter.h"
#include "format/QueryInterface.h"

namespace KivStorage {

WriteStream::WriteStream(std::unique_ptr<ByteSink> sink) : items_(new ItemWriter(std::move(sink))) {}
WriteStream::~WriteStream() = default;

std::int32_t WriteStream::QueryInterface(const GUID& interfaceId, void** object) {
    return AnswerInterface(this, interfaceId, BlockWriteStreamId, object);
}

std::uint32_t WriteStream::AddRef() {
    return references_.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::uint32_t WriteStream::Release() {
    const std::uint32_t left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) {
        delete this;
    }
    return left;
}

std::int32_t WriteStream::PutLong(std::int32_t value) {
    return items_->PutLong(value);
}

std::int32_t WriteStream::PutDouble(double value) {
    return items_->PutDouble(value);
}

std::int32_t WriteStream::PutShort(std::uint16_t value) {
    return items_->PutShort(value);
}

std::int32_t WriteStream::PutWideString(const char16_t* units, std::uint32_t length) {
    return items_->PutText(units, length);
}

std::int32_t WriteStream::PutGUID(const GUID& value) {
    return items_->PutGuid(value);
}

std::int32_t WriteStream::PutVariant(const VARIANT* value) {
    return items_->PutVariant(value);
}

std::int32_t WriteStream::PutBeginObject(std::uint16_t tag) {
    return items_->BeginObject(tag);
}

std::int32_t WriteStream::PutEndObject() {
    return items_->EndObject();
}

const Result& WriteStream::GetError() const noexcept {
    return items_->GetError();
}

std::uint64_t WriteStream::GetByteCount() const noexcept {
    return items_->GetByteCount();
}

std::int32_t WriteStream::FinishItems() {
    return items_->Finish();
}

std::int32_t WriteStream::SetError(Result error) noexcept {
    return items_->SetError(std::move(error));
}

}  // namespace KivStorage
