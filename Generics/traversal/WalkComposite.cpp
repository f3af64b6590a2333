// The depth-first walk over a composite and what is below it.
//
// The composites on the way down stand in a list, not on the machine's stack one call in the other: a processor foresees where a
// few calls return to, and no more. A list has room for so many levels; what is deeper is for a walker of its own, which is on
// the stack, too. So a walk needs no memory that could be refused.

#include "traversal/WalkComposite.h"

#include <new>

#include <KivGenerics/Map.h>

#include "core/Likeness.h"
#include "core/Prefetch.h"
#include "traversal/ChildPlaces.h"
#include "traversal/ShowLeaf.h"
#include "traversal/WalkTask.h"

namespace KivGenerics {
namespace {

enum class Stage : std::uint8_t { InVector, InSlots, BeyondSlots };

/// A composite whose children are walked over.
struct Frame {
    Frame(Composite& walkedOver, const WalkLevel& childLevel, Stage first, bool again) noexcept
        : composite(walkedOver), level(childLevel), stage(first), isShownAgain(again), at(-1) {}

    Composite& composite;
    const WalkLevel& level;  // of the children
    Stage stage;
    bool isShownAgain;  // after its children
    union {
        int at;  // in a vector or in the slots
        OverflowPlace beyond;  // beyond the slots
    };
};

class Walker {
public:
    explicit Walker(const WalkTask& task) noexcept : task_(task) {}

    VisitCode Run(Composite& top, const WalkLevel& level);

private:
    static constexpr int kFrames = 64;
    static constexpr int kAhead = 6;  // levels that the processor's memory is asked for in time
    static constexpr std::uint32_t kNoTemporality = 0x100;  // a node stores its own in 8 bits

    Frame* GetFirst() noexcept { return reinterpret_cast<Frame*>(frames_); }

    static Stage GetFirstStage(const Vector&) noexcept { return Stage::InVector; }
    static Stage GetFirstStage(const Map&) noexcept { return Stage::InSlots; }

    // Where a walk goes by derived temporalities, a map's own one is not asked, unlike a vector's.
    // kept-on-purpose: map-visibility
    bool IsMeant(const Map& map) const noexcept {
        return (task_.tag == SemanticTagNone || task_.tag == map.GetSemanticTagNV()) &&
               (task_.asksDerived || task_.Sees(map.GetTemporality()));
    }
    bool IsMeant(const Vector& vector) const noexcept { return task_.Sees(vector.GetTemporality()); }

    /// Shows a composite before its children, and after them.
    VisitCode Show(Vector& vector, bool postOrder) const { return task_.visitor.VisitVector(&vector, postOrder); }
    VisitCode Show(Map& map, bool postOrder) const { return task_.visitor.VisitMap(&map, postOrder); }
    static VisitCode GetAnswer(VisitCode code) noexcept { return code == VisitSkipChildren ? VisitContinue : code; }

    /// Begins a composite: true when its children are to be walked over, which is what `frame` is for then. Otherwise `code` is
    /// what came of it.
    template <class T>
    bool Enter(T& composite, const WalkLevel& level, void* frame, VisitCode& code) const {
        if (!task_.MayEnter(composite)) {
            return false;
        }
        const bool isShownAgain = level.ShowsAfter(T::StaticType) && IsMeant(composite);
        if (level.ShowsBefore(T::StaticType) && IsMeant(composite)) {
            const VisitCode answer = Show(composite, false);
            if (answer != VisitContinue) {
                code = GetAnswer(answer);
                return false;
            }
        }
        PrefetchBehind(&composite);
        if (const WalkLevel* const below = level.GetBelow()) {
            ::new (frame) Frame(composite, *below, GetFirstStage(composite), isShownAgain);
            return true;
        }
        if (isShownAgain) {
            code = GetAnswer(Show(composite, true));
        }
        return false;
    }

    /// Ends a composite.
    VisitCode Leave(const Frame& frame) const {
        if (!frame.isShownAgain) {
            return VisitContinue;
        }
        return GetAnswer(frame.stage == Stage::InVector ? Show(static_cast<Vector&>(frame.composite), true)
                                                        : Show(static_cast<Map&>(frame.composite), true));
    }

    /// Passes by `leaf` and those like it that come next: true when there is a child behind them, which `leaf` is then.
    template <class Places>
    static bool PassLeaves(Places& places, Node*& leaf) {
        const std::uint32_t likeness = GetLikeness(*leaf);
        while (places.Next(leaf)) {
            if (GetLikeness(*leaf) != likeness) {
                return true;
            }
        }
        return false;
    }

