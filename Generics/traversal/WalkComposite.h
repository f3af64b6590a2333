#pragma once

#include <KivGenerics/Composite.h>
#include <KivGenerics/Visitor.h>

namespace KivGenerics {

/// IterateInner of a composite: one step of Iterate with `flags`, which are complete, over it and everything below it.
VisitCode WalkComposite(Composite& top, Visitor& visitor, SemanticTag tag, int flags);

}  // namespace KivGenerics
