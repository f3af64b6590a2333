#include "core/MapChildren.h"

#include <algorithm>
#include <new>

#include "core/NodeAccess.h"
#include "core/Raise.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"

namespace KivGenerics {
namespace {

TreeImpl& TreeOf(const MapChildren& children) noexcept {
    return *NodeAccess::GetTree(children.map);
}

MapOverflow& NeedOverflow(const MapChildren& children) {
    if (children.overflow == nullptr) {
        KivBase::Buffer* const buffer = TreeOf(children).GetBuffer();
        children.overflow = new (KivBase::In<MapOverflow>(*buffer)) MapOverflow(buffer);
    }
    return *children.overflow;
}

// The place for a child at `index`, a slot or an entry of the overflow store; a new entry holds null.
Node*& NeedPlace(const MapChildren& children, int index, std::size_t expected = 0) {
    return children.IsSlot(index) ? children.slots[index] : NeedOverflow(children).Need(index, expected);
}

void ForgetEmptyPlace(const MapChildren& children, int index) noexcept {
    if (!children.IsSlot(index) && children.overflow != nullptr) {
        Node* const* const place = children.overflow->Find(index);
        if (place != nullptr && *place == nullptr) {
            children.overflow->Remove(index);
        }
    }
}

// Makes way for `node`, of kind `type`, where `old` stands. With keepOld, `old` becomes child 0 of `node`.
void Displace(Node* old, Node* node, NodeType type, bool keepOld, TreeImpl& tree) {
    if (!keepOld) {
        tree.ReleaseNode(old);
        return;
    }
    // kept-on-purpose: abandoned-new-node
    if (!IsCompositeType(type)) {
        Raise(Texts::CannotKeepOldNode);
    }
    // Its place in this map is about to be taken over whole, so it is not emptied: what could fail comes while `old` still
    // stands there.
    Composite* const parent = NodeAccess::GetParent(*old);
    const int index = old->GetIndex();
    NodeAccess::Place(*old, nullptr, -1);
    try {
        static_cast<Composite*>(node)->Move(0, old);
    } catch (...) {
        NodeAccess::Place(*old, parent, index);
        throw;
    }
}

/// NewNode where something stands at `index`, or where its place needs memory.
Node* NewMakingRoom(const MapChildren& children, int index, NodeType type, bool keepOld, SemanticTag tag,
                    std::size_t expected) {
    TreeImpl& tree = TreeOf(children);
    Node* const node = tree.CreateNode(type, children.map, index, tag);
    if (node == nullptr) {
        return nullptr;
    }
    try {
        Node*& place = NeedPlace(children, index, expected);
        if (place != nullptr) {
            Displace(place, node, type, keepOld, tree);
        }
        NodeAccess::NoteChild(children.map);
        place = node;
    } catch (const std::bad_alloc&) {
        tree.ReleaseNode(node);
        throw;
    }
    node->SetTemporality(TemporalityPersistent);
    NodeAccess::ForgetEmpty(*node);
    return node;
}

}  // namespace

int GetMapSize(const MapChildren& children, EnumOrvGenericsTemporality t) {
    int size = 0;
    if (t == TemporalityTemporary) {
        for (int i = 0; i < children.slotCount; ++i) {
            size += children.slots[i] != nullptr ? 1 : 0;
        }
        return size + (children.overflow != nullptr ? static_cast<int>(children.overflow->size()) : 0);
    }
    children.ForEach([&](Node* child) {
        size += NodeAccess::GetDerived(*child) <= t ? 1 : 0;
        return true;
    });
    return size;
}

Node* GetNthInMap(const MapChildren& children, int n) {
    Node* nth = nullptr;
    auto left = static_cast<unsigned>(n);
    children.ForEach([&](Node* child) {
        nth = left == 0 ? child : nullptr;
        return left-- != 0;
    });
    return nth;
}

Node* NewNodeInMap(const MapChildren& children, int index, NodeType type, bool keepOld, SemanticTag tag,
                   std::size_t expected) {
    return children.HasRoom(index) ? children.NewInRoom(index, type, tag)
                                   : NewMakingRoom(children, index, type, keepOld, tag, expected);
}

// The place is made before the node leaves its old one, so that a failure loses nothing.
void InsertIntoMap(const MapChildren& children, int index, Node* node) {
    TreeImpl& tree = TreeOf(children);
    tree.TestWritable();
    NeedPlace(children, index);
    try {
        if (NodeAccess::GetParent(*node) != nullptr) {
            TreeImpl::DetachFromParent(node);
        } else {
            tree.CheckReadOnly();
        }
    } catch (...) {
        ForgetEmptyPlace(children, index);
        throw;
    }
    NodeAccess::NoteChild(children.map);
    NodeAccess::Thaw(*node);
    NeedPlace(children, index) = node;
    NodeAccess::Place(*node, &children.map, index);
}

Node* DetachFromMap(const MapChildren& children, int index) {
    TreeOf(children).CheckReadOnly();
    Node* node = nullptr;
    if (children.IsSlot(index)) {
        std::swap(node, children.slots[index]);
    } else if (children.overflow != nullptr) {
        if (Node* const* const place = children.overflow->Find(index)) {
            node = *place;
            children.overflow->Remove(index);
        }
    }
    if (node == nullptr) {
        Raise(Texts::NothingToRemove);
    }
    NodeAccess::Place(*node, nullptr, -1);
    if (children.map.IsEmpty()) {
        NodeAccess::NoteNoChild(children.map);
    }
    return node;
}

}  // namespace KivGenerics
