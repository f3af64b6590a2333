#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>

#include <KivGenerics/Map.h>
#include <KivGenerics/Node.h>
#include <KivGenerics/Vector.h>

#include "core/TreeImpl.h"

namespace KivGenerics {

/// The library's own door to what a node keeps private, for the operations that are not members of one class.
struct NodeAccess {
    // By references, of which the compiler knows that they are not null.
    static TreeImpl* GetTree(const Node& node) noexcept { return &static_cast<TreeImpl&>(node.Guard()); }
    static TreeImpl* GetTree(const Composite& composite) noexcept {
        return &static_cast<TreeImpl&>(*composite.GetGuard());
    }
    static Composite* GetParent(const Node& node) noexcept { return node.Parent(); }

    template <class T>
    static T* Construct(void* place, TreeImpl& tree, NodeOwner& owner, int index) noexcept {
        return ::new (place) T(&tree, owner, index);
    }
    /// A leaf like another, which may be what stands at `place`.
    template <class T>
    static T* ConstructLike(const T& like, void* place, NodeOwner& owner, int index) noexcept {
        return ::new (place) T(like, owner, index);
    }
    static void Reset(Node& node) { node.Reset(); }
    static void SetTag(Map& map, SemanticTag tag) noexcept { map.tag_ = tag; }
    /// What a scalar leaf holds.
    template <class Leaf>
    static auto& GetValue(Leaf& leaf) noexcept {
        return leaf.value_;
    }

    /// A vector's children.
    template <class List>
    static auto& GetChildren(List& vector) noexcept {
        return vector.children_;
    }

    /// Makes room for `more` children of a kind behind the others of a vector, which may refuse the kind.
    template <class List>
    static void NeedRoomFor(List& vector, NodeType type, std::size_t more) {
        vector.CheckKind(type);
        if (vector.children_.capacity() - vector.children_.size() < more) {
            vector.MakeRoomFor(more);
        }
    }
    /// Places a child behind the others of a vector that has room for it.
    template <class List>
    static void AppendInRoom(List& vector, Node* child) noexcept {
        vector.Append(child);
    }
    template <class List>
    static void NeedRoom(List& vector) {
        vector.NeedRoom();
    }
    /// A new child of a kind known when compiling, behind the others of a vector: of their kind, or they are none. It counts
    /// `changes` changes. Null where a host's buffer answers null.
    template <class T, class List>
    static T* Append(List& vector, std::uint32_t changes = 1) {
        vector.NeedRoom();
        const auto index = static_cast<int>(vector.children_.size());
        T* const node = GetTree(vector)->template CreateChanged<T>(vector, index, changes);
        if (node != nullptr) {
            vector.NoteChild();
            vector.Append(node);
        }
        return node;
    }

    static std::int32_t& GetIndex(Node& node) noexcept { return node.index_; }
    /// Without a parent the node belongs to its tree alone.
    static void Place(Node& node, Composite* parent, int index) noexcept {
        node.owner_ = parent != nullptr ? static_cast<NodeOwner*>(parent) : node.owner_->GetGuard();
        node.index_ = index;
    }
    /// The node, which waited in the forest of the tree, comes to an owner in it.
    static void Adopt(Node& node, TreeImpl& tree, NodeOwner& owner, int index) noexcept {
        node.owner_ = &owner;
        node.index_ = index;
        if (IsCompositeType(node.GetType())) {
            static_cast<Composite&>(node).guard_ = &tree;
        }
    }

