#pragma once

#include <cstddef>

namespace KivBase {

/// The sizes that a buffer hands out: every multiple of 8 up to 1024, then four steps to each doubling. Memory that comes
/// back serves any later request of its class, so each request is rounded up to the size of its class.
struct SizeClass {
    std::size_t index;
    std::size_t size;
};

inline constexpr std::size_t kGranule = 8;
inline constexpr std::size_t kExactSizes = 1024;
inline constexpr std::size_t kStepsOfDoubling = 4;
inline constexpr std::size_t kDoublings = 22;  // to 2^32, more than the largest block
inline constexpr std::size_t kSizeClasses = kExactSizes / kGranule + 1 + kStepsOfDoubling * kDoublings;

/// The smallest class whose size is at least `size`, which must not be above 2^32.
constexpr SizeClass GetSizeClass(std::size_t size) noexcept {
    if (size <= kExactSizes) {
        const std::size_t granules = size == 0 ? 1 : (size + kGranule - 1) / kGranule;
        return {granules, granules * kGranule};
    }
    std::size_t index = kExactSizes / kGranule;
    std::size_t base = kExactSizes;
    for (; size > base * 2; base *= 2) {
        index += kStepsOfDoubling;
    }
    const std::size_t step = base / kStepsOfDoubling;
    const std::size_t steps = (size - base + step - 1) / step;
    return {index + steps, base + steps * step};
}

/// The largest multiple of 8 up to 1024 that fits into `size` bytes, as a class; `size` must be at least 8.
constexpr SizeClass GetExactClassWithin(std::size_t size) noexcept {
    return GetSizeClass(size < kExactSizes ? size / kGranule * kGranule : kExactSizes);
}

static_assert(GetSizeClass(0).size == 8 && GetSizeClass(1024).size == 1024 && GetSizeClass(1025).size == 1280);
static_assert(GetSizeClass(2048).size == 2048 && GetSizeClass(2049).size == 2560);

}  // namespace KivBase
