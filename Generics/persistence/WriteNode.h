#pragma once

#include <cstdint>

#include <KivGenerics/Vector.h>

#include "core/MapChildren.h"
#include "core/Prefetch.h"
#include "persistence/LeafArchive.h"

namespace KivGenerics {

// As the operations of these names, with an archive of which it is known whose it is.
std::int32_t WriteVector(Vector& vector, const ArchiveWriter& out, bool withTransient);
std::int32_t WriteMap(const MapChildren& children, const ArchiveWriter& out, bool withTransient);
std::int32_t WriteRoot(Node& root, const ArchiveWriter& out, bool withTransient, int slotFlags);

inline std::int32_t WriteComposite(Node& node, const ArchiveWriter& out, bool withTransient) {
    return node.GetType() == NodeTypeVector ? WriteVector(static_cast<Vector&>(node), out, withTransient)
                                            : WriteMap(MapChildren(static_cast<Map&>(node)), out, withTransient);
}

/// Which children of a composite are written: those up to a derived temporality or, where none needs to be looked at, all.
struct WrittenChildren {
    bool areAll;
    EnumOrvGenericsTemporality limit;

    bool Has(Node& child) const { return areAll || NodeAccess::GetDerived(child) <= limit; }
};

/// Writes leaves of this class as long as they come, the first of them at `next`, which becomes the place behind them.
template <class Leaf>
std::int32_t WriteLeavesOf(Node* const*& next, Node* const* end, const WrittenChildren written,
                           const ArchiveWriter out) {
    std::int32_t result = ResultSuccess;
    do {
        Node& leaf = **next++;
        PrefetchBehind(&leaf);
        if (written.Has(leaf)) {
            result = WriteValue(static_cast<const Leaf&>(leaf), out);
        }
    } while (result >= 0 && next != end && (*next)->GetType() == Leaf::StaticType);
    return result;
}

/// Writes children that stand side by side, composites with `writeComposite(composite)`. Returns the first failure.
template <class Write>
std::int32_t WriteChildren(Node* const* next, Node* const* end, const WrittenChildren written, const ArchiveWriter& out,
                           bool withTransient, Write writeComposite) {
    std::int32_t result = ResultSuccess;
    while (result >= 0 && next != end) {
        Node& child = **next;
        switch (child.GetType()) {
            case NodeTypeInteger: result = WriteLeavesOf<Integer>(next, end, written, out); continue;
            case NodeTypeGlobalID: result = WriteLeavesOf<GlobalID>(next, end, written, out); continue;
            case NodeTypeString: result = WriteLeavesOf<String>(next, end, written, out); continue;
            case NodeTypeDouble: result = WriteLeavesOf<Double>(next, end, written, out); continue;
            case NodeTypeBoolean: result = WriteLeavesOf<Boolean>(next, end, written, out); continue;
            case NodeTypeInteger64: result = WriteLeavesOf<Integer64>(next, end, written, out); continue;
            case NodeTypeVector:
            case NodeTypeMap:
            case NodeTypeIntegerSet:
            case NodeTypeIdSet:
            case NodeTypeStringSet:
            case NodeTypeDoubleSet: break;
        }
        ++next;
        if (written.Has(child)) {
            result = IsCompositeType(child.GetType()) ? writeComposite(child)
                                                      : child.WriteToArchive(out.GetArchive(), withTransient);
        }
    }
    return result;
}

}  // namespace KivGenerics
