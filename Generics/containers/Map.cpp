#include <KivGenerics/Map.h>

#include <new>

#include "core/MapChildren.h"
#include "core/Raise.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"

namespace KivGenerics {

void Map::CheckIndex(int index) {
    if (!IsIndex(index)) {
        Raise(Texts::IndexOutOfRange);
    }
}

// What cannot be done here, NewNode does or says why not.
bool Map::MakeRoom(int index) noexcept {
    Overflow* const overflow = GetOverflow();
    if (index < slotCount_ || index > kGreatestIndex || overflow == nullptr ||
        NodeAccess::GetTree(*this)->IsReadOnly()) {
        return false;
    }
    try {
        return overflow->MakeAppendable(index);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

Node* Map::NewInRoom(int index, NodeType type, SemanticTag tag) {
    TreeImpl& tree = *NodeAccess::GetTree(*this);
    Node* const node = tree.CreateNode(type, *this, index, tag);
    if (node != nullptr) {
        Put(index, node);
        tree.CountMore(1);
        NodeAccess::SetTemporalityOfNew(*node, TemporalityPersistent);
        NodeAccess::ForgetEmpty(*node);
    }
    return node;
}

Map* Map::NewMapInRoom(int index, SemanticTag tag) {
    TreeImpl& tree = *NodeAccess::GetTree(*this);
    tree.CheckReadOnly();
    Map* const map = tree.CreateMap(*this, index, tag);
    if (map != nullptr) {
        Put(index, map);
        tree.CountMore(1);
        MakePersistent(*map);
    }
    return map;
}

Node* Map::GetFromOverflow(int index) const noexcept {
    const Overflow* const overflow = GetOverflow();
    if (overflow == nullptr) {
        return nullptr;
    }
    Node* const* const place = overflow->Find(index);
    return place != nullptr ? *place : nullptr;
}

// kept-on-purpose: map-hash-zero
int Map::GetHash(bool) const noexcept {
    return 0;
}

void Map::Reset() {
    tag_ = SemanticTagDefault;
    Node::Reset();
}

// From itself a map takes nothing. From one of its own descendants it takes what is left of it: the old children go first,
// and the descendant with them.
// kept-on-purpose: populate-releases-descendant
void Map::Populate(Node* other) {
    CheckPopulate(other);
    if (other != this) {
        CheckNotInside(static_cast<Map*>(other));
    }
    TakeTemporality(*other);
    if (other != this) {
        hPopulateChildren(other, false);
    }
}

}  // namespace KivGenerics
