#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "persistence/ArchiveWriter.h"

namespace KivGenerics {

/// Stores the `kCount` low bytes of a number, most significant first. Returns the place behind them.
template <int kCount>
std::uint8_t* StoreBytes(std::uint8_t* to, std::uint32_t value) noexcept {
    static_assert(1 <= kCount && kCount <= 4);
    for (int i = 0; i < kCount; ++i) {
        to[i] = static_cast<std::uint8_t>(value >> (8 * (kCount - 1 - i)));
    }
    return to + kCount;
}

/// Packs small numbers, most significant byte first, into 32-bit words of an archive. They wait in a room of the packer's own, so
/// that whoever stores many of them in a row is not interrupted by calls: full words are written when it is full.
///
///     bytes_ | front | begin_ ... waiting ... end_ | room |
class BytePacker {
public:
    /// The most bytes that come in front of all others.
    static constexpr std::size_t kMostInFront = 8;
    /// The most bytes that find room behind those in front before a word is written.
    static constexpr std::size_t kRoom = 120;
    /// The most bytes that find room after NeedRoom.
    static constexpr std::size_t kStep = 8;

    explicit BytePacker(const ArchiveWriter& out) noexcept : out_(out) {}
    BytePacker(const BytePacker&) = delete;
    BytePacker& operator=(const BytePacker&) = delete;

    /// Appends the `kCount` low bytes of a number.
    template <int kCount>
    void Put(std::uint32_t value) {
        end_ = StoreBytes<kCount>(NeedRoom(end_), value);
    }
    /// Puts the `kCount` low bytes of a number before all others, which must be in the room still.
    template <int kCount>
    void PutInFront(std::uint32_t value) noexcept {
        begin_ -= kCount;
        StoreBytes<kCount>(begin_, value);
    }

    // For loops: the end is theirs from GetEnd to SetEnd, and they store behind it themselves.
    std::uint8_t* GetEnd() const noexcept { return end_; }
    void SetEnd(std::uint8_t* end) noexcept { end_ = end; }
    /// Room behind `end` for kStep bytes: answers the end, which is another one where words had to be written for that.
    std::uint8_t* NeedRoom(std::uint8_t* end) {
        return end <= bytes_ + kMostInFront + kRoom - kStep ? end : MakeRoom(end);
    }

    /// Writes all words, the last one filled up with zeros where it is not full. Returns the result of the last write, also where
    /// that was made before.
    // kept-on-purpose: packer-late-failure
    std::int32_t Flush() {
        std::memset(end_, 0, kMostPadding);
        WriteWords(begin_, end_);
        begin_ = end_ = bytes_ + kMostInFront;
        return status_;
    }

private:
    static constexpr std::size_t kWord = 4;
    static constexpr std::size_t kMostPadding = kWord - 1;

    /// Writes words until one begins at `end` or behind it. Returns that place.
    const std::uint8_t* WriteWords(const std::uint8_t* next, const std::uint8_t* end) {
        const ArchiveWriter out = out_;
        std::int32_t status = status_;
        for (; next < end; next += kWord) {
            const std::uint32_t word = std::uint32_t{next[0]} << 24 | std::uint32_t{next[1]} << 16 |
                                       std::uint32_t{next[2]} << 8 | std::uint32_t{next[3]};
            status = out.WriteLong(static_cast<std::int32_t>(word));
        }
        status_ = status;
        return next;
    }

    std::uint8_t* MakeRoom(std::uint8_t* end) {
        const std::uint8_t* const next = WriteWords(begin_, end - kMostPadding);
        const auto left = static_cast<std::size_t>(end - next);
        begin_ = bytes_ + kMostInFront;
        std::memmove(begin_, next, left);
        end_ = begin_ + left;
        return end_;
    }

    const ArchiveWriter out_;
    std::int32_t status_ = 0;
    std::uint8_t* begin_ = bytes_ + kMostInFront;
    std::uint8_t* end_ = bytes_ + kMostInFront;
    std::uint8_t bytes_[kMostInFront + kRoom + kMostPadding];
};

}  // namespace KivGenerics
