#pragma once

#include <cstddef>

#include <KivGenerics/Node.h>

namespace KivInspect {

/// The bytes of a leaf's value: of a number, a truth value and a GUID those of its record, of a text two for each unit, of a
/// set those of its elements together. 0 for a composite.
std::size_t SizeOfValue(KivGenerics::Node* node);

/// The same, and of a composite the sum of everything below it. 0 for null.
std::size_t SizeOf(KivGenerics::Node* node);

}  // namespace KivInspect
