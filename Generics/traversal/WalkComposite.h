#pragma once

#include <KivGenerics/Composite.h>
#include <KivGenerics/RowVisitor.h>

namespace KivGenerics {

/// IterateInner of a composite: one step of Iterate with `flags`, which are complete, over it and everything below it. The visitor
/// is a Visitor or a RowVisitor.
template <class Shown>
VisitCode WalkComposite(Composite& top, Shown& visitor, SemanticTag tag, int flags);

}  // namespace KivGenerics
