// A leaf's step of a walk, and its single visit.

#include "traversal/WalkChild.h"

namespace KivGenerics {

VisitCode Boolean::Visit(Visitor* visitor, bool postOrder) {
    return postOrder ? VisitContinue : visitor->VisitBoolean(this);
}
VisitCode Boolean::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkLeaf(*this, ChildWalk(visitor, tag, flags), &Visitor::VisitBoolean);
}

VisitCode Double::Visit(Visitor* visitor, bool postOrder) {
    return postOrder ? VisitContinue : visitor->VisitDouble(this);
}
VisitCode Double::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkLeaf(*this, ChildWalk(visitor, tag, flags), &Visitor::VisitDouble);
}

VisitCode GlobalID::Visit(Visitor* visitor, bool postOrder) {
    return postOrder ? VisitContinue : visitor->VisitGlobalID(this);
}
VisitCode GlobalID::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkLeaf(*this, ChildWalk(visitor, tag, flags), &Visitor::VisitGlobalID);
}

VisitCode Integer::Visit(Visitor* visitor, bool postOrder) {
    return postOrder ? VisitContinue : visitor->VisitInteger(this);
}
VisitCode Integer::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkLeaf(*this, ChildWalk(visitor, tag, flags), &Visitor::VisitInteger);
}

// Only a walk shows an Integer64: visitors written before the kind existed are not called for one.
// kept-on-purpose: integer64-visit
VisitCode Integer64::Visit(Visitor*, bool) {
    return VisitContinue;
}
VisitCode Integer64::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkLeaf(*this, ChildWalk(visitor, tag, flags), &Visitor::VisitInteger64);
}

VisitCode String::Visit(Visitor* visitor, bool postOrder) {
    return postOrder ? VisitContinue : visitor->VisitString(this);
}
VisitCode String::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkLeaf(*this, ChildWalk(visitor, tag, flags), &Visitor::VisitString);
}

VisitCode DoubleSet::Visit(Visitor* visitor, bool postOrder) {
    return postOrder ? VisitContinue : visitor->VisitDoubleSet(this);
}
VisitCode DoubleSet::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkLeaf(*this, ChildWalk(visitor, tag, flags), &Visitor::VisitDoubleSet);
}

VisitCode IdSet::Visit(Visitor* visitor, bool postOrder) {
    return postOrder ? VisitContinue : visitor->VisitIdSet(this);
}
VisitCode IdSet::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkLeaf(*this, ChildWalk(visitor, tag, flags), &Visitor::VisitIdSet);
}

VisitCode IntegerSet::Visit(Visitor* visitor, bool postOrder) {
    return postOrder ? VisitContinue : visitor->VisitIntegerSet(this);
}
VisitCode IntegerSet::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkLeaf(*this, ChildWalk(visitor, tag, flags), &Visitor::VisitIntegerSet);
}

VisitCode StringSet::Visit(Visitor* visitor, bool postOrder) {
    return postOrder ? VisitContinue : visitor->VisitStringSet(this);
}
VisitCode StringSet::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkLeaf(*this, ChildWalk(visitor, tag, flags), &Visitor::VisitStringSet);
}

}  // namespace KivGenerics
