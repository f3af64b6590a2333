#include "persistence/COrvWriteBlockArchive.h"

#include <KivGenerics/ResultCode.h>

#include "persistence/Halves.h"

namespace KivGenerics {

COrvWriteBlockArchive::COrvWriteBlockArchive(KivCOMShared::BlockWriteStream* stream) : stream_(stream) {
    if (stream_ != nullptr) {
        stream_->AddRef();
    }
}

COrvWriteBlockArchive::~COrvWriteBlockArchive() {
    if (stream_ != nullptr) {
        stream_->Release();
    }
}

std::int32_t COrvWriteBlockArchive::WriteShort(std::uint16_t value) {
    return stream_ != nullptr ? stream_->PutShort(value) : ResultUnexpected;
}

std::int32_t COrvWriteBlockArchive::WriteDouble(double value) {
    return stream_ != nullptr ? stream_->PutDouble(value) : ResultUnexpected;
}

std::int32_t COrvWriteBlockArchive::WriteGUID(const GUID& value) {
    return stream_ != nullptr ? stream_->PutGUID(value) : ResultUnexpected;
}

std::int32_t COrvWriteBlockArchive::WriteLong(std::int32_t value) {
    return stream_ != nullptr ? stream_->PutLong(value) : ResultUnexpected;
}

std::int32_t COrvWriteBlockArchive::WriteInt64(std::int64_t value) {
    if (stream_ == nullptr) {
        return ResultUnexpected;
    }
    const std::int32_t result = stream_->PutLong(GetLowHalf(value));
    return result < 0 ? result : stream_->PutLong(GetHighHalf(value));
}

std::int32_t COrvWriteBlockArchive::WriteWideString(const char16_t* units, std::uint32_t length) {
    return stream_ != nullptr ? stream_->PutWideString(units, length) : ResultUnexpected;
}

std::int32_t COrvWriteBlockArchive::WriteVariant(const VARIANT* value) {
    return stream_ != nullptr ? stream_->PutVariant(value) : ResultUnexpected;
}

std::int32_t COrvWriteBlockArchive::BeginObject(std::uint16_t tag) {
    return stream_ != nullptr ? stream_->PutBeginObject(tag) : ResultUnexpected;
}

std::int32_t COrvWriteBlockArchive::EndObject() {
    return stream_ != nullptr ? stream_->PutEndObject() : ResultUnexpected;
}

}  // namespace KivGenerics
