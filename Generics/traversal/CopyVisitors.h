#pragma once

#include <KivGenerics/Composite.h>
#include <KivGenerics/VisitorNode.h>

namespace KivGenerics {

/// Copies each child that it is shown into the target, at the child's index.
class Composite::CopyVisitor final : public VisitorNode {
public:
    explicit CopyVisitor(Composite* target) noexcept : target_(target) {}
    VisitCode VisitNode(Node* source, bool postOrder, NodeType type) override;

private:
    Composite* target_;
};

/// Merges each child that it is shown into the target's child at the same index, or copies it there.
class Composite::MergeVisitor final : public VisitorNode {
public:
    MergeVisitor(Composite* target, bool flag) noexcept : target_(target), flag_(flag) {}
    VisitCode VisitNode(Node* theirs, bool postOrder, NodeType type) override;
    bool GetResult() const noexcept { return result_; }

private:
    Composite* target_;
    bool result_ = true;
    bool flag_;
};

}  // namespace KivGenerics
