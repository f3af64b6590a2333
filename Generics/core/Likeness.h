#pragma once

#include <cstdint>

#include <KivGenerics/Node.h>

namespace KivGenerics {

/// The kind and the own temporality of a leaf in one number: leaves in a row that have the same are treated alike.
inline std::uint32_t GetLikeness(const Node& leaf) noexcept {
    const auto type = static_cast<std::uint8_t>(leaf.GetType());
    const auto temporality = static_cast<std::uint8_t>(leaf.GetTemporality());
    return type | static_cast<std::uint32_t>(temporality) << 8;
}

inline NodeType GetLikeType(std::uint32_t likeness) noexcept {
    return static_cast<NodeType>(likeness & 0xFF);
}
/// For what lies outside the scale it answers some value outside it.
inline EnumOrvGenericsTemporality GetLikeTemporality(std::uint32_t likeness) noexcept {
    return static_cast<EnumOrvGenericsTemporality>(likeness >> 8);
}

/// The end of the leaves from `first` on, one of which there is, that are like it. Places behind it may be empty.
inline Node* const* FindEndOfLike(Node* const* first, Node* const* end) noexcept {
    const std::uint32_t likeness = GetLikeness(**first);
    do {
        ++first;
    } while (first != end && *first != nullptr && GetLikeness(**first) == likeness);
    return first;
}

}  // namespace KivGenerics
