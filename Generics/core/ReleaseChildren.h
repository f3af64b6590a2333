#pragma once

#include <KivGenerics/Composite.h>

namespace KivGenerics {

/// Takes every child out of a composite, hands each to the forest and resets it, with everything below it, however deep.
/// The children of a node follow it, in index order. Nothing is allocated.
void ReleaseChildren(Composite& top);

}  // namespace KivGenerics
