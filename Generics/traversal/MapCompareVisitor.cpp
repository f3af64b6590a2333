#include "traversal/MapCompareVisitor.h"

namespace KivGenerics {

Node* MapCompareVisitor::TakeNext() {
    while (slot_ < mine_.slotCount) {
        Node* const child = mine_.slots[slot_++];
        if (child != nullptr && NodeAccess::GetDerived(*child) <= t_) {
            return child;
        }
    }
    while (entry_ != MapOverflow::Iterator()) {
        Node* const child = (entry_++).Value();
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

}  // namespace KivGenerics
