#pragma once

#include <cstdint>

#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/SemanticTag.h>
#include <KivGenerics/Visitor.h>

#include "core/NodeAccess.h"
#include "traversal/WalkFlags.h"

namespace KivGenerics {

/// What a walk is to do, on all its levels.
struct WalkTask {
    WalkTask(Visitor& shownTo, SemanticTag wanted, int flags) noexcept
        : visitor(shownTo),
          tag(wanted),
          seen(NodeAccess::GetSeenTemporalities(flags)),
          asksDerived((flags & kUpToBits) != 0) {}

    /// False when the walk is restricted to temporalities that a composite's derived one does not reach: it is skipped whole.
    bool MayEnter(const Composite& composite) const noexcept {
        return !asksDerived || Sees(NodeAccess::GetStoredDerived(composite));
    }
    /// True for the temporalities that the flags make visible; never for those outside the scale.
    // kept-on-purpose: temporality-out-of-range
    bool Sees(EnumOrvGenericsTemporality t) const noexcept {
        const auto bit = static_cast<std::uint32_t>(t);
        return bit <= TemporalityTemporary && (seen >> bit & 1U) != 0;
    }

    Visitor& visitor;
    SemanticTag tag;
    std::uint32_t seen;  // temporalities, as bits by their numbers
    bool asksDerived;  // what may be entered goes by derived temporalities
};

/// What the flags of a walk come to on one level. The kinds are those that are shown, as in the flags.
class WalkLevel {
public:
    WalkLevel(int flags, const WalkLevel& next) noexcept
        : below_((flags & (IterateChildren | IterateDeeper)) != 0 ? &next : nullptr) {
        const int kinds = (flags & IterateSelf) != 0 ? flags & IterateTypeBits : 0;
        leaves_ = kinds & ~kComposites;
        before_ = (flags & IteratePreOrder) != 0 ? kinds & kComposites : 0;
        after_ = (flags & IteratePostOrder) != 0 ? kinds & kComposites : 0;
    }

    /// The next level; null where the walk does not go down.
    const WalkLevel* GetBelow() const noexcept { return below_; }
    /// False for composites.
    bool ShowsLeaves(NodeType type) const noexcept { return (leaves_ & 1 << (type - 1)) != 0; }
    bool ShowsBefore(NodeType type) const noexcept { return (before_ & 1 << (type - 1)) != 0; }
    bool ShowsAfter(NodeType type) const noexcept { return (after_ & 1 << (type - 1)) != 0; }

private:
    static constexpr int kComposites = 1 << (NodeTypeVector - 1) | 1 << (NodeTypeMap - 1);

    const WalkLevel* below_;
    int leaves_;
    int before_;  // composites before their children
    int after_;
};

/// The levels of a walk: that of its start, that of the start's children, and that of everything deeper.
class WalkLevels {
public:
    explicit WalkLevels(int flags) noexcept
        : start_(flags, children_),
          children_(GetChildFlags(flags), deeper_),
          deeper_(GetChildFlags(GetChildFlags(flags)), deeper_) {}
    WalkLevels(const WalkLevels&) = delete;
    WalkLevels& operator=(const WalkLevels&) = delete;

    const WalkLevel& GetStart() const noexcept { return start_; }

private:
    WalkLevel start_;
    WalkLevel children_;
    WalkLevel deeper_;
};

}  // namespace KivGenerics
