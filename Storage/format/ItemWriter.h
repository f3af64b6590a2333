#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include <KivBase/Guid.h>
#include <KivCOMShared/Variant.h>

#include "format/BlockWriter.h"

namespace KivStorage {

/// Writes typed items and the ends of objects. Once it has failed it answers its first error to everything.
///
/// Operations throw std::bad_alloc only where a message is made.
class ItemWriter {
public:
    explicit ItemWriter(std::unique_ptr<ByteSink> sink);

    std::int32_t PutLong(std::int32_t value);
    std::int32_t PutDouble(double value);
    std::int32_t PutShort(std::uint16_t value);
    std::int32_t PutText(const char16_t* units, std::uint32_t length);
    std::int32_t PutGuid(const GUID& value);
    std::int32_t PutVariant(const VARIANT* value);
    std::int32_t BeginObject(std::uint16_t tag);
    std::int32_t EndObject();
    /// Refused while objects are open.
    std::int32_t Finish();

    const Result& GetError() const noexcept { return error_; }
    std::int32_t SetError(Result error) noexcept;
    std::uint64_t GetByteCount() const noexcept { return blocks_.GetByteCount(); }

private:
    std::int32_t PutItem(ItemType type, const std::uint8_t* payload, std::size_t count);
    std::int32_t Misuse(std::int32_t code);

    std::unique_ptr<ByteSink> sink_;
    BlockWriter blocks_;
    Result error_;
    std::uint64_t items_ = 0;
    std::uint64_t depth_ = 0;
    bool finished_ = false;
};

}  // namespace KivStorage
