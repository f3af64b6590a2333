// The depth-first walk over a composite and what is below it.
//
// The composites on the way down stand in a list, not on the machine's stack one call in the other: a processor foresees where a
// few calls return to, and no more. A list has room for so many levels; what is deeper is for a walker of its own, which is on
// the stack, too. So a walk needs no memory that could be refused. A composite comes into the list only when the walk goes down
// from it: most hold nothing but leaves.

#include "traversal/WalkComposite.h"

#include <new>

#include <KivGenerics/Map.h>
#include <KivGenerics/Prefetch.h>

#include "traversal/ChildPlaces.h"
#include "traversal/FoundComposite.h"
#include "traversal/LeavesOfMap.h"
#include "traversal/LeavesOfVector.h"
#include "traversal/WalkFrame.h"
#include "traversal/WalkTask.h"

namespace KivGenerics {
namespace {

/// Most walks are plain, as WalkTask has it, and need not ask for what the others ask for at every composite.
template <bool IsPlain>
class Walker {
public:
    Walker(const WalkTask& task, Visitor& visitor) noexcept : task_(task), visitor_(visitor) {}

    VisitCode Run(Composite& top, const WalkLevel& level);

private:
    static constexpr int kFrames = 64;
    static constexpr int kAhead = 6;  // levels that the processor's memory is asked for in time

    WalkFrame* GetFirst() noexcept { return reinterpret_cast<WalkFrame*>(frames_); }

    /// Shows a composite before its children, and after them.
    VisitCode Show(Vector& vector, bool postOrder) const { return visitor_.VisitVector(&vector, postOrder); }
    VisitCode Show(Map& map, bool postOrder) const { return visitor_.VisitMap(&map, postOrder); }
    static VisitCode GetAnswer(VisitCode code) noexcept { return code == VisitSkipChildren ? VisitContinue : code; }

    template <class T>
    bool IsMeant(const T& composite, SeenTemporalities temporalities) const noexcept {
        return temporalities.Has(composite.GetTemporality()) && (IsPlain || task_.IsTagMeant(composite));
    }

    /// Begins a composite, and answers the first composite in it, which the walk is to go down to: `frame` is then the frame that
    /// has been made for it. Null when the composite is done with; `code` is what came of it.
    template <class T>
    Composite* Begin(T& composite, const WalkLevel& level, WalkFrame* frame, VisitCode& code) const {
        code = VisitContinue;
        if (!IsPlain && !task_.MayEnter(composite)) {
            return nullptr;
        }
        const SeenTemporalities after = level.GetAfter(composite);
        const bool isShownAgain = !IsPlain && !after.IsNone() && IsMeant(composite, after);
        if (IsMeant(composite, level.GetBefore(composite))) {
            const VisitCode answer = Show(composite, false);
            if (answer != VisitContinue) {
                code = GetAnswer(answer);
                return nullptr;
            }
        }
        PrefetchBehind(composite);
        if (const WalkLevel* const below = level.GetBelow()) {
            const FoundComposite found = FindFirst(composite, *below, isShownAgain, frame);
            if (found.composite != nullptr) {
                return found.composite;
            }
            if (found.at == FoundComposite::kStopped) {
                code = VisitStop;
                return nullptr;
            }
        }
        if (isShownAgain) {
            code = GetAnswer(Show(composite, true));
        }
        return nullptr;
    }
    FoundComposite FindFirst(Vector& vector, const WalkLevel& level, bool isShownAgain, WalkFrame* frame) const {
        const FoundComposite found = FindIn(vector, level, 0);
        if (found.composite != nullptr) {
            ::new (static_cast<void*>(frame)) WalkFrame(vector, level, found.at, isShownAgain);
        }
        return found;
    }
    FoundComposite FindFirst(Map& map, const WalkLevel& level, bool isShownAgain, WalkFrame* frame) const {
        ::new (static_cast<void*>(frame)) WalkFrame(map, level, 0, isShownAgain);
        const FoundComposite found = FindIn(map, level, -1, frame->beyond);
        frame->SetPlace(found.at);
        return found;
    }
    /// The first composite from `at` on, with the leaves before it walked over.
    FoundComposite FindIn(Vector& vector, const WalkLevel& level, std::ptrdiff_t at) const {
        VectorPlaces places(vector, at - 1);
        Node* child = nullptr;
        if (!places.Next(child)) {
            return {nullptr, 0};
        }
        return IsCompositeType(child->GetType()) ? FoundComposite{static_cast<Composite*>(child), at}
                                                 : WalkLeavesOfVector(visitor_, level, vector, at, child);
    }
    /// The same behind the slot `at`. Where it is one beyond the slots, `beyond` is its place.
    FoundComposite FindIn(Map& map, const WalkLevel& level, std::ptrdiff_t at, OverflowPlace& beyond) const {
        const MapChildren children(map);
        do {
            if (++at == children.slotCount) {
                return children.overflow == nullptr ? FoundComposite{nullptr, 0}
                                                    : BeginBeyondSlots(visitor_, level, *children.overflow, beyond);
            }
        } while (children.slots[at] == nullptr);
        Node* const child = children.slots[at];
        return IsCompositeType(child->GetType()) ? FoundComposite{static_cast<Composite*>(child), at}
                                                 : WalkLeavesInSlots(visitor_, level, map, at, beyond);
    }