    /// Walks over `leaf`, of the kind T, and those like it that come next: true when there is a child behind them, which `leaf` is
    /// then. False also where the visitor stops the walk.
    template <class T, class Places>
    bool WalkLeaves(Places& places, Node*& leaf, const WalkLevel& level) {
        if (!level.ShowsLeaves(T::StaticType) || !task_.Sees(leaf->GetTemporality())) {
            return PassLeaves(places, leaf);
        }
        Visitor& visitor = task_.visitor;
        const std::uint32_t likeness = GetLikeness(*leaf);
        do {
            PrefetchBehind(leaf);
            const VisitCode code = ShowLeaf(visitor, static_cast<T&>(*leaf));
            if (code == VisitContinue) {
                if (!places.Next(leaf)) {
                    return false;
                }
            } else if (code == VisitStop) {
                stops_ = true;
                return false;
            } else if (!(code == VisitRemove ? places.NextWithout(leaf) : places.Next(leaf))) {
                return false;
            }
        } while (GetLikeness(*leaf) == likeness);
        return true;
    }

    /// Walks over leaves from `child` on, and answers the composite behind them, or null at the end, or where the visitor stops the
    /// walk.
    template <class Places>
    Composite* WalkToComposite(Places& places, Node* child, const WalkLevel& level) {
        for (bool goesOn = true; goesOn;) {
            switch (child->GetType()) {
                case NodeTypeInteger: goesOn = WalkLeaves<Integer>(places, child, level); break;
                case NodeTypeGlobalID: goesOn = WalkLeaves<GlobalID>(places, child, level); break;
                case NodeTypeString: goesOn = WalkLeaves<String>(places, child, level); break;
                case NodeTypeDouble: goesOn = WalkLeaves<Double>(places, child, level); break;
                case NodeTypeBoolean: goesOn = WalkLeaves<Boolean>(places, child, level); break;
                case NodeTypeIntegerSet: goesOn = WalkLeaves<IntegerSet>(places, child, level); break;
                case NodeTypeIdSet: goesOn = WalkLeaves<IdSet>(places, child, level); break;
                case NodeTypeStringSet: goesOn = WalkLeaves<StringSet>(places, child, level); break;
                case NodeTypeDoubleSet: goesOn = WalkLeaves<DoubleSet>(places, child, level); break;
                case NodeTypeInteger64: goesOn = WalkLeaves<Integer64>(places, child, level); break;
                case NodeTypeVector:
                case NodeTypeMap: return static_cast<Composite*>(child);
            }
        }
        return nullptr;
    }

    /// Goes on behind `child`, a composite that the walk has come out of with this answer; at the start of a composite there is no
    /// child, and the answer is VisitContinue.
    template <class Places>
    Composite* GoOnIn(Places& places, Node* child, VisitCode code, const WalkLevel& level) {
        const bool isThere = code == VisitRemove ? places.NextWithout(child) : places.Next(child);
        return isThere ? WalkToComposite(places, child, level) : nullptr;
    }
    Composite* GoOn(Frame& frame, Node* child, VisitCode code) {
        if (frame.stage == Stage::InVector) {
            VectorPlaces places(static_cast<Vector&>(frame.composite), frame.at);
            Composite* const below = GoOnIn(places, child, code, frame.level);
            frame.at = places.GetPlace();
            return below;
        }
        if (frame.stage == Stage::InSlots) {
            return GoOnInSlots(frame, code);
        }
        return GoOnBeyond(frame, child, code);
    }
    // What stands in slots is rarely of one kind, and one after the other asks less than looking for a row of them.
    Composite* GoOnInSlots(Frame& frame, VisitCode code) {
        if (code == VisitRemove) {
            frame.composite.Remove(frame.at);
        }
        const MapChildren children(static_cast<Map&>(frame.composite));
        Node* const* const end = children.slots + children.slotCount;
        std::uint32_t seen = kNoTemporality;  // the one of the leaf that was shown last
        for (Node* const* slot = children.slots + (frame.at + 1); slot != end; ++slot) {
            Node* const child = *slot;
            if (child == nullptr) {
                continue;
            }
            if (!frame.level.ShowsLeaves(child->GetType())) {
                if (!IsCompositeType(child->GetType())) {
                    continue;
                }
                frame.at = static_cast<int>(slot - children.slots);
                return static_cast<Composite*>(child);
            }
            const auto temporality = static_cast<std::uint32_t>(child->GetTemporality());
            if (temporality != seen) {
                if (!task_.Sees(child->GetTemporality())) {
                    continue;
                }
                seen = temporality;
            }
            PrefetchBehind(child);
            const VisitCode answer = ShowAnyLeaf(*child);
            if (answer == VisitStop) {
                stops_ = true;
                return nullptr;
            }
            if (answer == VisitRemove) {
                children.map.Remove(static_cast<int>(slot - children.slots));
            }
        }
        return BeginBeyond(frame);
    }
    VisitCode ShowAnyLeaf(Node& leaf) const {
        switch (leaf.GetType()) {
            case NodeTypeInteger: return ShowLeaf(task_.visitor, static_cast<Integer&>(leaf));
            case NodeTypeGlobalID: return ShowLeaf(task_.visitor, static_cast<GlobalID&>(leaf));
            case NodeTypeString: return ShowLeaf(task_.visitor, static_cast<String&>(leaf));
            case NodeTypeDouble: return ShowLeaf(task_.visitor, static_cast<Double&>(leaf));
            case NodeTypeBoolean: return ShowLeaf(task_.visitor, static_cast<Boolean&>(leaf));
            case NodeTypeIntegerSet: return ShowLeaf(task_.visitor, static_cast<IntegerSet&>(leaf));
            case NodeTypeIdSet: return ShowLeaf(task_.visitor, static_cast<IdSet&>(leaf));
            case NodeTypeStringSet: return ShowLeaf(task_.visitor, static_cast<StringSet&>(leaf));
            case NodeTypeDoubleSet: return ShowLeaf(task_.visitor, static_cast<DoubleSet&>(leaf));
            case NodeTypeInteger64: return ShowLeaf(task_.visitor, static_cast<Integer64&>(leaf));
            case NodeTypeVector:
            case NodeTypeMap: break;
        }
        return VisitContinue;
    }

