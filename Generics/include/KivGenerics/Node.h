#pragma once

#include <cstdint>
#include <vector>

#include <KivBase/ReturnPtr.h>
#include <KivBase/ReturnPtrI.h>
#include <KivBase/WString.h>
#include <KivGenerics/ChangeGuard.h>
#include <KivGenerics/Export.h>
#include <KivGenerics/Forward.h>
#include <KivGenerics/NodeSource.h>
#include <KivGenerics/NodeState.h>
#include <KivGenerics/NodeType.h>
#include <KivGenerics/SemanticTag.h>
#include <KivGenerics/Temporality.h>
#include <KivGenerics/VisitCode.h>

namespace KivGenerics {

/// An element of a tree: the base of every kind.
///
/// Lives in:   the forest of its tree; made by the tree or by a composite, never by `new`.
/// Dies with:  the forest. A node that is removed is reset and may be handed out again.
/// Threads:    one thread at a time for all trees of a forest.
/// On failure: misuse throws Exception before anything is changed; a change of a read-only tree throws
///             ReadOnlyException. Only the tree's change count has moved when a later check of the operation fails.
class KIV_GENERICS_EXPORT Node {
public:
    // kept-on-purpose: copies-name-the-source
    // A copy is a free-standing duplicate: it names the source's tree, parent and index, but no parent knows it.
    Node(const Node& other) noexcept : state_(other.state_), index_(other.index_), owner_(other.owner_) {
        Guard().NoteStray();
    }
    Node& operator=(const Node& other) noexcept {
        if (this != &other) {
            for (ChangeGuard* const guard : {&Guard(), &other.Guard()}) {
                guard->NoteOwnDerived();
                guard->NoteStray();
            }
            state_ = other.state_;
            index_ = other.index_;
            owner_ = other.owner_;
        }
        return *this;
    }
    Node& operator=(Node&& other) noexcept { return *this = static_cast<const Node&>(other); }

    // The order of the virtual operations is part of the interface.

    /// Fills `key` with the node's index path, root first, each index followed by ':'; empty for a root.
    /// Tree::FindNodeByKey walks it back.
    virtual void GetKey(KivBase::WString& key) const;
    /// The same with the semantic tags of the path, in hexadecimal.
    virtual void GetSemanticTagKey(KivBase::WString& key) const;
    /// The same with the texts that the host's resource bundle has for these tags in `language` (its low 16 bits). What
    /// stands in `key` when the bundle throws is the path up to there.
    virtual void GetHumanReadableKey(int language, KivBase::WString& key) const;
    /// Null for a root and for a node that was taken out.
    virtual Composite* GetParent() const;
    /// True when the node has no parent.
    virtual bool IsRoot() const;
    /// A counted handle to the owning tree.
    virtual KivBase::ReturnPtrI<Tree> GetTree() const;
    /// A map's tag; SemanticTagDefault for every other kind.
    virtual SemanticTag GetSemanticTag() const;
    /// The effective temporality: the greatest of the node's own derived value and those of its ancestors.
    /// Calculated on demand; O(depth).
    virtual EnumOrvGenericsTemporality GetDerivedTemporality();
    /// Orders this node against `other`: negative, 0 or positive. A node more transient than `t` equals anything; then
    /// semantic tags decide, then kinds, then content. `recalc` first brings the temporalities of both trees up to date.
    /// Throws Exception for null.
    virtual int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc);
    /// Brings the content back to that of a new node; children are removed. Temporality stays.
    virtual void Clear() = 0;
    /// Removes the node from its parent, with everything below it; a root empties its tree. The node is reset and may be
    /// handed out again: the caller must not use it afterwards.
    virtual void Remove();
    /// Takes the node out of its parent and returns it, content and all; a node without parent is returned as it is. It can be
    /// placed again with Composite::Move or Tree::SetRoot.
    virtual Node* Detach();
    /// Copies content and own temporality from a node of the same kind, which may belong to another tree; children are
    /// copied deeply. Throws Exception for null or another kind. A failure below leaves the children copied so far.
    virtual void Populate(Node* source);
    /// Merges a node of the same kind into this one: leaves keep their value, missing children are copied in. False when
    /// values, tags or temporalities conflict. `flag` is passed on and consulted by no kind. Throws Exception for null or
    /// another kind.
    virtual bool MergeWith(Node* other, bool flag) = 0;
    /// Writes a tree's root; only maps can, every other kind answers ResultNotImplemented.
    virtual std::int32_t WriteToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient, int slotFlags);
    /// Writes the node and everything below it that is persistent, or also what is transient. Returns 0 or the archive's
    /// first failure.
    virtual std::int32_t WriteToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient) = 0;
    /// Reads into this new node what WriteToArchive wrote. Returns 0 or the archive's first failure.
    virtual std::int32_t ReadFromArchive(ArchiveDecoder& decoder, bool longCount) = 0;
    /// Adds what WriteToArchive would write to the sizer's totals. Returns 0.
    virtual std::int32_t SizeDefnArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) = 0;
    /// Shows just this node to the visitor and returns its answer; a leaf's second visit is VisitContinue at once.
    virtual VisitCode Visit(Visitor* visitor, bool postOrder) = 0;
    /// A breadth-first walk over this node and everything below it; empty when there is no memory for it.
    virtual KivBase::ReturnPtr<Iterator, KivBase::DeleteC<Iterator>> GetIterator();

