#pragma once

#include <string>
#include <vector>

#include <KivGenerics/Composite.h>
#include <KivInspect/Names.h>

namespace KivInspect {

/// Two nodes that stand at the same key of two trees; one of them may be null.
struct Pair {
    KivGenerics::Node* left = nullptr;
    KivGenerics::Node* right = nullptr;
};

/// Walks two nodes and what is below them side by side, in the order of keys, parents first. Goes below a pair only when both are
/// there and composites of the same kind. Needs no stack of the thread.
class PairWalk {
public:
    /// With a limit, nodes whose derived temporality is above it are passed over.
    PairWalk(KivGenerics::Node* left, KivGenerics::Node* right, KivGenerics::EnumOrvGenericsTemporality limit);

    /// Goes to the next pair; false at the end.
    bool Next();
    const Pair& Get() const noexcept { return pair_; }
    /// Next does not go below the current pair.
    void SkipChildren() noexcept { skip_ = true; }
    /// The current key below the start.
    std::string GetKey(const Names* names) const;
    /// The left composite in which the current pair stands; null at the start.
    KivGenerics::Composite* GetLeftParent() const noexcept { return frames_.empty() ? nullptr : frames_.back().left; }

private:
    struct Frame {
        KivGenerics::Composite* left;
        KivGenerics::Composite* right;
        int index;  // of the pair of children that stands on the path
    };

    bool Enter();
    KivGenerics::Node* Visible(const KivGenerics::Composite* composite, int index) const;

    Pair pair_;
    KivGenerics::EnumOrvGenericsTemporality limit_;
    std::vector<Frame> frames_;
    bool started_ = false;
    bool skip_ = false;
};

}  // namespace KivInspect
