#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "format/ByteSink.h"
#include "format/Framing.h"

namespace KivStorage {

/// Puts the checksummed blocks back into one run of bytes; hands out none before its block is verified.
class BlockReader {
public:
    BlockReader(ByteSource& source, std::uint64_t maxBytes);

    /// Whether every byte of items has been read: then the trailer is verified, and that nothing follows it.
    Result CheckEnd(bool& end);
    /// Whether the present block has another byte; else CheckEnd tells whether the next one has.
    bool HasByte() const noexcept { return next_ < size_; }
    /// The next byte without taking it; there must be one.
    std::uint8_t Peek() const noexcept { return Payload()[next_]; }
    /// The next bytes where they stand, when the present block has as many; null otherwise, nothing taken.
    const std::uint8_t* Take(std::size_t count) noexcept {
        if (count > size_ - next_) {
            return nullptr;
        }
        const std::uint8_t* const place = Payload() + next_;
        next_ += count;
        return place;
    }
    /// StorageItemCutOff when there are fewer.
    Result Read(std::uint8_t* to, std::size_t count);
    Result Skip(std::uint64_t count);

    /// So many bytes can follow at most.
    std::uint64_t GetRest() const noexcept;
    /// The number of items that the trailer names; after the end only.
    std::uint64_t GetTrailerItems() const noexcept { return trailerItems_; }
    /// `file "name", block 2, byte 65560`: where the next byte of an item stands.
    std::string GetPlace() const;

private:
    const std::uint8_t* Payload() const noexcept { return block_.get() + kLengthSize; }
    Result Fill(std::uint8_t* to, std::size_t count);
    Result Fault(std::int32_t code) const;
    Result ReadHeader();
    Result LoadBlock();
    Result ReadTrailer();
    template <class Use>
    Result Consume(std::uint64_t count, Use use);

    ByteSource& source_;
    const std::uint64_t maxBytes_;
    std::unique_ptr<std::uint8_t[]> block_;
    std::size_t size_ = 0;  // of the payload in the present block
    std::size_t next_ = 0;  // position in it
    bool headerRead_ = false;
    bool atEnd_ = false;
    std::uint64_t taken_ = 0;       // bytes taken from the source
    std::uint64_t blockStart_ = 0;  // where the present block, or trailer, begins
    std::uint64_t blocks_ = 0;
    std::uint64_t itemBytes_ = 0;
    std::uint64_t chain_ = 0;
    std::uint64_t trailerItems_ = 0;
};

}  // namespace KivStorage
