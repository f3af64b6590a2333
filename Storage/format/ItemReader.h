#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <KivBase/Guid.h>
#include <KivCOMShared/Variant.h>
#include <KivStorage/Options.h>

#include "format/BlockReader.h"

namespace KivStorage {

/// Reads typed items and the ends of objects. Once it has failed it answers its first error to everything.
///
/// Operations throw std::bad_alloc only where a message is made. Outputs are set on success only.
class ItemReader {
public:
    ItemReader(std::unique_ptr<ByteSource> source, const ReadLimits& limits);

    std::int32_t GetLong(std::int32_t* value);
    std::int32_t GetDouble(double* value);
    std::int32_t GetShort(std::uint16_t* value);
    std::int32_t GetTextLength(std::uint32_t* length);
    std::int32_t GetTextUnits(std::uint32_t length, char16_t* units);
    std::int32_t GetGuid(GUID* value);
    std::int32_t GetVariant(VARIANT* value);
    std::int32_t GetObjectTag(std::uint16_t* tag);
    std::int32_t EndObject();
    /// Everything was read, and the trailer agrees.
    std::int32_t Finish();

    const Result& GetError() const noexcept { return error_; }
    std::int32_t SetError(Result error) noexcept;
    std::string GetPlace() const { return blocks_.GetPlace(); }

private:
    std::int32_t Keep(Result result) noexcept;
    std::int32_t Misuse(std::int32_t code);
    std::int32_t NextType(std::uint8_t& type);
    std::int32_t Expect(ItemType type);
    std::int32_t Take(std::uint8_t* to, std::size_t count);
    std::int32_t TakeValue(ItemType type, std::uint8_t* to, std::size_t count);
    std::int32_t Enter();
    std::int32_t SkipItem(std::uint8_t type);
    std::int32_t SkipPendingText();

    std::unique_ptr<ByteSource> source_;
    BlockReader blocks_;
    const ReadLimits limits_;
    Result error_;
    std::uint64_t items_ = 0;
    std::uint64_t depth_ = 0;
    bool textPending_ = false;
    std::uint32_t pendingUnits_ = 0;
    bool finished_ = false;
};

}  // namespace KivStorage
