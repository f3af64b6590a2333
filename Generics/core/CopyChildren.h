#pragma once

#include <KivGenerics/Vector.h>

namespace KivGenerics {

/// Copies the children of `source` into `target`, which has none, with everything below them, however deep; a map takes over
/// the tag, too. Where a host's buffer answers null the rest of that composite is left out.
/// Throws what making a node does; the children copied so far stay.
void CopyChildren(Composite& target, Composite& source);

/// Fills `target`, a new node, from `source`, of the same kind, as Populate does, with everything below it.
void PopulateNew(Node& target, Node& source);

}  // namespace KivGenerics
