#pragma once

#include <cstdint>

#include <KivGenerics/Node.h>

#include "core/NodeAccess.h"

namespace KivGenerics {

// An object's tag, of a composite:   0000 tttk kkkk kkkk   t: own temporality, k: kind
inline constexpr int kKindMask = 0x1FF;
inline constexpr int kTemporalityShift = 9;
inline constexpr int kLongVector = 510;  // a vector whose element count takes 4 bytes
inline constexpr int kLongMap = 511;     // a map whose child count takes 4 bytes
inline constexpr int kLongCount = 32768;

// An object's tag, of a set's elements: fixed numbers.
inline constexpr std::uint16_t kIntegerSetTag = 1035;
inline constexpr std::uint16_t kDoubleSetTag = 1036;
inline constexpr std::uint16_t kIdSetTag = 1037;
inline constexpr std::uint16_t kStringSetTag = 1038;

// The type byte of a leaf:   tt kk kkkk
inline constexpr int kTypeMask = 63;
inline constexpr int kTypeByteTemporalityShift = 6;
inline constexpr int kFirstTypeWithExtraWords = 16;

inline std::uint16_t GetObjectTag(const Node& composite, int kind) noexcept {
    const auto temporality = static_cast<std::uint32_t>(composite.GetTemporality());
    return static_cast<std::uint16_t>(temporality << kTemporalityShift | static_cast<std::uint32_t>(kind));
}

/// Two bits of temporality fit: 4 becomes 0.
// kept-on-purpose: typebyte-two-bits
inline std::uint32_t GetTypeByteOfLeaf(const Node& leaf) noexcept {
    return static_cast<std::uint32_t>(leaf.GetType() | (leaf.GetTemporality() & 3) << kTypeByteTemporalityShift);
}
/// 0 for a composite, which has an object of its own.
inline std::uint32_t GetTypeByte(const Node& node) noexcept {
    return IsCompositeType(node.GetType()) ? 0 : GetTypeByteOfLeaf(node);
}

/// The most transient derived temporality that is written.
constexpr EnumOrvGenericsTemporality GetLimit(bool withTransient) noexcept {
    return withTransient ? TemporalityTransient : TemporalityPersistent;
}

}  // namespace KivGenerics
