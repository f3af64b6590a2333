#pragma once

#include <cstdint>

#include <KivGenerics/Export.h>
#include <KivGenerics/NodeOwner.h>
#include <KivGenerics/NodeState.h>
#include <KivGenerics/NodeType.h>

namespace KivGenerics {

/// The modification guard of a tree: what every change asks first, inline, whichever node it goes through. It also knows how
/// far the nodes' derived temporalities are up to date.
class ChangeGuard : public NodeOwner {
public:
    ChangeGuard(const ChangeGuard&) = delete;
    ChangeGuard& operator=(const ChangeGuard&) = delete;

    /// Throws ReadOnlyException on a read-only tree, else counts the change.
    void CheckReadOnly() {
        TestWritable();
        ++changes_;
    }

    /// The first half of the guard: nothing is counted.
    void TestWritable() const {
        if (readOnly_) {
            RefuseChange();
        }
    }

    /// Counts `more` changes of a tree that is not read-only.
    void CountMore(std::uint64_t more) noexcept { moreChanges_ += more; }

    /// A derived temporality was set by itself: it need not be what an update of the whole tree made it.
    void NoteOwnDerived() noexcept { temporalityUpdated_ = false; }

    /// The round that derived temporalities are stored in, 1 to kLastRound: one that was stored in an earlier round has become
    /// TemporalityPersistent. So an update of a tree where all nodes are persistent begins a new round and touches no node.
    std::uint8_t GetRound() const noexcept { return static_cast<std::uint8_t>(int{newStates_[0].derivedAt}); }
    /// Of a node of this kind, 1 to 12, that is made now. A composite is empty, and to be counted so.
    NodeState GetNewState(NodeType type) const noexcept { return newStates_[type]; }
    /// From now on a node of the tree may have an own temporality other than TemporalityDefault and TemporalityPersistent.
    void NoteVaried() noexcept { isVaried_ = true; }
    /// From now on there may be nodes that name this tree and do not stand in it: an update must not touch them, so no new
    /// round begins any more.
    void NoteStray() noexcept { hasStrays_ = true; }
    /// One more, or one less, composite that is without children and would be temporary for that; too many do no harm.
    void CountEmpty() noexcept { ++emptyComposites_; }
    void UncountEmpty() noexcept { emptyComposites_ -= emptyComposites_ > 0 ? 1 : 0; }

    static constexpr std::uint8_t kLastRound = 127;

protected:
    ChangeGuard() noexcept : NodeOwner(this) { SetRound(1); }
    ~ChangeGuard() = default;

    void SetRound(std::uint8_t round) noexcept {
        for (int type = 0; type <= NodeTypeInteger64; ++type) {
            newStates_[type].type = type;
            newStates_[type].derivedAt =
                IsCompositeType(static_cast<NodeType>(type)) ? round | NodeState::kEmptyBit : round;
        }
    }

    /// The changes since the tree was made, and one more.
    std::uint64_t CountChanges() const noexcept { return changes_ + moreChanges_; }
    /// True when something has changed since an update.
    bool IsTemporalityStale() const noexcept { return CountChanges() != updatedAt_; }

    // Two counters: a node that is made and set at once counts in both, and the second does not wait for the first.
    std::uint64_t changes_ = 1;  // by CheckReadOnly
    std::uint64_t moreChanges_ = 0;  // by CountMore
    std::uint64_t countedFrom_ = 1;  // of the changes the host is told the later ones
    std::uint64_t updatedAt_ = 0;  // how many there were when the derived temporalities were brought up to date
    bool readOnly_ = false;
    bool temporalityUpdated_ = false;  // every derived temporality is what an update made it, unless stale
    bool isAllPersistent_ = false;  // what the update made it is TemporalityPersistent throughout
    bool isAllOnScale_ = false;  // own and derived temporalities were all TemporalityDefault to TemporalityTemporary
    bool isVaried_ = false;
    bool hasStrays_ = false;
    NodeState newStates_[NodeTypeInteger64 + 1];  // by kind
    std::uint32_t emptyComposites_ = 0;  // at least

private:
    [[noreturn]] KIV_GENERICS_EXPORT static void RefuseChange();
};

inline bool NodeOwner::IsTree() const noexcept {
    return this == guard_;
}

}  // namespace KivGenerics
