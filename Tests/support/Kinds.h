#pragma once

#include <KivGenerics/NodeType.h>

namespace KivTests {

/// Every kind of node, in the order of their numbers.
inline constexpr KivGenerics::NodeType kAllKinds[] = {
    KivGenerics::NodeTypeInteger,   KivGenerics::NodeTypeGlobalID,   KivGenerics::NodeTypeString,
    KivGenerics::NodeTypeDouble,    KivGenerics::NodeTypeBoolean,    KivGenerics::NodeTypeVector,
    KivGenerics::NodeTypeMap,       KivGenerics::NodeTypeIntegerSet, KivGenerics::NodeTypeIdSet,
    KivGenerics::NodeTypeStringSet, KivGenerics::NodeTypeDoubleSet,  KivGenerics::NodeTypeInteger64,
};

}  // namespace KivTests
