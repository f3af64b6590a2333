#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <KivBase/WString.h>

namespace KivGenerics {

/// How many units stand before the first NUL, or `count` where none is among so many. Four at a time are looked at, which the
/// standard library does not do for units of 16 bits.
inline std::size_t CountBeforeNul(const char16_t* units, std::size_t count) noexcept {
    constexpr std::size_t kUnits = sizeof(std::uint64_t) / sizeof(char16_t);
    constexpr std::uint64_t kOnes = 0x0001000100010001;
    constexpr std::uint64_t kHighs = 0x8000800080008000;
    std::size_t before = 0;
    for (; count - before >= kUnits; before += kUnits) {
        std::uint64_t few = 0;
        std::memcpy(&few, units + before, sizeof few);
        if (((few - kOnes) & ~few & kHighs) != 0) {
            break;
        }
    }
    while (before < count && units[before] != u'\0') {
        ++before;
    }
    return before;
}

/// The order of texts: by their units, then by length; -1, 0 or 1. The whole left text counts, of the right one what stands
/// before its first NUL.
// kept-on-purpose: text-cut-at-nul
inline int CompareTexts(const KivBase::WString& left, const KivBase::WString& right) noexcept {
    const std::size_t rightLength = CountBeforeNul(right.data(), right.size());
    const std::size_t common = (std::min)(left.size(), rightLength);
    if (std::memcmp(left.data(), right.data(), common * sizeof(char16_t)) != 0) {
        return std::char_traits<char16_t>::compare(left.data(), right.data(), common) < 0 ? -1 : 1;
    }
    return left.size() < rightLength ? -1 : (rightLength < left.size() ? 1 : 0);
}

}  // namespace KivGenerics
