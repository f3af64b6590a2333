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

    /// Room in the present block for so many bytes, which are then its own; null when they do not fit.
    std::uint8_t* Take(std::size_t count) noexcept {
        if (count > kMaxPayload - used_) {
            return nullptr;
        }
        std::uint8_t* const place = Payload() + used_;
        used_ += count;
        return place;
    }
    /// Any number of bytes, across blocks.
    Result Append(const std::uint8_t* bytes, std::size_t count);
    /// Writes what is left and the trailer.
    Result Finish(std::uint64_t items);

    /// All bytes of items and framing, those still waiting in the present block included.
    std::uint64_t GetByteCount() const noexcept;
    /// `file "name", block 2, byte 65560`: where the next byte of an item goes.
    std::string GetPlace() const;

private:
    std::uint8_t* Payload() const noexcept { return block_.get() + kLengthSize; }
    Result WriteHeader();
    Result Flush();

    ByteSink& sink_;
    std::unique_ptr<std::uint8_t[]> block_;  // the length, the payload, room for the checksum
    std::size_t used_ = 0;
    bool headerWritten_ = false;
    bool finished_ = false;
    std::uint64_t blocks_ = 0;
    std::uint64_t itemBytes_ = 0;  // in the blocks written
    std::uint64_t chain_ = 0;
};

/// `place, block 2, byte 65560`; blocks are counted from 1, the header being 0.
std::string PlaceInBlock(const std::string& place, std::uint64_t block, std::uint64_t byte);

}  // namespace KivStorage
