#pragma once

#include <KivGenerics/Map.h>

#include "traversal/ChildPlaces.h"
#include "traversal/FoundComposite.h"
#include "traversal/WalkTask.h"

namespace KivGenerics {

// What a walk over the leaves of a map goes through up to a composite or to the end. Where the composite is one beyond the slots,
// `beyond` is its place.

/// From the leaf in the slot `at` on.
FoundComposite WalkLeavesInSlots(Visitor& visitor, const WalkLevel& level, Map& map, std::ptrdiff_t at,
                                 OverflowPlace& beyond);

/// From the first child beyond the slots on, which there need not be.
FoundComposite BeginBeyondSlots(Visitor& visitor, const WalkLevel& level, const MapOverflow& overflow,
                                OverflowPlace& beyond);

/// Behind `child`, a composite beyond the slots that the walk has come out of, and which is removed first where `removes`.
FoundComposite GoOnBeyondSlots(Visitor& visitor, const WalkLevel& level, const MapOverflow& overflow,
                               OverflowPlace& beyond, Node* child, bool removes);

}  // namespace KivGenerics
