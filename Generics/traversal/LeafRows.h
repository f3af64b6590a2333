#pragma once

#include <KivGenerics/Prefetch.h>

#include "core/Likeness.h"
#include "traversal/FoundComposite.h"
#include "traversal/ShowLeaf.h"
#include "traversal/WalkTask.h"

namespace KivGenerics {

/// Shows the leaves of one composite, which stand at `Places`, in rows of those that are treated alike.
template <class Places>
class LeafRows {
public:
    LeafRows(Visitor& visitor, const WalkLevel& level, Places& places) noexcept
        : visitor_(visitor), level_(level), places_(places) {}

    /// Walks over leaves from `child`, which is one, on: up to a composite or to the end.
    [[gnu::always_inline]] FoundComposite WalkToComposite(Node* child) {
        Likeness likeness = GetLikenessOf(*child);
        for (;;) {
            const RowEnd end = IsShown(likeness) ? WalkRow(child, likeness) : PassRow(child, likeness);
            if (end != RowEnd::Child) {
                return {nullptr, end == RowEnd::Stop ? FoundComposite::kStopped : 0};
            }
            if (IsCompositeType(GetLikeType(likeness))) {
                return {static_cast<Composite*>(child), places_.GetNumber()};
            }
        }
    }

private:
    // As wide as it is in a node: so it need not be kept twice, in the width of a register, too.
    using Likeness = std::uint16_t;
    static Likeness GetLikenessOf(const Node& leaf) noexcept { return static_cast<Likeness>(GetLikeness(leaf)); }

    bool IsShown(Likeness likeness) const noexcept {
        return level_.ShowsLeaves(GetLikeType(likeness)) && level_.ShowsLeaves(GetLikeTemporality(likeness));
    }

    /// What is behind a row.
    enum class RowEnd { Child, Nothing, Stop };

    [[gnu::always_inline]] RowEnd WalkRow(Node*& leaf, Likeness& likeness) {
        switch (GetLikeType(likeness)) {
            case NodeTypeInteger: return WalkRowOf<Integer>(leaf, likeness);
            case NodeTypeGlobalID: return WalkRowOf<GlobalID>(leaf, likeness);
            case NodeTypeString: return WalkRowOf<String>(leaf, likeness);
            case NodeTypeDouble: return WalkRowOf<Double>(leaf, likeness);
            case NodeTypeBoolean: return WalkRowOf<Boolean>(leaf, likeness);
            case NodeTypeIntegerSet: return WalkRowOf<IntegerSet>(leaf, likeness);
            case NodeTypeIdSet: return WalkRowOf<IdSet>(leaf, likeness);
            case NodeTypeStringSet: return WalkRowOf<StringSet>(leaf, likeness);
            case NodeTypeDoubleSet: return WalkRowOf<DoubleSet>(leaf, likeness);
            case NodeTypeInteger64: return WalkRowOf<Integer64>(leaf, likeness);
            case NodeTypeVector:
            case NodeTypeMap: break;
        }
        return RowEnd::Child;
    }

    /// Passes by `leaf` and those like it that come next; `leaf` is the child behind them then.
    RowEnd PassRow(Node*& leaf, Likeness& likeness) {
        const Likeness row = likeness;
        while (places_.Next(leaf)) {
            likeness = GetLikenessOf(*leaf);
            if (likeness != row) {
                return RowEnd::Child;
            }
        }
        return RowEnd::Nothing;
    }

    /// Shows `leaf`, of the kind T, and those like it that come next; `leaf` is the child behind them then.
    template <class T>
    [[gnu::always_inline]] RowEnd WalkRowOf(Node*& leaf, Likeness& likeness) {
        const Likeness row = likeness;
        for (;;) {
            PrefetchBehind(leaf);
            const VisitCode answer = ShowLeaf(visitor_, static_cast<T&>(*leaf));
            if (answer != VisitContinue) {
                if (answer == VisitStop) {
                    return RowEnd::Stop;
                }
                if (answer == VisitRemove) {
                    places_.Remove(*leaf);
                }
            }
            if (!places_.Next(leaf)) {
                return RowEnd::Nothing;
            }
            const Likeness next = GetLikenessOf(*leaf);
            if (next != row) {
                likeness = next;
                return RowEnd::Child;
            }
        }
    }

    Visitor& visitor_;
    const WalkLevel& level_;
    Places& places_;
};

}  // namespace KivGenerics
