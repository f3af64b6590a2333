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
#include "core/Prefetch.h"

namespace KivGenerics {

/// A walk as it shows the children of a composite.
struct ChildWalk {
    ChildWalk(Visitor* shownTo, SemanticTag wanted, int childFlags) noexcept
        : visitor(shownTo), tag(wanted), flags(childFlags), seen(NodeAccess::GetSeenTemporalities(childFlags)) {}

    /// Bit t says whether a leaf of the kind T that has the temporality t is shown.
    template <class T>
    std::uint32_t GetShown() const noexcept {
        constexpr int kNeeded = IterateSelf | 1 << (T::StaticType - 1);
        return (flags & kNeeded) == kNeeded ? seen : 0;
    }

    Visitor* visitor;
    SemanticTag tag;
    int flags;
    std::uint32_t seen;  // the temporalities that the flags make visible, as bits by their numbers
};

/// True when the bit of this temporality is set; those outside the scale have none.
// kept-on-purpose: temporality-out-of-range
inline bool HasTemporality(std::uint32_t shown, EnumOrvGenericsTemporality t) noexcept {
    const auto bit = static_cast<std::uint32_t>(t);
    return bit <= TemporalityTemporary && (shown >> bit & 1U) != 0;
}

/// Walks over elements of one kind as long as they come, beginning at `place`, which becomes the place of the first of another
/// kind. When the visitor wants the walk to stop, or an element to be removed, that is the answer, and `place` the element's.
template <class T>
VisitCode WalkElements(const std::vector<Node*, KivBase::Allocator<Node*>>& elements, std::size_t& place,
                       const ChildWalk& walk, VisitCode (Visitor::*show)(T*)) {
    const std::uint32_t shown = walk.GetShown<T>();
    Visitor* const visitor = walk.visitor;
    while (place < elements.size() && elements[place]->GetType() == T::StaticType) {
        Node& element = *elements[place];
        PrefetchBehind(&element);
        if (HasTemporality(shown, element.GetTemporality())) {
            const VisitCode code = (visitor->*show)(static_cast<T*>(&element));
            if (code == VisitStop || code == VisitRemove) {
                return code;
            }
        }
        ++place;
    }
    return VisitContinue;
}

/// A leaf's step of a walk: `show` is the visitor's operation for its kind.
template <class T>
VisitCode WalkLeaf(Node& leaf, const ChildWalk& walk, VisitCode (Visitor::*show)(T*)) {
    const bool isShown = HasTemporality(walk.GetShown<T>(), leaf.GetTemporality());
    return isShown ? (walk.visitor->*show)(static_cast<T*>(&leaf)) : VisitContinue;
}

/// IterateInner without the virtual call for a leaf.
inline VisitCode WalkChild(Node& child, const ChildWalk& walk) {
    switch (child.GetType()) {
        case NodeTypeInteger: return WalkLeaf(child, walk, &Visitor::VisitInteger);
        case NodeTypeGlobalID: return WalkLeaf(child, walk, &Visitor::VisitGlobalID);
        case NodeTypeString: return WalkLeaf(child, walk, &Visitor::VisitString);
        case NodeTypeDouble: return WalkLeaf(child, walk, &Visitor::VisitDouble);
        case NodeTypeBoolean: return WalkLeaf(child, walk, &Visitor::VisitBoolean);
        case NodeTypeIntegerSet: return WalkLeaf(child, walk, &Visitor::VisitIntegerSet);
        case NodeTypeIdSet: return WalkLeaf(child, walk, &Visitor::VisitIdSet);
        case NodeTypeStringSet: return WalkLeaf(child, walk, &Visitor::VisitStringSet);
        case NodeTypeDoubleSet: return WalkLeaf(child, walk, &Visitor::VisitDoubleSet);
        case NodeTypeInteger64: return WalkLeaf(child, walk, &Visitor::VisitInteger64);
        case NodeTypeVector:
        case NodeTypeMap: break;
    }
    return NodeAccess::IterateInner(child, walk.visitor, walk.tag, walk.flags);
}

}  // namespace KivGenerics
