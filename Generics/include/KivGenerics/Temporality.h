#pragma once

#include <cstdint>

namespace KivGenerics {

/// How long a node is meant to live: an ordered scale, a larger value is more transient. A node stores it in 8 bits.
enum EnumOrvGenericsTemporality : std::int32_t {
    /// The lowest value. A node of this own temporality is never visible to a walk.
    TemporalityReserved = 0,
    /// Initial value. As own temporality: a leaf counts as persistent, a composite takes its value from its children. As
    /// stored derived value: not calculated yet.
    TemporalityDefault = 1,
    /// Always saved, kept by Tree::ClearTemporaryNodes.
    TemporalityPersistent = 2,
    /// Saved only when the save asks for it, removed by Tree::ClearTemporaryNodes.
    TemporalityTransient = 3,
    /// Never saved, removed by Tree::ClearTemporaryNodes.
    TemporalityTemporary = 4,
};

}  // namespace KivGenerics
