#include <KivGenerics/Node.h>

#include <KivGenerics/Composite.h>
#include <KivGenerics/ResultCode.h>

#include "core/NodeAccess.h"
#include "core/Raise.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"

namespace KivGenerics {

Composite* Node::GetParent() const {
    return Parent();
}

bool Node::IsRoot() const {
    return owner_->IsTree();
}

KivBase::ReturnPtrI<Tree> Node::GetTree() const {
    TreeImpl* const tree = NodeAccess::GetTree(*this);
    tree->AddRef();
    return KivBase::ReturnPtrI<Tree>(tree);
}

SemanticTag Node::GetSemanticTag() const {
    return SemanticTagDefault;
}

EnumOrvGenericsTemporality Node::CalculateDerivedTemporality() {
    Guard().NoteOwnDerived();
    return NodeAccess::CalculateLeaf(*this);
}

// The greatest value on the way to the root. Calculating an ancestor may change what stands below it, since a vector
// pushes its value into its elements: so first everything on the way is calculated, then it is read. A value of 4 ends
// the way up, since nothing exceeds it.
EnumOrvGenericsTemporality Node::GetDerivedTemporality() {
    Node* last = this;
    for (;;) {
        if (last->DerivedValue() == TemporalityTemporary || last->owner_->IsTree()) {
            break;
        }
        last = last->Parent();
    }
    EnumOrvGenericsTemporality effective = StoredDerived();
    for (const Node* node = this; node != last;) {
        node = node->Parent();
        effective = node->StoredDerived() > effective ? node->StoredDerived() : effective;
    }
    return effective;
}

void Node::SetDerivedTemporality(EnumOrvGenericsTemporality t) {
    NodeAccess::SetDerived(*this, t);
}

void Node::Remove() {
    CheckReadOnly();
    if (Composite* const parent = Parent()) {
        parent->Remove(index_);
        return;
    }
    TreeImpl* const tree = NodeAccess::GetTree(*this);
    if (tree->GetRoot() == this) {
        tree->RemoveRoot();
    } else {
        // Free: taken out earlier, or never placed. It counts like a node that its parent removes.
        tree->CheckReadOnly();
        tree->ReleaseNode(this);
    }
}

Node* Node::Detach() {
    CheckReadOnly();
    Guard().NoteStray();
    Composite* const parent = Parent();
    return parent != nullptr ? parent->hDetach(index_) : this;
}

void Node::Reset() {
    Clear();
    NodeAccess::Place(*this, nullptr, -1);
    NodeAccess::ResetTemporality(*this);
}

std::int32_t Node::WriteToArchive(KivCOMShared::COrvWriteArchive*, bool, int) {
    return ResultNotImplemented;
}

}  // namespace KivGenerics
