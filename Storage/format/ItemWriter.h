#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include <KivBase/Guid.h>
#include <KivCOMShared/Variant.h>

#include "format/BlockWriter.h"
#include "format/GuidBytes.h"
#include "format/LittleEndian.h"

namespace KivStorage {

/// Writes typed items and the ends of objects. Once it has failed it answers its first error to everything.
///
/// On failure: operations throw nothing; no memory for an error's sentence is an error itself.
/// Cost:       an item that fits into the present block is one bounds test and its bytes: the block is shut when the writer
///             fails or finishes, so that only what does not fit has to ask for the writer's state.
class ItemWriter {
public:
    explicit ItemWriter(std::unique_ptr<ByteSink> sink);

    std::int32_t PutLong(std::int32_t value) noexcept {
        return Put<4>(ItemLong, [=](std::uint8_t* to) { PutLittle32(to, static_cast<std::uint32_t>(value)); });
    }
    std::int32_t PutDouble(double value) noexcept {
        static_assert(sizeof value == 8, "the format holds 64-bit numbers");
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return Put<8>(ItemDouble, [=](std::uint8_t* to) { PutLittle64(to, bits); });
    }
    std::int32_t PutShort(std::uint16_t value) noexcept {
        return Put<2>(ItemShort, [=](std::uint8_t* to) { PutLittle16(to, value); });
    }
    std::int32_t PutText(const char16_t* units, std::uint32_t length) noexcept {
        std::uint8_t* const place = units != nullptr ? blocks_.Take(1 + 4 + std::uint64_t{length} * 2) : nullptr;
        if (place == nullptr) {
            return PutTextSlowly(units, length);
        }
        items_ += 1;
        place[0] = ItemText;
        PutLittle32(place + 1, length);
        PutLittleUnits(place + 5, units, length);
        return StorageSuccess;
    }
    std::int32_t PutGuid(const GUID& value) noexcept {
        return Put<16>(ItemGuid, [&](std::uint8_t* to) { PutGuidBytes(to, value); });
    }
    std::int32_t PutVariant(const VARIANT* value) noexcept;
    std::int32_t BeginObject(std::uint16_t tag) noexcept {
        if (!blocks_.Fits(1 + 2)) {
            return BeginObjectSlowly(tag);
        }
        depth_ += 1;
        PutLittle16(TakeFor(ItemBeginObject, 2), tag);
        return StorageSuccess;
    }
    std::int32_t EndObject() noexcept {
        if (depth_ == 0 || !blocks_.Fits(1)) {
            return EndObjectSlowly();
        }
        depth_ -= 1;
        TakeFor(ItemEndObject, 0);
        return StorageSuccess;
    }
    /// Refused while objects are open.
    std::int32_t Finish() noexcept;

    const Result& GetError() const noexcept { return error_; }
    std::int32_t SetError(Result error) noexcept;
    std::uint64_t GetByteCount() const noexcept { return blocks_.GetByteCount(); }

private:
    /// An item of `Count` bytes behind its type, which `store(place)` writes.
    template <std::size_t Count, class Store>
    std::int32_t Put(ItemType type, Store store) noexcept {
        if (blocks_.Fits(1 + Count)) {
            store(TakeFor(type, Count));
            return StorageSuccess;
        }
        std::uint8_t bytes[Count];
        store(bytes);
        return PutSlowly(type, bytes, Count);
    }
    /// The place of the payload of an item that fits.
    std::uint8_t* TakeFor(ItemType type, std::size_t count) noexcept {
        std::uint8_t* const place = blocks_.TakeFitting(1 + count);
        items_ += 1;
        place[0] = type;
        return place + 1;
    }
    template <class Step>
    std::int32_t Guarded(Step step) noexcept;
    std::int32_t PutSlowly(ItemType type, const std::uint8_t* payload, std::size_t count) noexcept;
    std::int32_t PutTextSlowly(const char16_t* units, std::uint32_t length) noexcept;
    std::int32_t BeginObjectSlowly(std::uint16_t tag) noexcept;
    std::int32_t EndObjectSlowly() noexcept;
    std::int32_t PutItem(ItemType type, const std::uint8_t* payload, std::size_t count);
    std::int32_t Append(const std::uint8_t* bytes, std::size_t count);
    std::int32_t Misuse(std::int32_t code);

    std::unique_ptr<ByteSink> sink_;
    BlockWriter blocks_;
    Result error_;
    // Apart from each other: side by side a compiler counts both in one store of twice the width, which a load of either cannot
    // be served from, nor one of both from the stores of each.
    std::uint64_t items_ = 0;
    bool finished_ = false;
    std::uint64_t depth_ = 0;
};

}  // namespace KivStorage
