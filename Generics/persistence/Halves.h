#pragma once

#include <cstdint>

namespace KivGenerics {

// How a 64-bit number travels as two 32-bit ones.

constexpr std::int32_t GetLowHalf(std::int64_t value) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint64_t>(value) & 0xFFFFFFFF);
}

constexpr std::int32_t GetHighHalf(std::int64_t value) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint64_t>(value) >> 32);
}

/// Both halves count with their sign: where bit 31 of the low one is set, the number comes back as 2^32 less than it was.
// kept-on-purpose: integer64-low-half
constexpr std::int64_t JoinHalves(std::int32_t low, std::int32_t high) noexcept {
    return static_cast<std::int64_t>((static_cast<std::uint64_t>(std::int64_t{high}) << 32) +
                                     static_cast<std::uint64_t>(std::int64_t{low}));
}

}  // namespace KivGenerics
