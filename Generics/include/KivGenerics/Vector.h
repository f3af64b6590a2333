#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include <KivBase/Allocator.h>
#include <KivBase/Guid.h>
#include <KivBase/Unreachable.h>
#include <KivGenerics/Composite.h>

namespace KivGenerics {

/// An ordered list of children at the dense indexes 0 to size - 1.
///
/// Lives in:   the forest of its tree; so do its children and its array of pointers.
/// Dies with:  the forest. Indexes of later children change on Insert, Remove and Move.
/// Threads:    one thread at a time for all trees of a forest.
/// On failure: throws Exception before anything is changed, unless an operation says otherwise.
/// Cost:       Get O(1); Add amortised O(1); Insert and Remove O(size - index), for the renumbering.
class KIV_GENERICS_EXPORT Vector final : public Composite {
public:
    using Composite::Detach;
    using Composite::Remove;
    using Node::WriteToArchive;

    static constexpr NodeType StaticType = NodeTypeVector;

    // Copies take the node's own fields and the array of pointers; the children stay those of the source.
    Vector(const Vector&) = default;
    Vector(Vector&&) = default;
    Vector& operator=(const Vector&) = default;
    Vector& operator=(Vector&&) = default;

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override;
    void Clear() override;
    void Populate(Node* source) override;
    /// As Populate(Node*), without taking over the temporality.
    void Populate(Vector* source);
    bool MergeWith(Node* other, bool flag) override;
    std::int32_t WriteToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient) override;
    std::int32_t ReadFromArchive(ArchiveDecoder& decoder, bool longCount) override;
    std::int32_t SizeDefnArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) override;
    VisitCode Visit(Visitor* visitor, bool postOrder) override;

protected:
    VisitCode IterateInner(Visitor* visitor, SemanticTag tag, int flags) override;

public:
    /// The children take over this vector's derived temporality.
    EnumOrvGenericsTemporality CalculateDerivedTemporality() override;

private:
    void SetDerivedTemporality(EnumOrvGenericsTemporality t) override;

public:
    int GetSize(EnumOrvGenericsTemporality t) override;
    bool IsEmpty() const override { return children_.empty(); }
    Node* Get(int index) const override { return GetNV(index); }
    Node* GetNext(int index) const override;
    Node* GetNth(int n) const override { return GetNV(n); }
    /// `index` may be the size, which appends. Unlike Add, any kind of node is taken.
    Node* NewNode(int index, NodeType type, bool keepOld = false, SemanticTag tag = SemanticTagNone) override;
    /// Within one vector `index` counts after the node has been taken out, so it must be below the size.
    void Move(int index, Node* node) override;
    void Remove(int index) override;

private:
    Node* hDetach(int index) override;

public:
    /// Get without the virtual call.
    Node* GetNV(int index) const noexcept {
        return static_cast<std::size_t>(static_cast<unsigned>(index)) < children_.size()
                   ? children_[static_cast<std::size_t>(index)]
                   : nullptr;
    }
    /// Appends a child of default temporality. Throws Exception when its kind is not that of child 0.
    Node* Add(NodeType type, SemanticTag tag = SemanticTagNone);
    /// The same for a kind known when compiling: `Add<Integer>()`.
    template <class T>
    T* Add(SemanticTag tag = SemanticTagNone) {
        if constexpr (NodeSource::IsMadeInline<T>) {
            if (children_.size() == children_.capacity()) {
                CheckKind(T::StaticType);
                MakeRoom();
            }
            NodeSource& source = GetSource();
            if (TakesKind(T::StaticType) && source.CanCreateNext<T>()) {
                T* const node = source.CreateNext<T>(*this, static_cast<int>(children_.size()), 1);
                NoteChild();
                Append(node);
                return node;
            }
        }
        if constexpr (std::is_same_v<T, Map>) {
            return AddMap(tag);
        } else {
            return static_cast<T*>(Add(T::StaticType, tag));
        }
    }
    // Many leaves of one kind at once: Add for each of `count` values, and Set to it, in order and counted as these changes;
    // the kind is that which holds such values. Throws what Add throws, and std::bad_alloc where a host's buffer answers null:
    // the leaves made until then stay.
    void AddLeaves(const bool* values, int count);
    void AddLeaves(const double* values, int count);
    void AddLeaves(const GUID* values, int count);
    void AddLeaves(const std::int32_t* values, int count);
    void AddLeaves(const std::int64_t* values, int count);
    /// Inserts a child of default temporality before `index`, or appends; its kind is not compared.
    Node* Insert(int index, NodeType type, SemanticTag tag = SemanticTagNone);
    /// Add, then Populate from `source`, which must not be this vector or above it.
    Node* AddCopy(Node* source);
    /// Insert, then Populate from `source`, which must not be this vector or above it.
    Node* InsertCopy(int index, Node* source);
    /// Inserts a free node of this tree, as Detach returns it: a node that still has a parent stays there too.
    void InsertNode(int index, Node* node);
    /// Room for `n` children in all. Throws std::length_error beyond the greatest possible size, also for a negative `n`.
    void Reserve(int n);

private:
    friend class ChildRuns;
    friend class Composite;
    friend class NodeSource;
    friend class TreeImpl;
    friend struct NodeAccess;

    explicit Vector(NodeSource* tree) noexcept : Vector(tree, *tree, -1) {}
    Vector(NodeSource* tree, NodeOwner& owner, int index) noexcept
        : Composite(tree, owner, index, StaticType), children_(KivBase::Allocator<Node*>(tree->GetBuffer())) {}

    void CheckIndex(int index) const;
    /// Throws Exception when child 0 is of another kind.
    void CheckKind(NodeType type) const {
        if (!TakesKind(type)) {
            RefuseKind();
        }
    }
    bool TakesKind(NodeType type) const noexcept { return children_.empty() || children_.front()->GetType() == type; }
    [[noreturn]] static void RefuseKind();
    void NeedRoom() {
        if (children_.size() == children_.capacity()) {
            MakeRoom();
        }
    }
    void MakeRoom();
    void MakeRoomFor(std::size_t more);
    /// Places a child behind the others, after NeedRoom.
    void Append(Node* node) {
        if (children_.size() == children_.capacity()) {
            KivBase::Unreachable();
        }
        children_.push_back(node);
    }
    Map* AddMap(SemanticTag tag);
    void hInsertNode(int index, Node* node);
    void Renumber(std::size_t from) noexcept;
    void CopyChildren(Vector* source, const Node* forbidden);

    // Invariants, tested by CheckInvariants:
    //   1. no element is null;
    //   2. element i has index i;
    //   3. every element has this vector as parent;
    //   4. every composite among them belongs to this vector's tree.
    std::vector<Node*, KivBase::Allocator<Node*>> children_;
};

}  // namespace KivGenerics
