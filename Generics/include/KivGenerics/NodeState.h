#pragma once

#include <KivGenerics/SmallNumber.h>
#include <KivGenerics/Temporality.h>

namespace KivGenerics {

/// What stands side by side in every node, so that a new one gets all of it in one store.
struct alignas(4) NodeState {
    /// In derivedAt: the node is a composite that its tree counts as empty.
    static constexpr int kEmptyBit = 0x80;

    SmallNumber type = 0;
    SmallNumber temporality = TemporalityDefault;
    SmallNumber derived = TemporalityDefault;  ///< the derived temporality
    SmallNumber derivedAt = 0;  ///< the round that it was stored in
};

}  // namespace KivGenerics