    /// Sets the own temporality of a new node, whose derived one has not been calculated, without the guard.
    template <class T>
    static void SetTemporalityOfNew(T& node, EnumOrvGenericsTemporality t) noexcept {
        if constexpr (std::is_final_v<T> && !std::is_base_of_v<Composite, T>) {
            SetTemporalityOfNewLeaf(node, t);
            NoteTemporalityOfNew(node, t);
        } else {
            node.TakeWhenNew(t);
        }
    }
    /// The same for a leaf, where the tree has been told by NoteTemporalityOfNew.
    static void SetTemporalityOfNewLeaf(Node& leaf, EnumOrvGenericsTemporality t) noexcept {
        leaf.state_.temporality = t;
    }
    /// What the tree of `node` must know of the own temporality of new leaves.
    static void NoteTemporalityOfNew(const Node& node, EnumOrvGenericsTemporality t) noexcept {
        if (t != TemporalityDefault && t != TemporalityPersistent) {
            node.Guard().NoteVaried();
        }
    }
    /// The temporality of a node that leaves the tree, which does not ask for its children any more.
    static void ResetTemporality(Node& node) noexcept {
        node.state_.temporality = TemporalityDefault;
        node.StoreDerived(TemporalityDefault);
        ForgetEmpty(node);
    }
    /// The composite, which may be new, needs no children in order not to be temporary, or is about to get some.
    static void ForgetEmpty(Node& node) noexcept {
        if ((node.state_.derivedAt & Node::kEmptyBit) != 0 && !IsFrozen(node)) {
            node.state_.derivedAt = node.GetDerivedRound();
            node.Guard().UncountEmpty();
        }
    }
    static void NoteChild(Composite& composite) noexcept { composite.NoteChild(); }
    /// A composite has lost its last child.
    static void NoteNoChild(Composite& composite) noexcept {
        if (composite.state_.temporality == TemporalityDefault) {
            composite.NoteEmpty();
        }
    }
    /// The derived temporality of a node that no longer stands in its tree stays as it is, whatever becomes of the tree.
    static void Freeze(Node& node) noexcept {
        ForgetEmpty(node);
        node.state_.derived = node.StoredDerived();
        node.state_.derivedAt = IsCompositeType(node.GetType()) ? Node::kFrozen | Node::kEmptyBit : Node::kFrozen;
    }
    static bool IsFrozen(const Node& node) noexcept { return node.GetDerivedRound() == Node::kFrozen; }
    /// A node without a parent comes into its tree.
    static void Thaw(Node& node) noexcept {
        if (IsFrozen(node)) {
            node.state_.derivedAt = node.Guard().GetRound();
            node.NoteTaken(node.state_.temporality);
        }
    }
    /// The derived temporality as it is stored.
    static EnumOrvGenericsTemporality GetStoredDerived(const Node& node) noexcept { return node.StoredDerived(); }
    /// The derived temporality, calculated first when it has not been; ancestors are not asked.
    static EnumOrvGenericsTemporality GetDerived(Node& node) { return node.DerivedValue(); }
    /// The same for a leaf.
    static EnumOrvGenericsTemporality GetDerivedOfLeaf(Node& leaf) noexcept {
        const EnumOrvGenericsTemporality stored = leaf.StoredDerived();
        return stored == TemporalityDefault ? CalculateLeaf(leaf) : stored;
    }
    /// Node::CalculateDerivedTemporality, which no leaf overrides, as part of a whole calculation.
    static EnumOrvGenericsTemporality CalculateLeaf(Node& leaf) noexcept {
        const EnumOrvGenericsTemporality derived = GetOwnOfLeaf(leaf);
        leaf.StoreDerived(derived);
        return derived;
    }
    /// The same for a leaf that stands in its tree, where `round` is the present one.
    static EnumOrvGenericsTemporality CalculateLeaf(Node& leaf, int round) noexcept {
        const EnumOrvGenericsTemporality derived = GetOwnOfLeaf(leaf);
        leaf.state_.derived = derived;
        leaf.state_.derivedAt = round;
        return derived;
    }
    static EnumOrvGenericsTemporality GetOwnOfLeaf(const Node& leaf) noexcept {
        const EnumOrvGenericsTemporality own = leaf.GetTemporality();
        return own == TemporalityDefault ? TemporalityPersistent : own;
    }
    static void SetDerived(Node& node, EnumOrvGenericsTemporality t) noexcept {
        node.Guard().NoteOwnDerived();
        StoreDerived(node, t);
    }
    static void Restamp(Node& node) noexcept {
        node.state_.derivedAt = (node.state_.derivedAt & Node::kEmptyBit) | node.Guard().GetRound();
    }
    /// SetDerived as part of a whole calculation.
    static void StoreDerived(Node& node, EnumOrvGenericsTemporality t) noexcept { node.StoreDerived(t); }

    /// The iteration flags that make a node of this temporality visible; none outside 0 to 4.
    // kept-on-purpose: temporality-out-of-range
    static std::uint32_t GetSeeBits(EnumOrvGenericsTemporality t) noexcept {
        const auto row = static_cast<std::uint32_t>(t);
        return row <= TemporalityTemporary ? Node::gcSeeTemporalityBits[row] : 0;
    }
    /// The temporalities that these flags make visible, as bits by their numbers: the upper four flags by own temporality, the
    /// three below them up to one.
    static std::uint32_t GetSeenTemporalities(int flags) noexcept {
        const std::uint32_t own = static_cast<std::uint32_t>(flags) >> 28;
        const std::uint32_t upTo = static_cast<std::uint32_t>(flags) >> 24 & 7U;
        return (own | (upTo & 1U) | upTo << 1) << 1;
    }
    /// True for the temporalities that some flags make visible: TemporalityDefault to TemporalityTemporary.
    static bool IsOnScale(EnumOrvGenericsTemporality t) noexcept {
        return TemporalityDefault <= t && t <= TemporalityTemporary;
    }
    static bool Sees(int flags, EnumOrvGenericsTemporality t) noexcept {
        return (GetSeeBits(t) & static_cast<std::uint32_t>(flags)) != 0;
    }

    static std::vector<Node*, KivBase::Allocator<Node*>>& GetChildren(Vector& vector) noexcept {
        return vector.children_;
    }
    static Node** GetSlots(Map& map) noexcept { return const_cast<Node**>(map.GetSlots()); }
    static int GetSlotCount(const Map& map) noexcept { return map.slotCount_; }
    using MapOverflow = Map::Overflow;
    static bool IsIndex(int index) noexcept { return Map::IsIndex(index); }
    static bool HasRoom(const Map& map, int index) noexcept { return map.HasRoom(index); }
    static Node* NewInRoom(Map& map, int index, NodeType type, SemanticTag tag) {
        return map.NewInRoom(index, type, tag);
    }
    static Map* NewMapInRoom(Map& map, int index, SemanticTag tag) { return map.NewMapInRoom(index, tag); }

    static VisitCode IterateInner(Node& node, Visitor* visitor, SemanticTag tag, int flags) {
        return node.IterateInner(visitor, tag, flags);
    }
    template <int N>
    static int CheckMap(const Map& map);
    /// Copies into `target` what a walk over `hidden` with these flags shows; false when there was no node to be had.
    static bool CopyHidden(Composite& target, Composite& hidden, int flags);
    static bool MergeWithChecks(Node& node, Node* other, bool flag) { return node.MergeWithChecks(other, flag); }
};

}  // namespace KivGenerics
