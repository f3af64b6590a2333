#pragma once

#include <cstdint>
#include <vector>

#include <KivGenerics/Composite.h>
#include <KivGenerics/Node.h>

namespace KivInspect {

/// Walks two trees at once, parents first, children with the same index together; either may be null. Needs no stack of the
/// thread.
class AlignedWalk {
public:
    AlignedWalk(KivGenerics::Node* left, KivGenerics::Node* right);

    /// False at the end.
    bool Next();
    /// The present node on the left; null when only the right tree has it.
    KivGenerics::Node* GetLeft() const noexcept { return left_; }
    KivGenerics::Node* GetRight() const noexcept { return right_; }
    /// How many children the two have together.
    std::uint32_t CountChildren() const;

private:
    struct Frame {
        KivGenerics::Composite* left;
        KivGenerics::Composite* right;
        int index;  // of the last children
    };

    static bool Step(Frame& frame, KivGenerics::Node*& left, KivGenerics::Node*& right);

    KivGenerics::Node* left_;
    KivGenerics::Node* right_;
    std::vector<Frame> frames_;
    bool started_ = false;
};

}  // namespace KivInspect
