#pragma once

#include <cstddef>
#include <cstdint>

#include <KivGenerics/Node.h>

#include "persistence/BytePacker.h"
#include "persistence/Encoding.h"

namespace KivGenerics {

// The header of a map: its semantic tag, the count of its children and their keys.

// A tag of 0x80000000 or more has no form and is left out: what is written then cannot be read back.
// kept-on-purpose: tag-not-written
inline void PutTagInFront(BytePacker& packer, SemanticTag tag) {
    const auto number = static_cast<std::uint32_t>(tag);
    if (number < 0x8000) {
        packer.PutInFront<2>(number);
    } else if (number < 0x80000000) {
        packer.PutInFront<4>(number | 0x80000000);
    }
}

inline void PutCountInFront(BytePacker& packer, std::uint32_t count) {
    if (count < 128) {
        packer.PutInFront<1>(count);
    } else if (count < kLongCount) {
        packer.PutInFront<2>(count | 0x8000);
    } else {
        packer.PutInFront<4>(count);
    }
}

// A child's index and, of a leaf, its type byte:
//     T0ii iiii                                     0 to 63
//     T10i iiii  iiii iiii                          64 to 8191
//     T11i iiii  iiii iiii  iiii iiii  iiii iiii    8192 to 0x1FFFFFFF
// T: a type byte follows. A greater index has no form and is left out.
// kept-on-purpose: index-not-written
inline constexpr std::uint32_t kOneByteIndexes = 64;
inline constexpr std::uint32_t kTwoByteIndexes = 8192;
inline constexpr std::uint32_t kFourByteIndexes = 0x20000000;
inline constexpr std::size_t kMostOfKey = 5;
static_assert(kMostOfKey <= BytePacker::kStep);

[[gnu::always_inline]] inline std::uint8_t* StoreLeafKey(std::uint8_t* to, const Node& leaf) noexcept {
    const auto index = static_cast<std::uint32_t>(leaf.GetIndex());
    const std::uint32_t typeByte = GetTypeByteOfLeaf(leaf);
    if (index < kOneByteIndexes) {
        return StoreBytes<2>(to, (0x80 | index) << 8 | typeByte);
    }
    if (index < kTwoByteIndexes) {
        to = StoreBytes<2>(to, 0xC000 | index);
    } else if (index < kFourByteIndexes) {
        to = StoreBytes<4>(to, 0xE0000000 | index);
    }
    return StoreBytes<1>(to, typeByte);
}

[[gnu::always_inline]] inline std::uint8_t* StoreCompositeKey(std::uint8_t* to, const Node& composite) noexcept {
    const auto index = static_cast<std::uint32_t>(composite.GetIndex());
    if (index < kOneByteIndexes) {
        return StoreBytes<1>(to, index);
    }
    if (index < kTwoByteIndexes) {
        return StoreBytes<2>(to, 0x4000 | index);
    }
    return index < kFourByteIndexes ? StoreBytes<4>(to, 0x60000000 | index) : to;
}

}  // namespace KivGenerics