protected:
    /// One step of Iterate: `flags` are complete.
    virtual VisitCode IterateInner(Visitor* visitor, SemanticTag tag, int flags) = 0;

public:
    /// Calculates, stores and returns the derived temporality of this node and everything below it.
    virtual EnumOrvGenericsTemporality CalculateDerivedTemporality();

protected:
    /// Brings the node back to the state of a new one without parent, for reuse.
    virtual void Reset();

private:
    virtual void SetDerivedTemporality(EnumOrvGenericsTemporality t);

public:
    NodeType GetType() const noexcept { return static_cast<NodeType>(int{state_.type}); }
    /// The position in the parent; -1 for a node without one.
    int GetIndex() const noexcept { return index_; }
    /// The node's own setting.
    EnumOrvGenericsTemporality GetTemporality() const noexcept {
        return static_cast<EnumOrvGenericsTemporality>(int{state_.temporality});
    }
    /// Stores what it is given; a value outside 0..4 hides the node from every walk.
    void SetTemporality(EnumOrvGenericsTemporality t) {
        CheckReadOnly();
        state_.temporality = t;
        StoreDerived(TemporalityDefault);
        if (t != TemporalityPersistent) {
            Guard().NoteVaried();
        }
    }
    /// True when the derived temporality, as stored, is not above `t`; for visitors.
    bool ShouldVisit(EnumOrvGenericsTemporality t) const noexcept { return StoredDerived() <= t; }
    /// Walks this node and what is below it depth first and shows to the visitor what `flags` (IterateFlags.h) admit;
    /// with a tag other than 0 and 1 only maps of that tag. Does nothing without a visitor.
    void Iterate(Visitor* visitor, SemanticTag tag, int flags);

protected:
    Node(ChangeGuard* tree, NodeType type) noexcept : Node(tree, *tree, -1, type) {}
    Node(ChangeGuard* tree, NodeOwner& owner, int index, NodeType type) noexcept
        : state_(tree->GetNewState(type)), index_(index), owner_(&owner) {}
    /// A leaf of the kind, the temporality and the tree of `like`, for another place.
    Node(const Node& like, NodeOwner& owner, int index) noexcept : state_(like.state_), index_(index), owner_(&owner) {}
    // Nodes are never destroyed through a base: their memory goes with the forest.
    ~Node() = default;

    /// The modification guard: throws ReadOnlyException on a read-only tree, else counts the change.
    void CheckReadOnly() const { Guard().CheckReadOnly(); }
    /// The shared first steps of every MergeWith: guard, argument checks and the reconciliation of the own temporalities.
    /// False when two set temporalities conflict; the other's wins. The flag is not read.
    bool MergeWithChecks(Node* other, bool flag);
    /// The derived temporality, calculated first when it has not been; ancestors are not asked.
    EnumOrvGenericsTemporality DerivedValue() {
        const EnumOrvGenericsTemporality stored = StoredDerived();
        return stored == TemporalityDefault ? CalculateDerivedTemporality() : stored;
    }
    /// A child is about to be placed in this composite.
    void NoteChild() noexcept {
        if ((state_.derivedAt & kEmptyBit) != 0) {
            NoteFirstChild();
        }
    }

    /// By temporality: the iteration flags that make a node of that temporality visible.
    static constexpr std::uint32_t gcSeeTemporalityBits[5] = {
        0x00000000,  // reserved: never visible
        0x11000000,  // default: IterateSeeDefault, IterateUpToPersistent
        0x21000000,  // persistent: IterateSeePersistent, IterateUpToPersistent
        0x42000000,  // transient: IterateSeeTransient, IterateUpToTransient
        0x84000000,  // temporary: IterateSeeTemporary, IterateUpToTemporary
    };

