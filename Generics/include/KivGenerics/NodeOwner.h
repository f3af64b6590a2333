#pragma once

namespace KivGenerics {

class ChangeGuard;

/// What a node belongs to: the composite that it stands in or, as long as it stands in none, its tree. Both know the tree, so
/// that one word in a node leads to its parent and to its tree.
class NodeOwner {
public:
    /// Of the tree.
    ChangeGuard* GetGuard() const noexcept { return guard_; }
    /// True for a tree, false for a composite.
    bool IsTree() const noexcept;

protected:
    explicit NodeOwner(ChangeGuard* guard) noexcept : guard_(guard) {}
    NodeOwner(const NodeOwner&) = default;
    NodeOwner& operator=(const NodeOwner&) = default;
    ~NodeOwner() = default;

private:
    friend struct NodeAccess;

    ChangeGuard* guard_;
};

}  // namespace KivGenerics
