#pragma once

#include <cstdint>

#include <KivGenerics/Vector.h>

namespace KivGenerics {

/// What came of a calculation.
struct TemporalitySummary {
    EnumOrvGenericsTemporality derived;  ///< of the composite itself
    bool isAllPersistent;  ///< its derived temporality and all those below it are TemporalityPersistent
    bool isAllOnScale;  ///< it and those below it, own or derived, are TemporalityDefault to TemporalityTemporary
    std::uint32_t emptyComposites;  ///< that are temporary for having no children
};

/// Calculates and stores the derived temporality of a composite and everything below it, however deep.
TemporalitySummary CalculateTemporality(Composite& top);

/// Gives the elements of a vector its derived temporality, which `t` is, and so on in the vectors among them.
void PushTemporality(Vector& vector, EnumOrvGenericsTemporality t);

/// Stores the derived temporalities of a tree again, as they are, as of its present round. Needs no memory.
void RestampTemporality(Node& root) noexcept;

}  // namespace KivGenerics
