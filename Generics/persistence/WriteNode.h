#pragma once

#include <cstdint>

#include <KivGenerics/Vector.h>

#include "core/MapChildren.h"
#include "persistence/LeafArchive.h"

namespace KivGenerics {

// As the operations of these names, with an archive of which it is known whose it is.
std::int32_t WriteVector(Vector& vector, const ArchiveWriter& out, bool withTransient);
std::int32_t WriteMap(const MapChildren& children, const ArchiveWriter& out, bool withTransient);
std::int32_t WriteRoot(Node& root, const ArchiveWriter& out, bool withTransient, int slotFlags);

/// Writes a leaf of any kind; scalars right here.
inline std::int32_t WriteLeaf(Node& leaf, const ArchiveWriter& out, bool withTransient) {
    switch (leaf.GetType()) {
        case NodeTypeInteger: return WriteValue(static_cast<const Integer&>(leaf), out);
        case NodeTypeGlobalID: return WriteValue(static_cast<const GlobalID&>(leaf), out);
        case NodeTypeString: return WriteValue(static_cast<const String&>(leaf), out);
        case NodeTypeDouble: return WriteValue(static_cast<const Double&>(leaf), out);
        case NodeTypeBoolean: return WriteValue(static_cast<const Boolean&>(leaf), out);
        case NodeTypeInteger64: return WriteValue(static_cast<const Integer64&>(leaf), out);
        case NodeTypeVector:
        case NodeTypeMap:
        case NodeTypeIntegerSet:
        case NodeTypeIdSet:
        case NodeTypeStringSet:
        case NodeTypeDoubleSet: break;
    }
    return leaf.WriteToArchive(out.GetArchive(), withTransient);
}

inline std::int32_t WriteComposite(Node& node, const ArchiveWriter& out, bool withTransient) {
    return node.GetType() == NodeTypeVector ? WriteVector(static_cast<Vector&>(node), out, withTransient)
                                            : WriteMap(MapChildren(static_cast<Map&>(node)), out, withTransient);
}

/// Writes a node of any kind.
inline std::int32_t WriteNode(Node& node, const ArchiveWriter& out, bool withTransient) {
    return IsCompositeType(node.GetType()) ? WriteComposite(node, out, withTransient)
                                           : WriteLeaf(node, out, withTransient);
}

}  // namespace KivGenerics
