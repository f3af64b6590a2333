#pragma once

#include <cstddef>
#include <type_traits>

#include "core/Likeness.h"
#include "core/Prefetch.h"
#include "traversal/FoundComposite.h"
#include "traversal/ShowLeaf.h"
#include "traversal/WalkTask.h"

namespace KivGenerics {

/// Few enough leaves that what has been looked at once is still in the processor's cache when the visitor looks at it.
constexpr std::ptrdiff_t kMostInRow = 64;

/// The end of the children from `place` on, one of which there is, that are like it; at most kMostInRow, and none is null.
inline Node* const* FindEndOfRow(Node* const* place, Node* const* end) noexcept {
    const std::uint32_t likeness = GetLikeness(**place);
    Node* const* const limit = end - place > kMostInRow ? place + kMostInRow : end;
    // By twos, as many as lie in a line of memory.
    for (; limit - place > 2; place += 2) {
        PrefetchBehind(**place);
        if (GetLikeness(*place[1]) != likeness) {
            return place + 1;
        }
        if (GetLikeness(*place[2]) != likeness) {
            return place + 2;
        }
    }
    do {
        ++place;
    } while (place != limit && GetLikeness(**place) == likeness);
    return place;
}

/// Shows the leaves of one composite, which stand at `Places`, in rows of those that are treated alike.
template <class Shown, class Places>
class LeafRows {
public:
    LeafRows(Shown& visitor, const WalkLevel& level, Places& places) noexcept
        : visitor_(visitor), level_(level), places_(places) {}

    /// Walks over leaves from `child`, which is one, on: up to a composite or to the end.
    [[gnu::always_inline]] FoundComposite WalkToComposite(Node* child) {
        Likeness likeness = GetLikenessOf(*child);
        for (;;) {
            const RowEnd end = !IsShown(likeness)                           ? PassRow(child, likeness)
                               : TakesRows(visitor_, GetLikeType(likeness)) ? ShowWhole(child, likeness)
                                                                            : WalkRow(child, likeness);
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

    /// Shows `leaf` and those like it that come next at once, as many as stand side by side; `leaf` is the child behind them then.
    RowEnd ShowWhole(Node*& leaf, Likeness& likeness) {
        if constexpr (std::is_same_v<Shown, RowVisitor>) {
            Node* const* last = nullptr;
            Node* const* const first = places_.GetRun(last);
            Node* const* const end = FindEndOfRow(first, last);
            const std::ptrdiff_t more = end - first - 1;
            const int lastIndex = end[-1]->GetIndex();
            const VisitCode answer = ShowRow(visitor_, GetLikeType(likeness), first, end);
            if (answer == VisitStop) {
                return RowEnd::Stop;
            }
            if (answer == VisitRemove) {
                RemoveRow(leaf, more);
            } else {
                places_.Skip(more, lastIndex);
            }
            if (!places_.Next(leaf)) {
                return RowEnd::Nothing;
            }
            likeness = GetLikenessOf(*leaf);
        }
        return RowEnd::Child;
    }
    /// Removes `leaf` and so many behind it, as they would be one by one.
    void RemoveRow(Node*& leaf, std::ptrdiff_t more) {
        places_.Remove(*leaf);
        for (; more > 0 && places_.Next(leaf); --more) {
            places_.Remove(*leaf);
        }
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

    Shown& visitor_;
    const WalkLevel& level_;
    Places& places_;
};

}  // namespace KivGenerics
