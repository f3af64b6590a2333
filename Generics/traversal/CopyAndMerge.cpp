// How copying and merging go from a composite into its children.

#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "core/MapChildren.h"
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
    PopulateNested(copy, source);
    return VisitSkipChildren;
}

VisitCode Composite::MergeVisitor::VisitNode(Node* theirs, bool postOrder, NodeType type) {
    Node* const mine = target_->Get(theirs->GetIndex());
    if (mine == nullptr) {
        return CopyVisitor(target_).VisitNode(theirs, postOrder, type);
    }
    const bool merged = MergeNested(mine, theirs, flag_);
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

// Populate of a copy inside a copy: whether the target lies inside the source was settled above, and asking again at each
// level would walk to the root once per composite.
void Composite::PopulateNested(Node* target, Node* source) {
    if (target->GetType() == NodeTypeMap) {
        target->Node::Populate(source);
        static_cast<Map*>(target)->hPopulateChildren(source, false);
    } else if (target->GetType() == NodeTypeVector) {
        target->Node::Populate(source);
        static_cast<Vector*>(target)->CopyChildren(static_cast<Vector*>(source), nullptr);
    } else {
        target->Populate(source);
    }
}

bool Composite::MergeNested(Node* target, Node* other, bool flag) {
    if (!IsCompositeType(target->GetType())) {
        return target->MergeWith(other, flag);
    }
    const bool agreed = NodeAccess::MergeWithChecks(*target, other, flag);
    if (target->GetSemanticTag() != other->GetSemanticTag()) {
        return false;
    }
    const bool merged = static_cast<Composite*>(target)->MergeWithComposite(static_cast<Composite*>(other), flag);
    return agreed && merged;
}

bool Composite::MergeWithComposite(Composite* other, bool flag) {
    MergeVisitor visitor(this, flag);
    other->Iterate(&visitor, SemanticTagNone, 0);
    return visitor.GetResult();
}

void CopyMapChildren(const MapChildren& children, Node* other) {
    NodeAccess::CopyChildren(children.map, static_cast<Map&>(*other));
}

void NodeAccess::CopyChildren(Map& target, Map& source) {
    Composite::CopyVisitor visitor(&target);
    source.Iterate(&visitor, SemanticTagNone, 0);
    target.tag_ = source.tag_;
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
    children_.reserve(source->children_.size());
    for (int i = 0; Node* const child = source->GetNV(i); ++i) {
        if (child == forbidden) {
            Raise(Texts::Ancestor);
        }
        Node* const copy = Add(child->GetType(), child->GetSemanticTag());
        if (copy == nullptr) {
            return;
        }
        PopulateNested(copy, child);
    }
}

}  // namespace KivGenerics
