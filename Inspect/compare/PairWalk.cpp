#include "compare/PairWalk.h"

#include <KivGenerics/NodeCast.h>
#include <KivInspect/Key.h>

namespace KivInspect {

using namespace KivGenerics;

PairWalk::PairWalk(Node* left, Node* right, EnumOrvGenericsTemporality limit) : limit_(limit) {
    pair_.left = left != nullptr && left->ShouldVisit(limit) ? left : nullptr;
    pair_.right = right != nullptr && right->ShouldVisit(limit) ? right : nullptr;
}

/// The first child above `index` that counts.
Node* PairWalk::Visible(const Composite* composite, int index) const {
    Node* child = composite->GetNext(index);
    while (child != nullptr && !child->ShouldVisit(limit_)) {
        child = composite->GetNext(child->GetIndex());
    }
    return child;
}

/// Puts the current pair on the path, if something can stand below it.
bool PairWalk::Enter() {
    Composite* const left = node_cast<Composite>(pair_.left);
    Composite* const right = node_cast<Composite>(pair_.right);
    if (skip_ || left == nullptr || right == nullptr || left->GetType() != right->GetType()) {
        return false;
    }
    frames_.push_back({left, right, -1});
    return true;
}

bool PairWalk::Next() {
    if (!started_) {
        started_ = true;
        return pair_.left != nullptr || pair_.right != nullptr;
    }
    Enter();
    skip_ = false;
    while (!frames_.empty()) {
        Frame& top = frames_.back();
        Node* const left = Visible(top.left, top.index);
        Node* const right = Visible(top.right, top.index);
        if (left != nullptr || right != nullptr) {
            const bool hasLeft = right == nullptr || (left != nullptr && left->GetIndex() <= right->GetIndex());
            const bool hasRight = left == nullptr || (right != nullptr && right->GetIndex() <= left->GetIndex());
            pair_ = {hasLeft ? left : nullptr, hasRight ? right : nullptr};
            top.index = (hasLeft ? left : right)->GetIndex();
            return true;
        }
        frames_.pop_back();
    }
    pair_ = {};
    return false;
}

std::string PairWalk::GetKey(const Names* names) const {
    std::string key;
    for (const Frame& frame : frames_) {
        AppendStep(key, frame.left, frame.index, names);
    }
    return key;
}

}  // namespace KivInspect
