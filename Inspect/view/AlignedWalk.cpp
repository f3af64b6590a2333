#include "view/AlignedWalk.h"

#include <KivGenerics/NodeCast.h>

namespace KivInspect {

using namespace KivGenerics;

AlignedWalk::AlignedWalk(Node* left, Node* right) : left_(left), right_(right) {}

/// The next children of two composites: those with the smaller index.
bool AlignedWalk::Step(Frame& frame, Node*& left, Node*& right) {
    left = frame.left != nullptr ? frame.left->GetNext(frame.index) : nullptr;
    right = frame.right != nullptr ? frame.right->GetNext(frame.index) : nullptr;
    if (left == nullptr && right == nullptr) {
        return false;
    }
    if (left != nullptr && right != nullptr && left->GetIndex() != right->GetIndex()) {
        (left->GetIndex() < right->GetIndex() ? right : left) = nullptr;
    }
    frame.index = (left != nullptr ? left : right)->GetIndex();
    return true;
}

std::uint32_t AlignedWalk::CountChildren() const {
    Frame frame{node_cast<Composite>(left_), node_cast<Composite>(right_), -1};
    // Of one tree alone there is nothing to be put together.
    if (frame.left == nullptr || frame.right == nullptr) {
        Composite* const only = frame.left != nullptr ? frame.left : frame.right;
        return only != nullptr ? static_cast<std::uint32_t>(only->GetSize(TemporalityTemporary)) : 0;
    }
    std::uint32_t count = 0;
    Node* left = nullptr;
    Node* right = nullptr;
    while (Step(frame, left, right)) {
        count += 1;
    }
    return count;
}

bool AlignedWalk::Next() {
    if (!started_) {
        started_ = true;
        return left_ != nullptr || right_ != nullptr;
    }
    Composite* const left = node_cast<Composite>(left_);
    Composite* const right = node_cast<Composite>(right_);
    if (left != nullptr || right != nullptr) {
        frames_.push_back({left, right, -1});
    }
    while (!frames_.empty()) {
        if (Step(frames_.back(), left_, right_)) {
            return true;
        }
        frames_.pop_back();
    }
    return false;
}

}  // namespace KivInspect
