#pragma once

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Visitor.h>

#include "core/NodeAccess.h"

namespace KivGenerics {

/// True when a walk with these flags shows a leaf of the kind T that has this temporality.
template <class T>
bool IsLeafShown(EnumOrvGenericsTemporality t, int flags) noexcept {
    constexpr int kNeeded = IterateSelf | 1 << (T::StaticType - 1);
    return (flags & kNeeded) == kNeeded && NodeAccess::Sees(flags, t);
}

/// Bit t says whether a walk with these flags shows a leaf of the kind T that has the temporality t.
template <class T>
std::uint32_t GetShownTemporalities(int flags) noexcept {
    std::uint32_t shown = 0;
    for (int t = TemporalityReserved; t <= TemporalityTemporary; ++t) {
        shown |= IsLeafShown<T>(static_cast<EnumOrvGenericsTemporality>(t), flags) ? 1U << t : 0U;
    }
    return shown;
}

/// Walks over elements of one kind as long as they come, beginning at `place`, which becomes the place of the first of another
/// kind. When the visitor wants the walk to stop, or an element to be removed, that is the answer, and `place` the element's.
template <class T>
VisitCode WalkElements(const std::vector<Node*, KivBase::Allocator<Node*>>& elements, std::size_t& place,
                       Visitor* visitor, VisitCode (Visitor::*show)(T*), int flags) {
    const std::uint32_t shown = GetShownTemporalities<T>(flags);
    while (place < elements.size() && elements[place]->GetType() == T::StaticType) {
        Node& element = *elements[place];
        const auto t = static_cast<std::uint32_t>(element.GetTemporality());
        if (t <= TemporalityTemporary && (shown >> t & 1U) != 0) {
            const VisitCode code = (visitor->*show)(static_cast<T*>(&element));
            if (code == VisitStop || code == VisitRemove) {
                return code;
            }
        }
        ++place;
    }
    return VisitContinue;
}

/// A leaf's step of a walk: `show` is the visitor's operation for it.
template <class T>
VisitCode WalkLeaf(Node& leaf, Visitor* visitor, VisitCode (Visitor::*show)(T*), int flags) {
    return IsLeafShown<T>(leaf.GetTemporality(), flags) ? (visitor->*show)(static_cast<T*>(&leaf)) : VisitContinue;
}

/// IterateInner without the virtual call for a leaf.
inline VisitCode WalkChild(Node& child, Visitor* visitor, SemanticTag tag, int flags) {
    switch (child.GetType()) {
        case NodeTypeInteger: return WalkLeaf(child, visitor, &Visitor::VisitInteger, flags);
        case NodeTypeGlobalID: return WalkLeaf(child, visitor, &Visitor::VisitGlobalID, flags);
        case NodeTypeString: return WalkLeaf(child, visitor, &Visitor::VisitString, flags);
        case NodeTypeDouble: return WalkLeaf(child, visitor, &Visitor::VisitDouble, flags);
        case NodeTypeBoolean: return WalkLeaf(child, visitor, &Visitor::VisitBoolean, flags);
        case NodeTypeIntegerSet: return WalkLeaf(child, visitor, &Visitor::VisitIntegerSet, flags);
        case NodeTypeIdSet: return WalkLeaf(child, visitor, &Visitor::VisitIdSet, flags);
        case NodeTypeStringSet: return WalkLeaf(child, visitor, &Visitor::VisitStringSet, flags);
        case NodeTypeDoubleSet: return WalkLeaf(child, visitor, &Visitor::VisitDoubleSet, flags);
        case NodeTypeInteger64: return WalkLeaf(child, visitor, &Visitor::VisitInteger64, flags);
        case NodeTypeVector:
        case NodeTypeMap: break;
    }
    return NodeAccess::IterateInner(child, visitor, tag, flags);
}

}  // namespace KivGenerics
