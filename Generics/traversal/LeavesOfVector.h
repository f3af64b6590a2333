#pragma once

#include <KivGenerics/Vector.h>

#include "traversal/FoundComposite.h"
#include "traversal/WalkTask.h"

namespace KivGenerics {

/// Walks over the leaves of a vector from `leaf`, which stands at `at`, on: up to a composite or to the end.
FoundComposite WalkLeavesOfVector(Visitor& visitor, const WalkLevel& level, Vector& vector, std::ptrdiff_t at,
                                  Node* leaf);

}  // namespace KivGenerics
