// Copying and merging of composites: the checks, then the children.

#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "core/CopyChildren.h"
#include "core/NodeAccess.h"
#include "core/Raise.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"
#include "traversal/CopyVisitors.h"

namespace KivGenerics {

// kept-on-purpose: copy-lifts-hidden-children
VisitCode Composite::CopyVisitor::VisitNode(Node* source, bool, NodeType type) {
    Node* const copy = target_->NewNode(source->GetIndex(), type, false, source->GetSemanticTag());
    if (copy == nullptr) {
        return VisitStop;
    }
    PopulateNew(*copy, *source);
    return VisitSkipChildren;
}

VisitCode Composite::MergeVisitor::VisitNode(Node* theirs, bool postOrder, NodeType type) {
    Node* const mine = target_->Get(theirs->GetIndex());
    if (mine == nullptr) {
        return CopyVisitor(target_).VisitNode(theirs, postOrder, type);
    }
    const bool merged = mine->MergeWith(theirs, flag_);
    result_ = result_ && merged;
    return VisitSkipChildren;
}

Node* Composite::ReplaceWithCopy(int index, Node* source) {
    CheckAncestor(source);
    Node* const node = NewNode(index, source->GetType(), false, source->GetSemanticTag());
    if (node != nullptr) {
        node->Populate(source);
    }
    return node;
}

bool NodeAccess::CopyHidden(Composite& target, Composite& hidden, int flags) {
    Composite::CopyVisitor visitor(&target);
    return IterateInner(hidden, &visitor, SemanticTagNone, flags) != VisitStop;
}

bool Vector::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    auto* const vector = static_cast<Vector*>(other);
    CheckNotInside(vector);
    const bool merged = MergeWithComposite(vector, flag);
    return agreed && merged;
}

// kept-on-purpose: populate-releases-descendant
void Vector::Populate(Node* source) {
    Node::Populate(source);
    Populate(static_cast<Vector*>(source));
}

void Vector::Populate(Vector* source) {
    if (source == nullptr) {
        Raise(Texts::NullCopy);
    }
    if (source != this) {
        CopyChildren(source, FindStepBelow(source));
    }
}

// `forbidden` is the child of the source that is this vector or contains it, if there is one.
void Vector::CopyChildren(Vector* source, const Node* forbidden) {
    Clear();
    if (forbidden == nullptr) {
        KivGenerics::CopyChildren(*this, *source);
        return;
    }
    children_.reserve(source->children_.size());
    for (int i = 0; Node* const child = source->GetNV(i); ++i) {
        if (child == forbidden) {
            Raise(Texts::Ancestor);
        }
        Node* const copy = Add(child->GetType(), child->GetSemanticTag());
        if (copy == nullptr) {
            return;
        }
        PopulateNew(*copy, *child);
    }
}

}  // namespace KivGenerics
