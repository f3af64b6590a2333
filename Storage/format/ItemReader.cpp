#include "format/ItemReader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "format/Failure.h"
#include "format/VariantBytes.h"

namespace KivStorage {
namespace {

// What a type says where NextType found no further item.
constexpr std::uint8_t kNoItem = 0;

}  // namespace

ItemReader::ItemReader(std::unique_ptr<ByteSource> source, const ReadLimits& limits)
    : source_(std::move(source)), blocks_(*source_, limits.totalBytes), limits_(limits) {}

std::int32_t ItemReader::SetError(Result error) noexcept {
    if (error_.Ok()) {
        error_ = std::move(error);
    }
    blocks_.Hide();
    return error_.code;
}

std::int32_t ItemReader::Keep(Result result) noexcept {
    return result.Ok() ? StorageSuccess : SetError(std::move(result));
}

std::int32_t ItemReader::Misuse(std::int32_t code) {
    return SetError(Fail(code, blocks_.GetPlace()));
}

template <class Step>
std::int32_t ItemReader::Guarded(const void* output, Step step) noexcept {
    try {
        if (!error_.Ok()) {
            return error_.code;
        }
        return output != nullptr ? step() : Misuse(StorageNullPointer);
    } catch (...) {
        return SetError(FailQuietly(StorageOutOfMemory, ""));
    }
}

/// The type of the next item, which stays untaken; kNoItem at the end, where the totals are compared.
std::int32_t ItemReader::NextType(std::uint8_t& type) {
    if (finished_) {
        return Misuse(StorageAlreadyFinished);
    }
    if (textPending_) {
        return Misuse(StorageTextPending);
    }
    if (!blocks_.HasByte()) {
        bool end = false;
        if (const std::int32_t code = Keep(blocks_.CheckEnd(end)); code < 0) {
            return code;
        }
        if (end) {
            if (items_ != blocks_.GetTrailerItems()) {
                return Misuse(StorageTotalsDiffer);
            }
            if (depth_ > 0) {
                return Misuse(StorageOpenObjects);
            }
            type = kNoItem;
            return StorageSuccess;
        }
    }
    type = blocks_.Peek();
    return ItemPayload(type) < 0 ? Misuse(StorageUnknownItem) : StorageSuccess;
}

/// Takes the type of the next item, which must be a value's.
std::int32_t ItemReader::Expect(ItemType type) {
    std::uint8_t found = kNoItem;
    if (const std::int32_t code = NextType(found); code < 0) {
        return code;
    }
    if (found == type) {
        items_ += 1;
        blocks_.Take(1);
        return StorageSuccess;
    }
    switch (found) {
        case kNoItem: return Misuse(StorageNoMoreItems);
        case ItemBeginObject: return Misuse(StorageObjectOpens);
        case ItemEndObject: return Misuse(StorageObjectEnds);
        default: return Misuse(StorageWrongItem);
    }
}

std::int32_t ItemReader::Take(std::uint8_t* to, std::size_t count) {
    if (const std::uint8_t* const from = blocks_.Take(count)) {
        std::memcpy(to, from, count);
        return StorageSuccess;
    }
    return Keep(blocks_.Read(to, count));
}

std::int32_t ItemReader::TakeValue(ItemType type, std::uint8_t* to, std::size_t count) {
    const std::int32_t code = Expect(type);
    return code < 0 ? code : Take(to, count);
}

template <class Value>
std::int32_t ItemReader::GetSlowly(ItemType type, Value* value) noexcept {
    return Guarded(value, [=] {
        std::uint8_t bytes[sizeof *value];
        const std::int32_t code = TakeValue(type, bytes, sizeof bytes);
        if (code >= 0) {
            Load(bytes, *value);
        }
        return code;
    });
}

template std::int32_t ItemReader::GetSlowly(ItemType type, std::int32_t* value) noexcept;
template std::int32_t ItemReader::GetSlowly(ItemType type, double* value) noexcept;
template std::int32_t ItemReader::GetSlowly(ItemType type, std::uint16_t* value) noexcept;
template std::int32_t ItemReader::GetSlowly(ItemType type, GUID* value) noexcept;

std::int32_t ItemReader::GetVariant(VARIANT* value) noexcept {
    return Guarded(value, [=] {
        std::uint8_t bytes[10];
        const std::int32_t code = TakeValue(ItemVariant, bytes, sizeof bytes);
        return code < 0 || GetVariantBytes(bytes, value) ? code : Misuse(StorageUnsupportedVariant);
    });
}

std::int32_t ItemReader::GetTextLengthSlowly(std::uint32_t* length) noexcept {
    std::uint8_t bytes[4] = {};
    const std::int32_t code = Guarded(length, [&] { return TakeValue(ItemText, bytes, sizeof bytes); });
    return code < 0 ? code : AnnounceText(GetLittle32(bytes), length);
}

std::int32_t ItemReader::AnnounceText(std::uint32_t units, std::uint32_t* length) noexcept {
    return Guarded(length, [=] {
        if (units > limits_.stringUnits) {
            return Misuse(StorageTextTooLong);
        }
        // The caller makes room for what it is told: no more than can still come.
        if (!blocks_.HasBytes(std::uint64_t{units} * 2) && units > blocks_.GetRest() / 2) {
            return Misuse(StorageItemCutOff);
        }
        textPending_ = true;
        pendingUnits_ = units;
        blocks_.Hide();
        *length = units;
        return std::int32_t{StorageSuccess};
    });
}

std::int32_t ItemReader::GetTextUnits(std::uint32_t length, char16_t* units) noexcept {
    return Guarded(units, [=] {
        if (!textPending_ || length != pendingUnits_) {
            return Misuse(StorageTextNotAnnounced);
        }
        TakeBackText();
        if (const std::uint8_t* const from = blocks_.Take(std::size_t{length} * 2)) {
            GetLittleUnits(units, from, length);
            return std::int32_t{StorageSuccess};
        }
        return GetTextAcrossBlocks(length, units);
    });
}

std::int32_t ItemReader::GetTextAcrossBlocks(std::uint32_t length, char16_t* units) {
    std::uint8_t bytes[512];
    std::int32_t code = StorageSuccess;
    for (std::uint32_t done = 0; code >= 0 && done < length;) {
        const std::uint32_t part = std::min<std::uint32_t>(length - done, sizeof bytes / 2);
        code = Take(bytes, std::size_t{part} * 2);
        if (code >= 0) {
            GetLittleUnits(units + done, bytes, part);
        }
        done += part;
    }
    return code;
}

/// The text whose length was read is no longer waited for: its units are the next bytes.
void ItemReader::TakeBackText() noexcept {
    textPending_ = false;
    blocks_.Show();
}

std::int32_t ItemReader::Enter() {
    if (depth_ >= GetMaxDepth()) {
        return Misuse(StorageNestingTooDeep);
    }
    depth_ += 1;
    return StorageSuccess;
}

std::int32_t ItemReader::GetObjectTagSlowly(std::uint16_t* tag) noexcept {
    return Guarded(tag, [=] { return EnterObject(tag); });
}

std::int32_t ItemReader::EnterObject(std::uint16_t* tag) {
    std::uint8_t type = kNoItem;
    if (const std::int32_t code = NextType(type); code < 0) {
        return code;
    }
    if (type == kNoItem || type == ItemEndObject) {
        return StorageNoObject;
    }
    if (type != ItemBeginObject) {
        return Misuse(StorageValueStands);
    }
    if (const std::int32_t code = Enter(); code < 0) {
        return code;
    }
    std::uint8_t bytes[2];
    if (const std::int32_t code = TakeValue(ItemBeginObject, bytes, sizeof bytes); code < 0) {
        return code;
    }
    *tag = GetLittle16(bytes);
    return StorageSuccess;
}

std::int32_t ItemReader::SkipPendingText() {
    if (!textPending_) {
        return StorageSuccess;
    }
    TakeBackText();
    return Keep(blocks_.Skip(std::uint64_t{pendingUnits_} * 2));
}

/// Skips an item that NextType has found, a text with its units.
std::int32_t ItemReader::SkipItem(std::uint8_t type) {
    items_ += 1;
    blocks_.Take(1);
    std::uint8_t bytes[16];
    const std::int32_t code = Take(bytes, static_cast<std::size_t>(ItemPayload(type)));
    if (code < 0 || type != ItemText) {
        return code;
    }
    return Keep(blocks_.Skip(std::uint64_t{GetLittle32(bytes)} * 2));
}

std::int32_t ItemReader::EndObjectSlowly() noexcept {
    return Guarded(this, [this] { return LeaveObject(); });
}

std::int32_t ItemReader::LeaveObject() {
    if (finished_) {
        return Misuse(StorageAlreadyFinished);
    }
    if (depth_ == 0) {
        return Misuse(StorageNoOpenObject);
    }
    const std::uint64_t outside = depth_ - 1;
    std::int32_t code = SkipPendingText();
    // A counter, not recursion: however deep the unread objects nest, the stack does not grow.
    while (code >= 0 && depth_ > outside) {
        std::uint8_t type = kNoItem;
        code = NextType(type);
        if (code >= 0 && type == ItemBeginObject) {
            code = Enter();
        }
        if (code >= 0) {
            code = SkipItem(type);
        }
        if (code >= 0 && type == ItemEndObject) {
            depth_ -= 1;
        }
    }
    return code;
}

std::int32_t ItemReader::Finish() noexcept {
    return Guarded(this, [this] {
        std::uint8_t type = kNoItem;
        if (const std::int32_t code = NextType(type); code < 0) {
            return code;
        }
        if (type != kNoItem) {
            return Misuse(depth_ > 0 ? StorageOpenObjects : StorageItemsLeft);
        }
        finished_ = true;
        return std::int32_t{StorageSuccess};
    });
}

}  // namespace KivStorage
