#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include <KivBase/Guid.h>
#include <KivCOMShared/Variant.h>
#include <KivStorage/Options.h>

#include "format/BlockReader.h"
#include "format/GuidBytes.h"
#include "format/LittleEndian.h"

namespace KivStorage {

/// Reads typed items and the ends of objects. Once it has failed it answers its first error to everything.
///
/// On failure: operations throw nothing; no memory for an error's sentence is an error itself. A null output is one, too.
///             Outputs are set on success only.
/// Cost:       an item that lies in the present block, and is of the type asked for, is one bounds test and its bytes: the
///             block is hidden while the reader may not go on, so that only what is not found has to ask for its state.
class ItemReader {
public:
    ItemReader(std::unique_ptr<ByteSource> source, const ReadLimits& limits);

    std::int32_t GetLong(std::int32_t* value) noexcept { return Get(ItemLong, value); }
    std::int32_t GetDouble(double* value) noexcept { return Get(ItemDouble, value); }
    std::int32_t GetShort(std::uint16_t* value) noexcept { return Get(ItemShort, value); }
    std::int32_t GetTextLength(std::uint32_t* length) noexcept {
        const std::uint8_t* const from = length != nullptr ? blocks_.TakeItem(ItemText, 4) : nullptr;
        if (from == nullptr) {
            return GetTextLengthSlowly(length);
        }
        items_ += 1;
        return AnnounceText(GetLittle32(from), length);
    }
    std::int32_t GetTextUnits(std::uint32_t length, char16_t* units) noexcept;
    std::int32_t GetGuid(GUID* value) noexcept { return Get(ItemGuid, value); }
    std::int32_t GetVariant(VARIANT* value) noexcept;
    std::int32_t GetObjectTag(std::uint16_t* tag) noexcept {
        const bool mayEnter = tag != nullptr && depth_ < GetMaxDepth();
        const std::uint8_t* const from = mayEnter ? blocks_.TakeItem(ItemBeginObject, 2) : nullptr;
        if (from == nullptr) {
            return GetObjectTagSlowly(tag);
        }
        items_ += 1;
        depth_ += 1;
        *tag = GetLittle16(from);
        return StorageSuccess;
    }
    std::int32_t EndObject() noexcept {
        if (depth_ == 0 || blocks_.TakeItem(ItemEndObject, 0) == nullptr) {
            return EndObjectSlowly();
        }
        items_ += 1;
        depth_ -= 1;
        return StorageSuccess;
    }
    /// Everything was read, and the trailer agrees.
    std::int32_t Finish() noexcept;

    const Result& GetError() const noexcept { return error_; }
    std::int32_t SetError(Result error) noexcept;
    std::string GetPlace() const { return blocks_.GetPlace(); }

private:
    /// The object around a tree, and that of a set below its deepest composite.
    static constexpr std::uint64_t kObjectsBeyondComposites = 2;

    static void Load(const std::uint8_t* from, std::int32_t& value) noexcept {
        value = static_cast<std::int32_t>(GetLittle32(from));
    }
    static void Load(const std::uint8_t* from, double& value) noexcept {
        const std::uint64_t bits = GetLittle64(from);
        std::memcpy(&value, &bits, sizeof value);
    }
    static void Load(const std::uint8_t* from, std::uint16_t& value) noexcept { value = GetLittle16(from); }
    static void Load(const std::uint8_t* from, GUID& value) noexcept { value = GetGuidBytes(from); }

    /// An item that has as many bytes behind its type as the value has.
    template <class Value>
    std::int32_t Get(ItemType type, Value* value) noexcept {
        const std::uint8_t* const from = value != nullptr ? blocks_.TakeItem(type, sizeof *value) : nullptr;
        if (from == nullptr) {
            return GetSlowly(type, value);
        }
        items_ += 1;
        Load(from, *value);
        return StorageSuccess;
    }
    std::uint64_t GetMaxDepth() const noexcept { return limits_.nesting + kObjectsBeyondComposites; }

    template <class Step>
    std::int32_t Guarded(const void* output, Step step) noexcept;
    template <class Value>
    std::int32_t GetSlowly(ItemType type, Value* value) noexcept;
    std::int32_t GetTextLengthSlowly(std::uint32_t* length) noexcept;
    std::int32_t GetObjectTagSlowly(std::uint16_t* tag) noexcept;
    std::int32_t EndObjectSlowly() noexcept;
    std::int32_t AnnounceText(std::uint32_t units, std::uint32_t* length) noexcept;
    std::int32_t Keep(Result result) noexcept;
    std::int32_t Misuse(std::int32_t code);
    std::int32_t NextType(std::uint8_t& type);
    std::int32_t Expect(ItemType type);
    std::int32_t Take(std::uint8_t* to, std::size_t count);
    std::int32_t TakeValue(ItemType type, std::uint8_t* to, std::size_t count);
    std::int32_t Enter();
    std::int32_t EnterObject(std::uint16_t* tag);
    std::int32_t LeaveObject();
    std::int32_t GetTextAcrossBlocks(std::uint32_t length, char16_t* units);
    void TakeBackText() noexcept;
    std::int32_t SkipItem(std::uint8_t type);
    std::int32_t SkipPendingText();

    std::unique_ptr<ByteSource> source_;
    BlockReader blocks_;
    const ReadLimits limits_;
    Result error_;
    // Apart from each other: side by side a compiler counts both in one store of twice the width, which a load of either cannot
    // be served from, nor one of both from the stores of each.
    std::uint64_t items_ = 0;
    bool textPending_ = false;
    std::uint32_t pendingUnits_ = 0;
    std::uint64_t depth_ = 0;
    bool finished_ = false;
};

}  // namespace KivStorage
