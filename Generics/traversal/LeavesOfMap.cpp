#include "traversal/LeavesOfMap.h"

#include <new>
#include <type_traits>

#include "core/MapChildren.h"
#include "core/Prefetch.h"
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

/// Shows the leaves that stand side by side from `slot` on, where one of a kind that comes in rows does; `behind` is then the
/// first slot behind them.
[[gnu::always_inline]] inline VisitCode ShowRowInSlots(RowVisitor& visitor, const WalkLevel& level, Node* const* slot,
                                                       Node* const* end, Node* const*& behind) {
    if (visitor.GetSlotRows() == SlotRows::OfOneKind) {
        behind = FindEndOfLike(slot, end);
        return ShowRow(visitor, (*slot)->GetType(), slot, behind);
    }
    const auto isMeant = [&](const Node* child) {
        return child != nullptr && level.ShowsLeaves(child->GetType()) && level.ShowsLeaves(child->GetTemporality()) &&
               visitor.TakesRows(child->GetType());
    };
    behind = slot + 1;
    while (behind != end && isMeant(*behind)) {
        ++behind;
    }
    return visitor.VisitSlots(LeafRow<Node>(slot, behind));
}

template <class Shown>
FoundComposite WalkBeyond(Shown& visitor, const WalkLevel& level, const OverflowPlaces& from, Node* child,
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
template <class Shown>
FoundComposite WalkLeavesInSlots(Shown& visitor, const WalkLevel& level, Map& map, std::ptrdiff_t at,
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
        if constexpr (std::is_same_v<Shown, RowVisitor>) {
            if (visitor.TakesRows(child->GetType())) {
                Node* const* behind = nullptr;
                const VisitCode answer = ShowRowInSlots(visitor, level, slot, end, behind);
                if (answer == VisitStop) {
                    return {nullptr, FoundComposite::kStopped};
                }
                for (; answer == VisitRemove && slot != behind; ++slot) {
                    map.Remove(static_cast<int>(slot - NodeAccess::GetSlots(map)));
                }
                slot = behind - 1;
                continue;
            }
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

template <class Shown>
FoundComposite BeginBeyondSlots(Shown& visitor, const WalkLevel& level, const MapOverflow& overflow,
                                OverflowPlace& beyond) {
    const OverflowPlaces places(overflow);
    Node* child = nullptr;
    return places.First(child) ? WalkBeyond(visitor, level, places, child, beyond) : FoundComposite{nullptr, 0};
}

template <class Shown>
FoundComposite GoOnBeyondSlots(Shown& visitor, const WalkLevel& level, const MapOverflow& overflow,
                               OverflowPlace& beyond, Node* child, bool removes) {
    OverflowPlaces places(overflow, beyond);
    if (removes) {
        OverflowPlaces::Remove(*child);
    }
    return places.Next(child) ? WalkBeyond(visitor, level, places, child, beyond) : FoundComposite{nullptr, 0};
}

template FoundComposite WalkLeavesInSlots(Visitor& visitor, const WalkLevel& level, Map& map, std::ptrdiff_t at,
                                          OverflowPlace& beyond);
template FoundComposite WalkLeavesInSlots(RowVisitor& visitor, const WalkLevel& level, Map& map, std::ptrdiff_t at,
                                          OverflowPlace& beyond);
template FoundComposite BeginBeyondSlots(Visitor& visitor, const WalkLevel& level, const MapOverflow& overflow,
                                         OverflowPlace& beyond);
template FoundComposite BeginBeyondSlots(RowVisitor& visitor, const WalkLevel& level, const MapOverflow& overflow,
                                         OverflowPlace& beyond);
template FoundComposite GoOnBeyondSlots(Visitor& visitor, const WalkLevel& level, const MapOverflow& overflow,
                                        OverflowPlace& beyond, Node* child, bool removes);
template FoundComposite GoOnBeyondSlots(RowVisitor& visitor, const WalkLevel& level, const MapOverflow& overflow,
                                        OverflowPlace& beyond, Node* child, bool removes);

}  // namespace KivGenerics
