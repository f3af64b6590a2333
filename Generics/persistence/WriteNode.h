#pragma once

#include <cstdint>

#include <KivGenerics/Prefetch.h>
#include <KivGenerics/Vector.h>

#include "core/MapChildren.h"
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

/// The same where those that are not written have been sorted out already.
struct AllChildren {
    static constexpr bool Has(Node&) noexcept { return true; }
};

/// Whether what is gone through now has just been gone through, so that the processor has it.
enum class Touch { First, Again };

/// Writes leaves of this class as long as they come, the first of them at `next`, which becomes the place behind them.
template <class Leaf, Touch kTouch, class Written>
[[gnu::always_inline]] inline std::int32_t WriteLeavesOf(Node* const*& next, Node* const* end, const Written& written,
                                                         const ArchiveWriter& out) {
    do {
        Node& leaf = **next++;
        if constexpr (kTouch == Touch::First) {
            PrefetchBehind(leaf);
        }
        if (written.Has(leaf)) {
            if (const std::int32_t result = WriteValue(static_cast<const Leaf&>(leaf), out); result < 0) {
                return result;
            }
        }
    } while (next != end && (*next)->GetType() == Leaf::StaticType);
    return ResultSuccess;
}

/// Writes children that stand side by side as far as the next composite, which `next` is then, or the end. Returns the first
/// failure. Part of all of its callers: for a few children a call costs as much as they do. `Written` is WrittenChildren or
/// AllChildren.
template <Touch kTouch, class Written>
[[gnu::always_inline]] inline std::int32_t WriteLeaves(Node* const*& next, Node* const* end, const Written& written,
                                                       const ArchiveWriter& out, bool withTransient) {
    while (next != end) {
        Node& child = **next;
        std::int32_t result = ResultSuccess;
        switch (child.GetType()) {
            case NodeTypeInteger: result = WriteLeavesOf<Integer, kTouch>(next, end, written, out); break;
            case NodeTypeGlobalID: result = WriteLeavesOf<GlobalID, kTouch>(next, end, written, out); break;
            case NodeTypeString: result = WriteLeavesOf<String, kTouch>(next, end, written, out); break;
            case NodeTypeDouble: result = WriteLeavesOf<Double, kTouch>(next, end, written, out); break;
            case NodeTypeBoolean: result = WriteLeavesOf<Boolean, kTouch>(next, end, written, out); break;
            case NodeTypeInteger64: result = WriteLeavesOf<Integer64, kTouch>(next, end, written, out); break;
            case NodeTypeVector:
            case NodeTypeMap: return ResultSuccess;
            case NodeTypeIntegerSet:
            case NodeTypeIdSet:
            case NodeTypeStringSet:
            case NodeTypeDoubleSet:
                ++next;
                result = written.Has(child) ? child.WriteToArchive(out.GetArchive(), withTransient) : result;
                break;
        }
        if (result < 0) {
            return result;
        }
    }
    return ResultSuccess;
}

}  // namespace KivGenerics
