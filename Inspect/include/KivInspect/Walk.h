#pragma once

#include <string>
#include <vector>

#include <KivGenerics/Composite.h>
#include <KivGenerics/Node.h>
#include <KivInspect/Names.h>

namespace KivInspect {

/// Walks a node and everything below it, parents first, children in index order. Needs no stack of the thread, however deep
/// the tree is, and sees every node, whatever its temporality.
///
/// The tree must not change meanwhile. Never throws but std::bad_alloc.
class Walk {
public:
    /// Begins before `start`, which may be null: then there is nothing to see.
    explicit Walk(KivGenerics::Node* start);

    /// Goes to the next node and returns it; null at the end.
    KivGenerics::Node* Next();
    /// What Next returned last.
    KivGenerics::Node* GetNode() const noexcept { return node_; }
    /// How far below the start it stands: 0 for the start itself.
    int GetDepth() const noexcept { return static_cast<int>(frames_.size()); }
    /// Next does not go below the current node.
    void SkipChildren() noexcept { skip_ = true; }
    /// Next goes neither below the current node nor to those that follow it below the same parent.
    void SkipRest() noexcept {
        skip_ = true;
        leave_ = true;
    }
    /// The current node's key from the root of its tree; with names where there are any.
    std::string GetKey(const Names* names = nullptr) const;

private:
    struct Frame {
        KivGenerics::Composite* composite;
        int index;  // of the child that stands on the path
    };

    KivGenerics::Node* start_;
    KivGenerics::Node* node_ = nullptr;
    std::vector<Frame> frames_;
    bool started_ = false;
    bool skip_ = false;
    bool leave_ = false;
};

}  // namespace KivInspect
