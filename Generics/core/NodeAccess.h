#pragma once

#include <cstdint>

#include <KivGenerics/Map.h>
#include <KivGenerics/Node.h>
#include <KivGenerics/Vector.h>

#include "core/TreeImpl.h"

namespace KivGenerics {

/// The library's own door to what a node keeps private, for the operations that are not members of one class.
struct NodeAccess {
    static TreeImpl* GetTree(const Node& node) noexcept { return static_cast<TreeImpl*>(node.tree_); }
    static Composite* GetParent(const Node& node) noexcept { return node.parent_; }

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

    /// A new child of a kind known when compiling, behind the others of a vector: of their kind, or they are none. Null where
    /// a host's buffer answers null.
    template <class T, class List>
    static T* Append(List& vector) {
        if (vector.children_.size() == vector.children_.capacity()) {
            vector.MakeRoom();
        }
        T* const node = GetTree(vector)->template Create<T>(&vector, static_cast<int>(vector.children_.size()));
        if (node != nullptr) {
            vector.children_.push_back(node);
        }
        return node;
    }

    /// While a released node waits in its forest, its parent field links it to the next one.
    static Node* GetLink(const Node& node) noexcept { return reinterpret_cast<Node*>(node.parent_); }
    static void SetLink(Node& node, Node* next) noexcept { node.parent_ = reinterpret_cast<Composite*>(next); }

    static std::int32_t& GetIndex(Node& node) noexcept { return node.index_; }
    static void Place(Node& node, Composite* parent, int index) noexcept {
        node.parent_ = parent;
        node.index_ = index;
    }

    /// Sets the own temporality without the guard; the derived one is to be calculated.
    static void SetTemporality(Node& node, EnumOrvGenericsTemporality t) noexcept {
        node.temporality_ = static_cast<std::int8_t>(t);
        node.derivedTemporality_ = TemporalityDefault;
    }
    /// The derived temporality as it is stored.
    static EnumOrvGenericsTemporality GetStoredDerived(const Node& node) noexcept { return node.StoredDerived(); }
    /// The derived temporality, calculated first when it has not been; ancestors are not asked.
    static EnumOrvGenericsTemporality GetDerived(Node& node) { return node.DerivedValue(); }
    /// The same for a leaf.
    static EnumOrvGenericsTemporality GetDerivedOfLeaf(Node& leaf) noexcept {
        return leaf.derivedTemporality_ == TemporalityDefault ? CalculateLeaf(leaf) : leaf.StoredDerived();
    }
    /// Node::CalculateDerivedTemporality, which no leaf overrides.
    static EnumOrvGenericsTemporality CalculateLeaf(Node& leaf) noexcept {
        leaf.derivedTemporality_ =
            leaf.temporality_ == TemporalityDefault ? std::int8_t{TemporalityPersistent} : leaf.temporality_;
        return leaf.StoredDerived();
    }
    static void SetDerived(Node& node, EnumOrvGenericsTemporality t) noexcept {
        node.derivedTemporality_ = static_cast<std::int8_t>(t);
    }

    /// The iteration flags that make a node of this temporality visible; none outside 0 to 4.
    // kept-on-purpose: temporality-out-of-range
    static std::uint32_t GetSeeBits(EnumOrvGenericsTemporality t) noexcept {
        const auto row = static_cast<std::uint32_t>(t);
        return row <= TemporalityTemporary ? Node::gcSeeTemporalityBits[row] : 0;
    }
    static bool Sees(int flags, EnumOrvGenericsTemporality t) noexcept {
        return (GetSeeBits(t) & static_cast<std::uint32_t>(flags)) != 0;
    }

    static std::vector<Node*, KivBase::Allocator<Node*>>& GetChildren(Vector& vector) noexcept {
        return vector.children_;
    }
    static Node** GetSlots(Map& map) noexcept { return const_cast<Node**>(map.GetSlots()); }
    static int GetSlotCount(const Map& map) noexcept { return map.slotCount_; }

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
