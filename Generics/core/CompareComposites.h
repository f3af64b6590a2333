#pragma once

#include <KivGenerics/Composite.h>

namespace KivGenerics {

/// Node::Compare of two composites, with everything below them, however deep.
int CompareComposites(Composite& mine, Node* other, EnumOrvGenericsTemporality t, bool recalc);

}  // namespace KivGenerics
