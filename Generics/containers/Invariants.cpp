#include "core/Invariants.h"

#include <KivGenerics/Vector.h>

#include "containers/MapImpl.h"
#include "core/NodeAccess.h"

namespace KivGenerics {
namespace {

constexpr int kVectorIndex = 2;
constexpr int kVectorParent = 3;
constexpr int kVectorTree = 4;
constexpr int kMapIndex = 1;
constexpr int kMapParent = 2;
constexpr int kMapTree = 3;
constexpr int kMapOverflow = 4;

/// A leaf belongs to the tree of its parent, which is all that it knows of one.
bool IsOfTree(const Node& child, const TreeImpl* tree) noexcept {
    return !IsCompositeType(child.GetType()) || NodeAccess::GetTree(static_cast<const Composite&>(child)) == tree;
}

int CheckVector(const Vector& vector) {
    const int size = const_cast<Vector&>(vector).GetSize(TemporalityTemporary);
    for (int i = 0; i < size; ++i) {
        Node* const child = vector.GetNV(i);
        if (child == nullptr) {
            return 1;
        }
        if (child->GetIndex() != i) {
            return kVectorIndex;
        }
        if (child->GetParent() != &vector) {
            return kVectorParent;
        }
        if (!IsOfTree(*child, NodeAccess::GetTree(vector))) {
            return kVectorTree;
        }
        if (const int broken = CheckInvariants(child)) {
            return broken;
        }
    }
    return 0;
}

int CheckMapChild(const Map& map, Node* child, int index) {
    if (child->GetIndex() != index) {
        return kMapIndex;
    }
    if (child->GetParent() != &map) {
        return kMapParent;
    }
    return IsOfTree(*child, NodeAccess::GetTree(map)) ? CheckInvariants(child) : kMapTree;
}

int CheckMapChildren(const MapChildren& children) {
    for (int i = 0; i < children.slotCount; ++i) {
        if (Node* const child = children.slots[i]) {
            if (const int broken = CheckMapChild(children.map, child, i)) {
                return broken;
            }
        }
    }
    if (children.overflow == nullptr) {
        return 0;
    }
    for (auto entry = children.overflow->begin(); entry != children.overflow->end(); ++entry) {
        const int index = *entry;
        Node* const child = entry.Value();
        if (children.IsSlot(index) || index < 0 || child == nullptr) {
            return kMapOverflow;
        }
        if (const int broken = CheckMapChild(children.map, child, index)) {
            return broken;
        }
    }
    return 0;
}

}  // namespace

/// Finds which of the sixteen classes a map is, which only its number of slots tells.
template <int N>
int NodeAccess::CheckMap(const Map& map) {
    if constexpr (N > 1) {
        if (map.GetSlotCount() != N) {
            return CheckMap<N - 1>(map);
        }
    }
    return CheckMapChildren(static_cast<const MapImpl<N>&>(map).Access());
}

int CheckInvariants(Node* node) {
    if (node == nullptr || !IsCompositeType(node->GetType())) {
        return 0;
    }
    return node->GetType() == NodeTypeVector ? CheckVector(static_cast<Vector&>(*node))
                                             : NodeAccess::CheckMap<16>(static_cast<Map&>(*node));
}

}  // namespace KivGenerics
