#include "format/ItemWriter.h"

#include <algorithm>
#include <utility>

#include "format/Failure.h"
#include "format/VariantBytes.h"

namespace KivStorage {

ItemWriter::ItemWriter(std::unique_ptr<ByteSink> sink) : sink_(std::move(sink)), blocks_(*sink_) {}

std::int32_t ItemWriter::SetError(Result error) noexcept {
    if (error_.Ok()) {
        error_ = std::move(error);
    }
    blocks_.Shut();
    return error_.code;
}

std::int32_t ItemWriter::Misuse(std::int32_t code) {
    return SetError(Fail(code, blocks_.GetPlace()));
}

template <class Step>
std::int32_t ItemWriter::Guarded(Step step) noexcept {
    try {
        return error_.Ok() ? step() : error_.code;
    } catch (...) {
        return SetError(FailQuietly(StorageOutOfMemory, ""));
    }
}

std::int32_t ItemWriter::Append(const std::uint8_t* bytes, std::size_t count) {
    Result result = blocks_.Append(bytes, count);
    return result.Ok() ? StorageSuccess : SetError(std::move(result));
}

std::int32_t ItemWriter::PutItem(ItemType type, const std::uint8_t* payload, std::size_t count) {
    if (finished_) {
        return Misuse(StorageAlreadyFinished);
    }
    items_ += 1;
    const std::uint8_t first = type;
    const std::int32_t code = Append(&first, 1);
    return code < 0 ? code : Append(payload, count);
}

std::int32_t ItemWriter::PutSlowly(ItemType type, const std::uint8_t* payload, std::size_t count) noexcept {
    return Guarded([=] { return PutItem(type, payload, count); });
}

std::int32_t ItemWriter::PutTextSlowly(const char16_t* units, std::uint32_t length) noexcept {
    return Guarded([=] {
        if (units == nullptr && length > 0) {
            return Misuse(StorageNullPointer);
        }
        std::uint8_t bytes[512];
        PutLittle32(bytes, length);
        std::int32_t code = PutItem(ItemText, bytes, 4);
        for (std::uint32_t done = 0; code >= 0 && done < length;) {
            const std::uint32_t part = std::min<std::uint32_t>(length - done, sizeof bytes / 2);
            PutLittleUnits(bytes, units + done, part);
            code = Append(bytes, std::size_t{part} * 2);
            done += part;
        }
        return code;
    });
}

std::int32_t ItemWriter::PutVariant(const VARIANT* value) noexcept {
    return Guarded([=] {
        std::uint8_t bytes[10];
        if (value == nullptr) {
            return Misuse(StorageNullPointer);
        }
        if (!PutVariantBytes(bytes, value)) {
            return Misuse(StorageUnsupportedVariant);
        }
        return PutItem(ItemVariant, bytes, sizeof bytes);
    });
}

std::int32_t ItemWriter::BeginObjectSlowly(std::uint16_t tag) noexcept {
    std::uint8_t bytes[2];
    PutLittle16(bytes, tag);
    const std::int32_t code = PutSlowly(ItemBeginObject, bytes, sizeof bytes);
    depth_ += code >= 0 ? 1 : 0;
    return code;
}

std::int32_t ItemWriter::EndObjectSlowly() noexcept {
    return Guarded([this] {
        if (!finished_ && depth_ == 0) {
            return Misuse(StorageNoOpenObject);
        }
        const std::int32_t code = PutItem(ItemEndObject, nullptr, 0);
        depth_ -= code >= 0 ? 1 : 0;
        return code;
    });
}

std::int32_t ItemWriter::Finish() noexcept {
    return Guarded([this] {
        if (finished_) {
            return Misuse(StorageAlreadyFinished);
        }
        if (depth_ > 0) {
            return Misuse(StorageOpenObjects);
        }
        finished_ = true;
        Result result = blocks_.Finish(items_);
        blocks_.Shut();
        return result.Ok() ? std::int32_t{StorageSuccess} : SetError(std::move(result));
    });
}

}  // namespace KivStorage
