#pragma once

#include <KivGenerics/Composite.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>

namespace KivInspect {

/// Puts an exact copy of `source`, which is another tree's, at an index of a composite; what stood there goes. Returns the copy.
KivGenerics::Node* CopyTo(KivGenerics::Composite* parent, int index, KivGenerics::Node* source);

/// Inserts an exact copy of `source`, which is another tree's, before an index of a vector.
KivGenerics::Node* InsertCopyTo(KivGenerics::Vector* vector, int index, KivGenerics::Node* source);

/// Makes an exact copy of `source`, which is another tree's and may be null, the whole content of `tree`.
void CopyTo(KivGenerics::Tree* tree, KivGenerics::Node* source);

}  // namespace KivInspect