private:
    friend class Composite;
    friend class ForestImpl;
    friend class Map;
    friend class TreeImpl;
    friend class Vector;
    friend struct NodeAccess;
    template <int N>
    friend class MapImpl;

    // state_.derivedAt is the round that state_.derived was stored in, or kFrozen: then it stays whatever the round. With
    // kEmptyBit the node is a composite that the tree counts as empty.
    static constexpr int kEmptyBit = NodeState::kEmptyBit;
    static constexpr int kFrozen = 0;

    int GetDerivedRound() const noexcept { return state_.derivedAt & ~kEmptyBit & 0xFF; }
    bool IsDerivedAsStored() const noexcept {
        const int round = GetDerivedRound();
        return round == kFrozen || round == Guard().GetRound();
    }
    EnumOrvGenericsTemporality StoredDerived() const noexcept {
        return IsDerivedAsStored() ? static_cast<EnumOrvGenericsTemporality>(int{state_.derived})
                                   : TemporalityPersistent;
    }
    void StoreDerived(EnumOrvGenericsTemporality t) noexcept {
        state_.derived = t;
        if (GetDerivedRound() != kFrozen) {
            state_.derivedAt = (state_.derivedAt & kEmptyBit) | Guard().GetRound();
        }
    }
    // Whoever keeps a root that its tree has dropped may fill it again: what comes below it must not take part in the rounds.
    void NoteFirstChild() noexcept {
        if (GetDerivedRound() == kFrozen) {
            Guard().NoteStray();
        } else {
            state_.derivedAt = state_.derivedAt & ~kEmptyBit;
            Guard().UncountEmpty();
        }
    }
    int GetDefaultIterateFlags(int flags, SemanticTag tag) const noexcept;
    void GenerateKey(std::vector<int>& path) const;
    void GenerateSemanticTagKey(std::vector<int>& path) const;
    void CheckPopulate(const Node* source) const;
    void TakeTemporality(const Node& source) noexcept { TakeTemporality(source.state_.temporality); }
    void TakeTemporality(int t) noexcept {
        StoreDerived(TemporalityDefault);
        TakeWhenNew(t);
    }
    /// The same for a node whose derived temporality has not been calculated.
    void TakeWhenNew(int t) noexcept {
        state_.temporality = t;
        if (t != TemporalityPersistent) {
            NoteTaken(t);
        }
    }
    /// What the tree must know of an own temporality other than TemporalityPersistent.
    void NoteTaken(int t) noexcept {
        if (t != TemporalityDefault) {
            Guard().NoteVaried();
        } else if (IsCompositeType(GetType())) {
            NoteEmpty();
        }
    }
    /// This composite, of TemporalityDefault, may be without children.
    void NoteEmpty() noexcept {
        if ((state_.derivedAt & kEmptyBit) == 0) {
            state_.derivedAt = state_.derivedAt | kEmptyBit;
            Guard().CountEmpty();
        }
    }
    /// This composite, of which nothing is known but that it has just been made, need not be counted as empty.
    void ForgetEmptyOfNew() noexcept {
        state_.derivedAt = state_.derivedAt & ~kEmptyBit;
        Guard().UncountEmpty();
    }
    ChangeGuard& Guard() const noexcept { return *owner_->GetGuard(); }
    Composite* Parent() const noexcept;

    NodeState state_;
    std::int32_t index_ = -1;
    NodeOwner* owner_;  // the parent, or the tree where there is none
};

}  // namespace KivGenerics
