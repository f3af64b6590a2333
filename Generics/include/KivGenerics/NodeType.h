#pragma once

#include <cstdint>

namespace KivGenerics {

/// The twelve kinds of node. The numbers stand in saved files. A node stores its kind in 8 bits.
enum NodeType : std::int32_t {
    NodeTypeInteger = 1,
    NodeTypeGlobalID = 2,
    NodeTypeString = 3,
    NodeTypeDouble = 4,
    NodeTypeBoolean = 5,
    NodeTypeVector = 6,
    NodeTypeMap = 7,
    NodeTypeIntegerSet = 8,
    NodeTypeIdSet = 9,
    NodeTypeStringSet = 10,
    NodeTypeDoubleSet = 11,
    NodeTypeInteger64 = 12,
};

/// True for the two kinds that hold children.
constexpr bool IsCompositeType(NodeType type) noexcept {
    return NodeTypeVector <= type && type <= NodeTypeMap;
}

}  // namespace KivGenerics
