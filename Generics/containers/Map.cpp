#include <KivGenerics/Map.h>

#include "core/MapChildren.h"
#include "core/Raise.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"

namespace KivGenerics {

void Map::CheckIndex(int index) {
    if (index < 0 || index > kGreatestIndex) {
        Raise(Texts::IndexOutOfRange);
    }
}

Node* Map::NewInRoom(int index, NodeType type, SemanticTag tag) {
    TreeImpl& tree = *NodeAccess::GetTree(*this);
    Node* const node = tree.CreateNode(type, this, index, tag);
    if (node != nullptr) {
        Put(index, node);
        tree.CountMore(1);
        NodeAccess::SetTemporalityOfNew(*node, TemporalityPersistent);
        NodeAccess::ForgetEmpty(*node);
    }
    return node;
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
