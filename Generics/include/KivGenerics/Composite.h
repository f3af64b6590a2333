#pragma once

#include <KivGenerics/Node.h>
#include <KivGenerics/NodeOwner.h>
#include <KivGenerics/NodeSource.h>

namespace KivGenerics {

/// A node that holds children: the common interface of Vector and Map.
class KIV_GENERICS_EXPORT Composite : public Node, public NodeOwner {
public:
    using Node::Detach;
    using Node::Remove;
    using Node::WriteToArchive;

    Composite(const Composite&) = default;
    Composite(Composite&&) = default;
    Composite& operator=(const Composite&) = default;
    Composite& operator=(Composite&&) = default;

    /// The number of children whose derived temporality is not above `t`; TemporalityTemporary counts all.
    virtual int GetSize(EnumOrvGenericsTemporality t) = 0;
    virtual bool IsEmpty() const = 0;
    /// The child at `index`, or null.
    virtual Node* Get(int index) const = 0;
    /// The child with the smallest index above `index`, or null; GetNext(-1) is the first child.
    virtual Node* GetNext(int index) const = 0;
    /// The n-th child in index order, counted from 0, or null.
    virtual Node* GetNth(int n) const = 0;
    /// Makes a child at `index`, of own temporality TemporalityPersistent. What stood there is removed, or, with keepOld,
    /// becomes child 0 of the new node, which must be a composite then.
    virtual Node* NewNode(int index, NodeType type, bool keepOld = false, SemanticTag tag = SemanticTagNone) = 0;
    /// NewNode, then Populate from `source`, which may belong to another tree but must not be this node or above it. When
    /// `source` stands at or below `index` it has been cleared before it is copied: copy it elsewhere first.
    virtual Node* ReplaceWithCopy(int index, Node* source);
    /// Takes `node`, of this tree, from where it is and places it at `index`.
    virtual void Move(int index, Node* node);
    /// Removes the child at `index` with everything below it. Throws Exception where there is none.
    virtual void Remove(int index) = 0;

private:
    virtual Node* hDetach(int index) = 0;

public:
    /// Takes the child at `index` out and returns it. Throws Exception where there is none.
    Node* Detach(int index) {
        GetSource().NoteStray();
        return hDetach(index);
    }

protected:
    Composite(ChangeGuard* tree, NodeType type) noexcept : Composite(tree, *tree, -1, type) {}
    Composite(ChangeGuard* tree, NodeOwner& owner, int index, NodeType type) noexcept
        : Node(tree, owner, index, type), NodeOwner(tree) {
        tree->CountEmpty();  // as its state says
    }
    ~Composite() = default;

    /// What makes the nodes of this composite's tree.
    NodeSource& GetSource() const noexcept { return static_cast<NodeSource&>(*GetGuard()); }
    /// The modification guard, by a shorter way.
    void CheckReadOnly() const { GetGuard()->CheckReadOnly(); }

    /// Throws Exception when `node` is null, this composite or an ancestor of it.
    void CheckAncestor(const Node* node) const;
    /// Merges the children of `other` into this composite; false when any conflicts.
    bool MergeWithComposite(Composite* other, bool flag);

private:
    friend class Map;
    friend class Node;
    friend class TreeImpl;
    friend class Vector;
    friend struct NodeAccess;
    template <int N>
    friend class MapImpl;
    class CopyVisitor;
    class MergeVisitor;
    class Merger;

    const Node* FindStepBelow(const Composite* ancestor) const noexcept;
    void CheckNotInside(const Composite* source) const;
};

inline Composite* Node::Parent() const noexcept {
    return owner_->IsTree() ? nullptr : static_cast<Composite*>(owner_);
}

}  // namespace KivGenerics
