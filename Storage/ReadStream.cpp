#include <KivStorage/ReadStream.h>

#include <KivStorage/Interfaces.h>

#include "format/ItemReader.h"
#include "format/QueryInterface.h"

namespace KivStorage {

ReadStream::ReadStream(std::unique_ptr<ByteSource> source, const ReadLimits& limits)
    : items_(new ItemReader(std::move(source), limits)) {}
ReadStream::~ReadStream() = default;

std::int32_t ReadStream::QueryInterface(const GUID& interfaceId, void** object) {
    return AnswerInterface(this, interfaceId, BlockReadStreamId, object);
}

std::uint32_t ReadStream::AddRef() {
    return references_.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::uint32_t ReadStream::Release() {
    const std::uint32_t left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) {
        delete this;
    }
    return left;
}

std::int32_t ReadStream::GetLong(std::int32_t* value) {
    return items_->GetLong(value);
}

std::int32_t ReadStream::GetDouble(double* value) {
    return items_->GetDouble(value);
}

std::int32_t ReadStream::GetShort(std::uint16_t* value) {
    return items_->GetShort(value);
}

std::int32_t ReadStream::GetStringLength(std::uint32_t* length) {
    return items_->GetTextLength(length);
}

std::int32_t ReadStream::GetStringChars(std::uint32_t length, char16_t* buffer) {
    return items_->GetTextUnits(length, buffer);
}

std::int32_t ReadStream::GetGUID(GUID* value) {
    return items_->GetGuid(value);
}

std::int32_t ReadStream::GetVariant(VARIANT* value) {
    return items_->GetVariant(value);
}

std::int32_t ReadStream::GetObjectTag(std::uint16_t* tag) {
    return items_->GetObjectTag(tag);
}

std::int32_t ReadStream::GetEndObject() {
    return items_->EndObject();
}

Result ReadStream::Finish() {
    return items_->Finish() < 0 ? GetError() : Result{};
}

const Result& ReadStream::GetError() const noexcept {
    return items_->GetError();
}

std::string ReadStream::GetPlace() const {
    return items_->GetPlace();
}

std::int32_t ReadStream::SetError(Result error) noexcept {
    return items_->SetError(std::move(error));
}

}  // namespace KivStorage
