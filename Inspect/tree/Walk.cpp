#include <KivInspect/Walk.h>

#include <KivGenerics/NodeCast.h>
#include <KivInspect/Key.h>

namespace KivInspect {

using KivGenerics::Composite;
using KivGenerics::Node;
using KivGenerics::node_cast;

Walk::Walk(Node* start) : start_(start) {}

Node* Walk::Next() {
    if (!started_) {
        started_ = true;
        return node_ = start_;
    }
    if (Composite* const composite = node_cast<Composite>(node_); composite != nullptr && !skip_) {
        frames_.push_back({composite, -1});
    }
    if (leave_ && !frames_.empty()) {
        frames_.pop_back();
    }
    skip_ = false;
    leave_ = false;
    while (!frames_.empty()) {
        Frame& top = frames_.back();
        if (Node* const child = top.composite->GetNext(top.index)) {
            top.index = child->GetIndex();
            return node_ = child;
        }
        frames_.pop_back();
    }
    return node_ = nullptr;
}

std::string Walk::GetKey(const Names* names) const {
    std::string key = KivInspect::GetKey(start_, names);
    for (const Frame& frame : frames_) {
        AppendStep(key, frame.composite, frame.index, names);
    }
    return key;
}

}  // namespace KivInspect
