#pragma once

#include <cstdint>
#include <random>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Tree.h>

namespace KivGenerics::Testing {

/// A tree that comes back from a save as it was: its root holds composites in fixed slots, the elements of a vector of leaves
/// have one temporality from 1 to 3, and no Integer64 has bit 31 set. Other temporalities reach from 1 to `mostTransient`. The
/// same seed makes the same tree.
KivBase::ReturnPtrI<Tree> NewRandomTree(std::uint32_t seed, int mostTransient);

}  // namespace KivGenerics::Testing
