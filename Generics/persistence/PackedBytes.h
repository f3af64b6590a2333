#pragma once

#include <cstdint>

namespace KivGenerics {

/// Bytes that come in 32-bit words, most significant first, and wait to be taken.
class PackedBytes {
public:
    /// 0 to 8.
    int GetCount() const noexcept { return count_; }
    /// Where no more than four wait.
    void Add(std::int32_t word) noexcept {
        bytes_ |= std::uint64_t{static_cast<std::uint32_t>(word)} << (32 - 8 * count_);
        count_ += 4;
    }
    /// The next `count` bytes, 1 to 4 and no more than wait, as a number.
    std::uint32_t Take(int count) noexcept {
        const auto value = static_cast<std::uint32_t>(bytes_ >> (64 - 8 * count));
        bytes_ <<= 8 * count;
        count_ -= count;
        return value;
    }
    /// The next byte, which stays, where one waits.
    std::uint32_t Peek() const noexcept { return static_cast<std::uint32_t>(bytes_ >> 56); }
    bool operator==(const PackedBytes& other) const noexcept {
        return bytes_ == other.bytes_ && count_ == other.count_;
    }
    void Clear() noexcept { *this = PackedBytes(); }

private:
    std::uint64_t bytes_ = 0;  // the next of them highest, and zeros below the last
    std::int32_t count_ = 0;
};

}  // namespace KivGenerics
