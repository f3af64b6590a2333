#pragma once

#include <cstdint>

#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/SemanticTag.h>
#include <KivGenerics/Visitor.h>

#include "core/NodeAccess.h"
#include "traversal/WalkFlags.h"

namespace KivGenerics {

/// The own temporalities of the nodes that a walk shows.
class SeenTemporalities {
public:
    explicit SeenTemporalities(int flags) noexcept : bits_(NodeAccess::GetSeenTemporalities(flags)) {}
    static SeenTemporalities None() noexcept { return SeenTemporalities(0); }
    /// With those outside the scale.
    static SeenTemporalities All() noexcept {
        SeenTemporalities all = None();
        all.bits_ = ~0U;
        return all;
    }

    /// For those that flags make visible it is never true outside the scale.
    // kept-on-purpose: temporality-out-of-range
    bool Has(EnumOrvGenericsTemporality t) const noexcept {
        const auto bit = static_cast<std::uint32_t>(t);
        return bit <= TemporalityTemporary ? (bits_ >> bit & 1U) != 0 : bits_ >> kOutside != 0;
    }
    bool IsNone() const noexcept { return bits_ == 0; }

private:
    static constexpr std::uint32_t kOutside = 31;

    std::uint32_t bits_;  // by their numbers; one for all that are outside the scale
};

/// What a walk is to do, on all its levels.
struct WalkTask {
    WalkTask(SemanticTag wanted, int flags) noexcept
        : tag(wanted), seen(flags), asksDerived((flags & kUpToBits) != 0) {}

    /// False when the walk is restricted to temporalities that a composite's derived one does not reach: it is skipped whole.
    bool MayEnter(const Composite& composite) const noexcept {
        return !asksDerived || seen.Has(NodeAccess::GetStoredDerived(composite));
    }
    bool IsTagMeant(const Vector&) const noexcept { return true; }
    bool IsTagMeant(const Map& map) const noexcept { return tag == SemanticTagNone || tag == map.GetSemanticTagNV(); }

    /// True when composites are shown before their children at most, whatever their tags, and none is skipped.
    bool IsPlain(int flags) const noexcept {
        return (flags & IteratePostOrder) == 0 && tag == SemanticTagNone && !asksDerived;
    }

    SemanticTag tag;
    SeenTemporalities seen;
    bool asksDerived;  // what may be entered goes by derived temporalities
};

/// What a walk does on one level.
class WalkLevel {
public:
    WalkLevel(const WalkTask& task, int flags, const WalkLevel& next) noexcept
        : below_((flags & (IterateChildren | IterateDeeper)) != 0 ? &next : nullptr), leafTemporalities_(task.seen) {
        const int kinds = (flags & IterateSelf) != 0 ? flags & IterateTypeBits : 0;
        const int before = (flags & IteratePreOrder) != 0 ? kinds : 0;
        const int after = (flags & IteratePostOrder) != 0 ? kinds : 0;
        leaves_ = static_cast<std::uint32_t>(kinds & ~(kVectorBit | kMapBit)) << 1;
        const SeenTemporalities none = SeenTemporalities::None();
        // Where a walk goes by derived temporalities, a map's own one is not asked, unlike a vector's.
        // kept-on-purpose: map-visibility
        const SeenTemporalities maps = task.asksDerived ? SeenTemporalities::All() : task.seen;
        vectorsBefore_ = (before & kVectorBit) != 0 ? task.seen : none;
        vectorsAfter_ = (after & kVectorBit) != 0 ? task.seen : none;
        mapsBefore_ = (before & kMapBit) != 0 ? maps : none;
        mapsAfter_ = (after & kMapBit) != 0 ? maps : none;
    }

    /// The next level; null where the walk does not go down.
    const WalkLevel* GetBelow() const noexcept { return below_; }
    /// Whether leaves of a kind are shown; false for composites.
    bool ShowsLeaves(NodeType type) const noexcept { return (leaves_ >> type & 1U) != 0; }
    /// Whether leaves of an own temporality are shown, of the kinds that are.
    bool ShowsLeaves(EnumOrvGenericsTemporality t) const noexcept { return leafTemporalities_.Has(t); }
    /// The own temporalities of the composites that are shown before their children.
    SeenTemporalities GetBefore(const Vector&) const noexcept { return vectorsBefore_; }
    SeenTemporalities GetBefore(const Map&) const noexcept { return mapsBefore_; }
    /// Of those that are shown after them.
    SeenTemporalities GetAfter(const Vector&) const noexcept { return vectorsAfter_; }
    SeenTemporalities GetAfter(const Map&) const noexcept { return mapsAfter_; }

private:
    static constexpr int kVectorBit = 1 << (NodeTypeVector - 1);
    static constexpr int kMapBit = 1 << (NodeTypeMap - 1);

    const WalkLevel* below_;
    std::uint32_t leaves_;  // kinds, as bits by their numbers
    SeenTemporalities leafTemporalities_;
    SeenTemporalities vectorsBefore_ = SeenTemporalities::None();
    SeenTemporalities vectorsAfter_ = SeenTemporalities::None();
    SeenTemporalities mapsBefore_ = SeenTemporalities::None();
    SeenTemporalities mapsAfter_ = SeenTemporalities::None();
};

/// The levels of a walk: that of its start, that of the start's children, and that of everything deeper.
class WalkLevels {
public:
    WalkLevels(const WalkTask& task, int flags) noexcept
        : start_(task, flags, children_),
          children_(task, GetChildFlags(flags), deeper_),
          deeper_(task, GetChildFlags(GetChildFlags(flags)), deeper_) {}
    WalkLevels(const WalkLevels&) = delete;
    WalkLevels& operator=(const WalkLevels&) = delete;

    const WalkLevel& GetStart() const noexcept { return start_; }

private:
    WalkLevel start_;
    WalkLevel children_;
    WalkLevel deeper_;
};

}  // namespace KivGenerics
