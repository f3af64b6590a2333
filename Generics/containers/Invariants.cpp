#include "core/Invariants.h"

#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "core/NodeAccess.h"

namespace KivGenerics {
namespace {

constexpr int kVectorIndex = 2;
constexpr int kVectorParent = 3;
constexpr int kVectorTree = 4;
constexpr int kMapIndex = 1;
constexpr int kMapParent = 2;
constexpr int kMapTree = 3;

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
        if (NodeAccess::GetTree(*child) != NodeAccess::GetTree(vector)) {
            return kVectorTree;
        }
        if (const int broken = CheckInvariants(child)) {
            return broken;
        }
    }
    return 0;
}

// Children are asked for by index, so an entry that holds null, or a key that a slot hides, is met as a child that GetNext
// gives at an index where Get has another.
int CheckMap(const Map& map) {
    for (Node* child = map.GetNext(-1); child != nullptr; child = map.GetNext(child->GetIndex())) {
        if (map.Get(child->GetIndex()) != child) {
            return kMapIndex;
        }
        if (child->GetParent() != &map) {
            return kMapParent;
        }
        if (NodeAccess::GetTree(*child) != NodeAccess::GetTree(map)) {
            return kMapTree;
        }
        if (const int broken = CheckInvariants(child)) {
            return broken;
        }
    }
    return 0;
}

}  // namespace

int CheckInvariants(Node* node) {
    if (node == nullptr || !IsCompositeType(node->GetType())) {
        return 0;
    }
    return node->GetType() == NodeTypeVector ? CheckVector(static_cast<Vector&>(*node))
                                             : CheckMap(static_cast<Map&>(*node));
}

}  // namespace KivGenerics
