#pragma once

#include <KivGenerics/Vector.h>

namespace KivGenerics {

/// Calculates, stores and returns the derived temporality of a composite and everything below it, however deep.
EnumOrvGenericsTemporality CalculateTemporality(Composite& top);

/// Gives a vector and its elements this derived temporality, and so on in the vectors among them.
void PushTemporality(Vector& vector, EnumOrvGenericsTemporality t);

}  // namespace KivGenerics
