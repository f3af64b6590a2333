#include "format/ItemWriter.h"

#include <utility>

#include "format/Failure.h"
#include "format/GuidBytes.h"
#include "format/LittleEndian.h"
#include "format/VariantBytes.h"

namespace KivStorage {

ItemWriter::ItemWriter(std::unique_ptr<ByteSink> sink) : sink_(std::move(sink)), blocks_(*sink_) {}

std::int32_t ItemWriter::SetError(Result error) noexcept {
    if (error_.Ok()) {
        error_ = std::move(error);
    }
    return error_.code;
}

std::int32_t ItemWriter::Misuse(std::int32_t code) {
    return SetError(Fail(code, blocks_.GetPlace()));
}

std::int32_t ItemWriter::PutItem(ItemType type, const std::uint8_t* payload, std::size_t count) {
    if (!error_.Ok()) {
        return error_.code;
    }
    if (finished_) {
        return Misuse(StorageAlreadyFinished);
    }
    items_ += 1;
    if (std::uint8_t* const place = blocks_.Take(1 + count)) {
        place[0] = type;
        std::memcpy(place + 1, payload, count);
        return StorageSuccess;
    }
    const std::uint8_t code = type;
    Result result = blocks_.Append(&code, 1);
    if (result.Ok()) {
        result = blocks_.Append(payload, count);
    }
    return result.Ok() ? StorageSuccess : SetError(std::move(result));
}

std::int32_t ItemWriter::PutLong(std::int32_t value) {
    std::uint8_t bytes[4];
    PutLittle32(bytes, static_cast<std::uint32_t>(value));
    return PutItem(ItemLong, bytes, sizeof bytes);
}

std::int32_t ItemWriter::PutDouble(double value) {
    static_assert(sizeof(double) == 8, "the format holds 64-bit numbers");
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    std::uint8_t bytes[8];
    PutLittle64(bytes, bits);
    return PutItem(ItemDouble, bytes, sizeof bytes);
}

std::int32_t ItemWriter::PutShort(std::uint16_t value) {
    std::uint8_t bytes[2];
    PutLittle16(bytes, value);
    return PutItem(ItemShort, bytes, sizeof bytes);
}

std::int32_t ItemWriter::PutText(const char16_t* units, std::uint32_t length) {
    if (units == nullptr && length > 0 && error_.Ok()) {
        return Misuse(StorageNullPointer);
    }
    std::uint8_t bytes[512];
    PutLittle32(bytes, length);
    std::int32_t code = PutItem(ItemText, bytes, 4);
    for (std::uint32_t done = 0; code >= 0 && done < length;) {
        std::size_t part = 0;
        for (; done < length && part < sizeof bytes; part += 2) {
            PutLittle16(bytes + part, static_cast<std::uint16_t>(units[done++]));
        }
        if (Result result = blocks_.Append(bytes, part); !result.Ok()) {
            code = SetError(std::move(result));
        }
    }
    return code;
}

std::int32_t ItemWriter::PutGuid(const GUID& value) {
    std::uint8_t bytes[16];
    PutGuidBytes(bytes, value);
    return PutItem(ItemGuid, bytes, sizeof bytes);
}

std::int32_t ItemWriter::PutVariant(const VARIANT* value) {
    std::uint8_t bytes[10];
    if (error_.Ok() && value == nullptr) {
        return Misuse(StorageNullPointer);
    }
    if (error_.Ok() && !PutVariantBytes(bytes, value)) {
        return Misuse(StorageUnsupportedVariant);
    }
    return PutItem(ItemVariant, bytes, sizeof bytes);
}

std::int32_t ItemWriter::BeginObject(std::uint16_t tag) {
    std::uint8_t bytes[2];
    PutLittle16(bytes, tag);
    const std::int32_t code = PutItem(ItemBeginObject, bytes, sizeof bytes);
    depth_ += code >= 0 ? 1 : 0;
    return code;
}

std::int32_t ItemWriter::EndObject() {
    if (error_.Ok() && !finished_ && depth_ == 0) {
        return Misuse(StorageNoOpenObject);
    }
    const std::uint8_t none = 0;
    const std::int32_t code = PutItem(ItemEndObject, &none, 0);
    depth_ -= code >= 0 ? 1 : 0;
    return code;
}

std::int32_t ItemWriter::Finish() {
    if (!error_.Ok()) {
        return error_.code;
    }
    if (finished_) {
        return Misuse(StorageAlreadyFinished);
    }
    if (depth_ > 0) {
        return Misuse(StorageOpenObjects);
    }
    finished_ = true;
    Result result = blocks_.Finish(items_);
    return result.Ok() ? StorageSuccess : SetError(std::move(result));
}

}  // namespace KivStorage
