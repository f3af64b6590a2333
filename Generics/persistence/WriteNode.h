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

/// Writes a node of any kind; scalars right here.
inline std::int32_t WriteNode(Node& node, const ArchiveWriter& out, bool withTransient) {
    switch (node.GetType()) {
        case NodeTypeInteger: return WriteValue(static_cast<const Integer&>(node), out);
        case NodeTypeGlobalID: return WriteValue(static_cast<const GlobalID&>(node), out);
        case NodeTypeString: return WriteValue(static_cast<const String&>(node), out);
        case NodeTypeDouble: return WriteValue(static_cast<const Double&>(node), out);
        case NodeTypeBoolean: return WriteValue(static_cast<const Boolean&>(node), out);
        case NodeTypeInteger64: return WriteValue(static_cast<const Integer64&>(node), out);
        case NodeTypeVector: return WriteVector(static_cast<Vector&>(node), out, withTransient);
        case NodeTypeMap: return WriteMap(MapChildren(static_cast<Map&>(node)), out, withTransient);
        case NodeTypeIntegerSet:
        case NodeTypeIdSet:
        case NodeTypeStringSet:
        case NodeTypeDoubleSet: break;
    }
    return node.WriteToArchive(out.GetArchive(), withTransient);
}

}  // namespace KivGenerics