    /// Goes on behind `child`, a composite that the walk has come out of with this answer.
    FoundComposite GoOn(WalkFrame& frame, Node* child, VisitCode code) const {
        if (frame.composite.GetType() == NodeTypeVector) {
            Vector& vector = static_cast<Vector&>(frame.composite);
            std::ptrdiff_t at = frame.at + 1;
            if (code == VisitRemove) {
                vector.Remove(static_cast<int>(frame.at));
                --at;
            }
            return FindIn(vector, frame.level, at);
        }
        Map& map = static_cast<Map&>(frame.composite);
        if (frame.at == FoundComposite::kBeyondSlots) {
            return GoOnBeyondSlots(visitor_, frame.level, *MapChildren(map).overflow, frame.beyond, child,
                                   code == VisitRemove);
        }
        if (code == VisitRemove) {
            map.Remove(static_cast<int>(frame.at));
        }
        return FindIn(map, frame.level, frame.at, frame.beyond);
    }

    /// Ends a composite.
    VisitCode Leave(const WalkFrame& frame) const {
        if (IsPlain || !frame.isShownAgain) {
            return VisitContinue;
        }
        return GetAnswer(frame.composite.GetType() == NodeTypeVector ? Show(static_cast<Vector&>(frame.composite), true)
                                                                     : Show(static_cast<Map&>(frame.composite), true));
    }

    /// Goes on where the walk has come out of `child` with this answer, and up as long as there is nothing to go down to. Null at
    /// the end of the walk; `code` is what came of it.
    Composite* GoUp(WalkFrame*& end, Composite* child, VisitCode& code) {
        WalkFrame* const first = GetFirst();
        while (end != first && code != VisitStop) {
            WalkFrame& frame = end[-1];
            const FoundComposite found = GoOn(frame, child, code);
            if (found.composite != nullptr) {
                frame.SetPlace(found.at);
                return found.composite;
            }
            if (found.at == FoundComposite::kStopped) {
                code = VisitStop;
                return nullptr;
            }
            child = &frame.composite;
            code = Leave(frame);
            --end;
            // On the way up nothing else foresees which nodes come next.
            if (end - first > kAhead) {
                Fetch(end[-kAhead].composite);
            }
        }
        return nullptr;
    }

    const WalkTask task_;
    Visitor& visitor_;
    alignas(WalkFrame) unsigned char frames_[kFrames * sizeof(WalkFrame)];
};

/// Walks over a composite as IterateInner does.
template <bool IsPlain>
VisitCode Walker<IsPlain>::Run(Composite& top, const WalkLevel& topLevel) {
    WalkFrame* const limit = GetFirst() + kFrames;
    WalkFrame* end = GetFirst();
    Composite* child = &top;
    const WalkLevel* level = &topLevel;
    for (;;) {
        VisitCode code = VisitContinue;
        Composite* below = nullptr;
        if (end == limit) {
            code = Walker(task_, visitor_).Run(*child, *level);
        } else if (child->GetType() == NodeTypeVector) {
            below = Begin(static_cast<Vector&>(*child), *level, end, code);
        } else {
            below = Begin(static_cast<Map&>(*child), *level, end, code);
        }
        if (below != nullptr) {
            ++end;
        } else {
            below = GoUp(end, child, code);
            if (below == nullptr) {
                return code;
            }
        }
        child = below;
        level = &end[-1].level;
    }
}

}  // namespace

VisitCode WalkComposite(Composite& top, Visitor& visitor, SemanticTag tag, int flags) {
    const WalkTask task(tag, flags);
    const WalkLevels levels(task, flags);
    return task.IsPlain(flags) ? Walker<true>(task, visitor).Run(top, levels.GetStart())
                               : Walker<false>(task, visitor).Run(top, levels.GetStart());
}

}  // namespace KivGenerics
