#pragma once

#include <cstddef>

#include <KivGenerics/Composite.h>

namespace KivGenerics {

/// A composite that a walk over leaves has come to; null at the end of the leaves, or where the visitor has stopped the walk.
struct FoundComposite {
    static constexpr std::ptrdiff_t kBeyondSlots = -1;
    static constexpr std::ptrdiff_t kStopped = -2;

    Composite* composite;
    std::ptrdiff_t at;  // in a vector or in the slots, kBeyondSlots, or kStopped
};

}  // namespace KivGenerics
