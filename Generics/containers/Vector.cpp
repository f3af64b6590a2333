#include <KivGenerics/Vector.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "core/CopyChildren.h"
#include "core/DerivedTemporality.h"
#include "core/NodeAccess.h"
#include "core/Raise.h"
#include "core/ReleaseChildren.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"

namespace KivGenerics {

void Vector::CheckIndex(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) > children_.size()) {
        Raise(Texts::IndexOutOfRange);
    }
}

int Vector::GetSize(EnumOrvGenericsTemporality t) {
    if (t == TemporalityTemporary) {
        return static_cast<int>(children_.size());
    }
    return static_cast<int>(std::count_if(children_.begin(), children_.end(),
                                          [t](Node* child) { return NodeAccess::GetDerived(*child) <= t; }));
}

Node* Vector::GetNext(int index) const {
    return index == (std::numeric_limits<int>::max)() ? nullptr : GetNV(index + 1);
}

// Room for one more child, made before the child is, so that a failure leaves no node without a place. A read-only tree
// refuses here as it would in the factory.
void Vector::MakeRoom() {
    NodeAccess::GetTree(*this)->TestWritable();
    constexpr std::size_t kFirstRoom = 4;
    children_.reserve((std::max)(kFirstRoom, children_.capacity() * 2));
}

void Vector::MakeRoomFor(std::size_t more) {
    NodeAccess::GetTree(*this)->TestWritable();
    children_.reserve((std::max)(children_.size() + more, children_.capacity() * 2));
}

void Vector::Renumber(std::size_t from) noexcept {
    for (std::size_t i = from; i < children_.size(); ++i) {
        children_[i]->index_ = static_cast<std::int32_t>(i);
    }
}

void Vector::hInsertNode(int index, Node* node) {
    children_.insert(children_.begin() + index, node);
    NoteChild();
    NodeAccess::Thaw(*node);
    node->owner_ = this;
    Renumber(static_cast<std::size_t>(index));
}

// kept-on-purpose: unchecked-insert
Node* Vector::NewNode(int index, NodeType type, bool keepOld, SemanticTag tag) {
    CheckIndex(index);
    const bool append = static_cast<std::size_t>(index) == children_.size();
    if (append) {
        NeedRoom();
    }
    TreeImpl& tree = *NodeAccess::GetTree(*this);
    Node* const node = tree.CreateNode(type, *this, index, tag);
    if (node == nullptr) {
        return nullptr;
    }
    if (append) {
        NoteChild();
        Append(node);
    } else if (keepOld) {
        if (!IsCompositeType(type)) {
            Raise(Texts::CannotKeepOldNode);
        }
        // Takes the old child out of this vector: the room that it leaves is that of the new one.
        static_cast<Composite*>(node)->Move(0, children_[static_cast<std::size_t>(index)]);
        hInsertNode(index, node);
    } else {
        Node*& place = children_[static_cast<std::size_t>(index)];
        tree.ReleaseNode(place);
        place = node;
    }
    node->SetTemporality(TemporalityPersistent);
    NodeAccess::ForgetEmpty(*node);
    return node;
}

void Vector::RefuseKind() {
    Raise(Texts::DifferentChildren);
}

Node* Vector::Add(NodeType type, SemanticTag tag) {
    CheckKind(type);
    NeedRoom();
    Node* const node = NodeAccess::GetTree(*this)->CreateNode(type, *this, static_cast<int>(children_.size()), tag);
    if (node != nullptr) {
        NoteChild();
        Append(node);
    }
    return node;
}

Map* Vector::AddMap(SemanticTag tag) {
    CheckKind(NodeTypeMap);
    NeedRoom();
    TreeImpl& tree = *NodeAccess::GetTree(*this);
    tree.CheckReadOnly();
    Map* const map = tree.CreateMap(*this, static_cast<int>(children_.size()), tag);
    if (map != nullptr) {
        NoteChild();
        Append(map);
    }
    return map;
}

Node* Vector::Insert(int index, NodeType type, SemanticTag tag) {
    CheckIndex(index);
    NeedRoom();
    Node* const node = NodeAccess::GetTree(*this)->CreateNode(type, *this, index, tag);
    if (node != nullptr) {
        hInsertNode(index, node);
    }
    return node;
}

Node* Vector::AddCopy(Node* source) {
    CheckAncestor(source);
    Node* const node = Add(source->GetType(), source->GetSemanticTag());
    if (node != nullptr) {
        PopulateNew(*node, *source);
    }
    return node;
}

Node* Vector::InsertCopy(int index, Node* source) {
    CheckAncestor(source);
    Node* const node = Insert(index, source->GetType(), source->GetSemanticTag());
    if (node != nullptr) {
        PopulateNew(*node, *source);
    }
    return node;
}

// kept-on-purpose: insert-node-keeps-parent
void Vector::InsertNode(int index, Node* node) {
    CheckReadOnly();
    NodeAccess::GetTree(*this)->NoteStray();
    CheckIndex(index);
    CheckAncestor(node);
    hInsertNode(index, node);
}

void Vector::Reserve(int n) {
    if (n < 0 || static_cast<std::size_t>(n) > children_.max_size()) {
        throw std::length_error("vector<T> too long");
    }
    children_.reserve(static_cast<std::size_t>(n));
}

void Vector::Move(int index, Node* node) {
    CheckIndex(index);
    Composite::Move(index, node);
    if (NodeAccess::GetParent(*node) != this) {
        NeedRoom();
    } else if (static_cast<std::size_t>(index) == children_.size()) {
        Raise(Texts::MoveOutOfRange);
    }
    if (NodeAccess::GetParent(*node) != nullptr) {
        TreeImpl::DetachFromParent(node);
    } else {
        CheckReadOnly();
    }
    hInsertNode(index, node);
}

void Vector::Remove(int index) {
    Node* const node = hDetach(index);
    NodeAccess::GetTree(*this)->ReleaseNode(node);
}

Node* Vector::hDetach(int index) {
    CheckReadOnly();
    Node* const node = GetNV(index);
    if (node == nullptr) {
        Raise(Texts::NothingToRemove);
    }
    children_.erase(children_.begin() + index);
    Renumber(static_cast<std::size_t>(index));
    NodeAccess::Place(*node, nullptr, -1);
    if (children_.empty()) {
        NodeAccess::NoteNoChild(*this);
    }
    return node;
}

void Vector::Clear() {
    CheckReadOnly();
    ReleaseChildren(*this);
}

EnumOrvGenericsTemporality Vector::CalculateDerivedTemporality() {
    NodeAccess::GetTree(*this)->NoteOwnDerived();
    return CalculateTemporality(*this).derived;
}

void Vector::SetDerivedTemporality(EnumOrvGenericsTemporality t) {
    if (t == NodeAccess::GetStoredDerived(*this)) {
        return;
    }
    NodeAccess::SetDerived(*this, t);
    for (Node* const child : children_) {
        child->SetDerivedTemporality(t);
    }
}

}  // namespace KivGenerics
