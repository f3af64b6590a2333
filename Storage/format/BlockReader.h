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
    bool HasByte() const noexcept { return next_ < end_; }
    /// Whether the present block has so many.
    bool HasBytes(std::uint64_t count) const noexcept { return count <= static_cast<std::uint64_t>(end_ - next_); }
    /// The next byte without taking it; there must be one.
    std::uint8_t Peek() const noexcept { return *next_; }
    /// The next bytes where they stand, when the present block has as many; null otherwise, nothing taken.
    const std::uint8_t* Take(std::size_t count) noexcept {
        if (count > static_cast<std::size_t>(end_ - next_)) {
            return nullptr;
        }
        const std::uint8_t* const place = next_;
        next_ += count;
        return place;
    }
    /// Take, of an item that begins with `type`: its `count` bytes behind the type.
    const std::uint8_t* TakeItem(std::uint8_t type, std::size_t count) noexcept {
        // As numbers: the sum is where the next item begins, and is calculated once.
        const auto needed = reinterpret_cast<std::uintptr_t>(next_) + 1 + count;
        if (needed > reinterpret_cast<std::uintptr_t>(end_) || *next_ != type) {
            return nullptr;
        }
        const std::uint8_t* const place = next_ + 1;
        next_ = place + count;
        return place;
    }
    /// The present block seems to end here, so that whoever reads on the short way need not ask first whether it still may.
    void Hide() noexcept { end_ = next_; }
    /// Ends Hide.
    void Show() noexcept { end_ = Payload() + size_; }
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
    const std::uint8_t* Payload() const noexcept { return start_ + kLengthSize; }
    std::size_t GetLeft() const noexcept { return size_ - static_cast<std::size_t>(next_ - Payload()); }
    void Enter(const std::uint8_t* start, std::size_t size) noexcept;
    Result Fill(std::uint8_t* to, std::size_t count);
    Result FillBlock(std::size_t at, std::size_t count);
    Result Fault(std::int32_t code) const;
    Result ReadHeader();
    Result LoadBlock();
    Result ReadTrailer();
    template <class Use>
    Result Consume(std::uint64_t count, Use use);

    ByteSource& source_;
    const std::uint64_t maxBytes_;
    std::unique_ptr<std::uint8_t[]> block_;  // for one that the source does not lend
    const std::uint8_t* start_;  // of the present block, in block_ or where the source has it
    std::size_t size_ = 0;  // of the payload in the present block
    const std::uint8_t* next_;  // position in it
    const std::uint8_t* end_;  // where Take ends: behind the payload, or at next_
    bool headerRead_ = false;
    bool atEnd_ = false;
    std::uint64_t taken_ = 0;  // bytes taken from the source
    std::uint64_t blockStart_ = 0;  // where the present block, or trailer, begins
    std::uint64_t blocks_ = 0;
    std::uint64_t itemBytes_ = 0;
    std::uint64_t chain_ = 0;
    std::uint64_t trailerItems_ = 0;
};

}  // namespace KivStorage
