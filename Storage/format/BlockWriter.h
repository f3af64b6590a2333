#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "format/ByteSink.h"
#include "format/Framing.h"

namespace KivStorage {

/// Cuts a run of bytes into checksummed blocks, between a header and a trailer.
class BlockWriter {
public:
    explicit BlockWriter(ByteSink& sink);

    /// Room in the present block for so many bytes, which are then its own; null when they do not fit, and once it is shut.
    std::uint8_t* Take(std::size_t count) noexcept {
        return count <= static_cast<std::size_t>(end_ - next_) ? TakeFitting(count) : nullptr;
    }
    /// True where Take answers a place. `count` is that of an item other than a text: no more than a few bytes.
    bool Fits(std::size_t count) const noexcept {
        // Of addresses, since there may be fewer bytes behind the next one.
        return reinterpret_cast<std::uintptr_t>(next_) + count <= reinterpret_cast<std::uintptr_t>(end_);
    }
    /// Take where the bytes fit.
    std::uint8_t* TakeFitting(std::size_t count) noexcept {
        std::uint8_t* const place = next_;
        next_ += count;
        return place;
    }
    /// From now on Take answers null, so that whoever writes need not ask first whether it still may.
    void Shut() noexcept { end_ = next_; }
    /// Any number of bytes, across blocks.
    Result Append(const std::uint8_t* bytes, std::size_t count);
    /// Writes what is left and the trailer.
    Result Finish(std::uint64_t items);

    /// All bytes of items and framing, those still waiting in the present block included.
    std::uint64_t GetByteCount() const noexcept;
    /// `file "name", block 2, byte 65560`: where the next byte of an item goes.
    std::string GetPlace() const;

private:
    std::uint8_t* Payload() const noexcept { return block_ + kLengthSize; }
    std::size_t GetUsed() const noexcept { return static_cast<std::size_t>(next_ - Payload()); }
    /// How much of the header stands before the first block, with which it is written.
    std::size_t GetFront() const noexcept { return hasHeader_ ? 0 : kHeaderSize; }
    static void PutHeader(std::uint8_t* header);
    void BeginBlock();
    Result Flush();

    ByteSink& sink_;
    std::unique_ptr<std::uint8_t[]> own_;  // for the block, where the sink lends no place
    std::uint8_t* block_;  // the length, the payload, room for the checksum
    std::uint8_t* next_;  // where the next byte goes
    std::uint8_t* end_;  // where Take ends: behind the payload, or at next_
    bool hasHeader_ = false;  // written
    bool finished_ = false;
    std::uint64_t blocks_ = 0;
    std::uint64_t itemBytes_ = 0;  // in the blocks written
    std::uint64_t chain_ = 0;
};

/// `place, block 2, byte 65560`; blocks are counted from 1, the header being 0.
std::string PlaceInBlock(const std::string& place, std::uint64_t block, std::uint64_t byte);

}  // namespace KivStorage
