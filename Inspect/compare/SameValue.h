#pragma once

#include <KivGenerics/Node.h>
#include <KivInspect/Diff.h>

namespace KivInspect {

/// True when two leaves of the same kind have the same value, doubles within the tolerance of the options. Composites have none.
bool HaveSameValue(KivGenerics::Node* left, KivGenerics::Node* right, const DiffOptions& options);

}  // namespace KivInspect