    Composite* BeginBeyond(Frame& frame) {
        const MapOverflow* const overflow = MapChildren(static_cast<Map&>(frame.composite)).overflow;
        if (overflow == nullptr) {
            return nullptr;
        }
        OverflowPlaces places(*overflow);
        Node* child = nullptr;
        return places.First(child) ? GoOnBeyond(frame, places, child) : nullptr;
    }
    Composite* GoOnBeyond(Frame& frame, Node* child, VisitCode code) {
        OverflowPlaces places(*MapChildren(static_cast<Map&>(frame.composite)).overflow, frame.beyond);
        const bool isThere = code == VisitRemove ? places.NextWithout(child) : places.Next(child);
        return isThere ? GoOnBeyond(frame, places, child) : nullptr;
    }
    Composite* GoOnBeyond(Frame& frame, OverflowPlaces places, Node* child) {
        Composite* const below = WalkToComposite(places, child, frame.level);
        if (below != nullptr) {
            frame.stage = Stage::BeyondSlots;
            ::new (static_cast<void*>(&frame.beyond)) OverflowPlace(places.GetPlace());
        }
        return below;
    }

    const WalkTask task_;
    bool stops_ = false;
    alignas(Frame) unsigned char frames_[kFrames * sizeof(Frame)];
};

/// Walks over a composite as IterateInner does.
VisitCode Walker::Run(Composite& top, const WalkLevel& topLevel) {
    Frame* const first = GetFirst();
    Frame* const limit = first + kFrames;
    Frame* end = first;
    Composite* child = &top;
    const WalkLevel* level = &topLevel;
    for (;;) {
        VisitCode code = VisitContinue;
        bool isEntered = false;
        if (end == limit) {
            code = Walker(task_).Run(*child, *level);
        } else if (child->GetType() == NodeTypeVector) {
            isEntered = Enter(static_cast<Vector&>(*child), *level, end, code);
        } else {
            isEntered = Enter(static_cast<Map&>(*child), *level, end, code);
        }
        if (isEntered) {
            ++end;
        } else if (end == first || code == VisitStop) {
            return code;
        }
        for (;;) {
            Frame& frame = end[-1];
            Composite* const below = GoOn(frame, child, code);
            if (below != nullptr) {
                level = &frame.level;
                child = below;
                break;
            }
            if (stops_) {
                return VisitStop;
            }
            child = &frame.composite;
            code = Leave(frame);
            --end;
            // On the way up nothing else foresees which nodes come next.
            if (end - first > kAhead) {
                Fetch(end[-kAhead].composite);
            }
            if (end == first || code == VisitStop) {
                return code;
            }
        }
    }
}

}  // namespace

VisitCode WalkComposite(Composite& top, Visitor& visitor, SemanticTag tag, int flags) {
    const WalkLevels levels(flags);
    return Walker(WalkTask(visitor, tag, flags)).Run(top, levels.GetStart());
}

}  // namespace KivGenerics
