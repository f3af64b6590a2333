// Comparing composites: how many children count, then the counted children one by one.

#include <KivGenerics/Vector.h>

#include "traversal/MapCompareVisitor.h"

namespace KivGenerics {
namespace {

int GetCompareFlags(EnumOrvGenericsTemporality t) noexcept {
    return t == TemporalityPersistent ? IterateUpToPersistent
                                      : (t == TemporalityTransient ? IterateUpToTransient : IterateUpToTemporary);
}

}  // namespace

int Vector::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    const int order = Node::Compare(other, t, recalc);
    if (order != 0 || DerivedValue() > t) {
        return order;
    }
    auto* const vector = static_cast<Vector*>(other);
    const int sizes = GetSize(t) - vector->GetSize(t);
    if (sizes != 0) {
        return sizes;
    }
    const int size = vector->GetSize(TemporalityTemporary);
    int next = 0;
    for (Node* const mine : children_) {
        if (NodeAccess::GetDerived(*mine) > t) {
            continue;
        }
        // Where temporalities above the scale hide more of the other side than was counted, its last element stands in, and
        // after it comes null, which Compare refuses.
        Node* theirs = vector->GetNV(next++);
        while (theirs != nullptr && NodeAccess::GetDerived(*theirs) > t && next < size) {
            theirs = vector->GetNV(next++);
        }
        const int children = mine->Compare(theirs, t, false);
        if (children != 0) {
            return children;
        }
    }
    return 0;
}

Node* MapCompareVisitor::TakeNext() {
    while (slot_ < mine_.slotCount) {
        Node* const child = mine_.slots[slot_++];
        if (child != nullptr && NodeAccess::GetDerived(*child) <= t_) {
            return child;
        }
    }
    if (mine_.overflow == nullptr) {
        return nullptr;
    }
    while (entry_ != mine_.overflow->end()) {
        Node* const child = (entry_++)->second;
        if (NodeAccess::GetDerived(*child) <= t_) {
            return child;
        }
    }
    return nullptr;
}

VisitCode MapCompareVisitor::VisitNode(Node* theirs, bool, NodeType) {
    Node* const mine = TakeNext();
    if (mine == nullptr) {
        result_ = -1;
        return VisitStop;
    }
    result_ = mine->GetIndex() - theirs->GetIndex();
    if (result_ == 0) {
        result_ = mine->Compare(theirs, t_, false);
    }
    return result_ != 0 ? VisitStop : VisitSkipChildren;
}

int CompareMaps(const MapChildren& children, Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    const int order = children.map.Node::Compare(other, t, recalc);
    if (order != 0 || NodeAccess::GetDerived(children.map) > t) {
        return order;
    }
    auto* const map = static_cast<Map*>(other);
    const int sizes = children.map.GetSize(t) - map->GetSize(t);
    if (sizes != 0) {
        return sizes;
    }
    MapCompareVisitor visitor(children, t);
    map->Iterate(&visitor, SemanticTagNone, GetCompareFlags(t));
    return visitor.GetResult();
}

}  // namespace KivGenerics
