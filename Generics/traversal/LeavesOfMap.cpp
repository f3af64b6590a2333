#include "traversal/LeavesOfMap.h"

#include <new>

#include <KivGenerics/Prefetch.h>

#include "core/MapChildren.h"
#include "traversal/LeafRows.h"
#include "traversal/ShowLeaf.h"

namespace KivGenerics {
namespace {

VisitCode Show(Visitor& visitor, Node& leaf) {
    switch (leaf.GetType()) {
        case NodeTypeInteger: return ShowLeaf(visitor, static_cast<Integer&>(leaf));
        case NodeTypeGlobalID: return ShowLeaf(visitor, static_cast<GlobalID&>(leaf));
        case NodeTypeString: return ShowLeaf(visitor, static_cast<String&>(leaf));
        case NodeTypeDouble: return ShowLeaf(visitor, static_cast<Double&>(leaf));
        case NodeTypeBoolean: return ShowLeaf(visitor, static_cast<Boolean&>(leaf));
        case NodeTypeIntegerSet: return ShowLeaf(visitor, static_cast<IntegerSet&>(leaf));
        case NodeTypeIdSet: return ShowLeaf(visitor, static_cast<IdSet&>(leaf));
        case NodeTypeStringSet: return ShowLeaf(visitor, static_cast<StringSet&>(leaf));
        case NodeTypeDoubleSet: return ShowLeaf(visitor, static_cast<DoubleSet&>(leaf));
        case NodeTypeInteger64: return ShowLeaf(visitor, static_cast<Integer64&>(leaf));
        case NodeTypeVector:
        case NodeTypeMap: break;
    }
    return VisitContinue;
}

FoundComposite WalkBeyond(Visitor& visitor, const WalkLevel& level, const OverflowPlaces& from, Node* child,
                          OverflowPlace& beyond) {
    OverflowPlaces places = from;  // a copy that can stay in the processor's registers
    const FoundComposite found = IsCompositeType(child->GetType())
                                     ? FoundComposite{static_cast<Composite*>(child), FoundComposite::kBeyondSlots}
                                     : LeafRows(visitor, level, places).WalkToComposite(child);
    if (found.composite != nullptr) {
        ::new (static_cast<void*>(&beyond)) OverflowPlace(places.GetPlace());
    }
    return found;
}

}  // namespace

// What stands in slots is rarely of one kind, and one after the other asks less than looking for rows.
FoundComposite WalkLeavesInSlots(Visitor& visitor, const WalkLevel& level, Map& map, std::ptrdiff_t at,
                                 OverflowPlace& beyond) {
    Node* const* const end = NodeAccess::GetSlots(map) + NodeAccess::GetSlotCount(map);
    for (Node* const* slot = NodeAccess::GetSlots(map) + at; slot != end; ++slot) {
        Node* const child = *slot;
        if (child == nullptr) {
            continue;
        }
        if (!level.ShowsLeaves(child->GetType())) {
            if (IsCompositeType(child->GetType())) {
                return {static_cast<Composite*>(child), slot - NodeAccess::GetSlots(map)};
            }
            continue;
        }
        if (!level.ShowsLeaves(child->GetTemporality())) {
            continue;
        }
        PrefetchBehind(child);
        const VisitCode answer = Show(visitor, *child);
        if (answer == VisitContinue) {
            continue;
        }
        if (answer == VisitStop) {
            return {nullptr, FoundComposite::kStopped};
        }
        if (answer == VisitRemove) {
            map.Remove(static_cast<int>(slot - NodeAccess::GetSlots(map)));
        }
    }
    const MapOverflow* const overflow = MapChildren(map).overflow;
    return overflow == nullptr ? FoundComposite{nullptr, 0} : BeginBeyondSlots(visitor, level, *overflow, beyond);
}

FoundComposite BeginBeyondSlots(Visitor& visitor, const WalkLevel& level, const MapOverflow& overflow,
                                OverflowPlace& beyond) {
    const OverflowPlaces places(overflow);
    Node* child = nullptr;
    return places.First(child) ? WalkBeyond(visitor, level, places, child, beyond) : FoundComposite{nullptr, 0};
}

FoundComposite GoOnBeyondSlots(Visitor& visitor, const WalkLevel& level, const MapOverflow& overflow,
                               OverflowPlace& beyond, Node* child, bool removes) {
    OverflowPlaces places(overflow, beyond);
    if (removes) {
        OverflowPlaces::Remove(*child);
    }
    return places.Next(child) ? WalkBeyond(visitor, level, places, child, beyond) : FoundComposite{nullptr, 0};
}

}  // namespace KivGenerics
