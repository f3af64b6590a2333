#pragma once

#include <KivGenerics/ChildRuns.h>
#include <KivGenerics/Prefetch.h>

namespace KivGenerics {

/// ChildRuns for operations that pass over some of the children, or go over those of two composites in step.
class ChildCursor : private ChildRuns {
public:
    ChildCursor() = default;
    explicit ChildCursor(const Composite& composite) noexcept : ChildRuns(composite) {}

    using ChildRuns::Next;

    /// The next child that `isMeant` answers true for, or null behind the last; the others it may deal with.
    template <class IsMeant>
    Node* FindNext(IsMeant isMeant) noexcept(noexcept(isMeant(static_cast<Node*>(nullptr)))) {
        do {
            Node* const* next = next_;
            Node* const* const end = end_;
            while (next != end) {
                Node* const child = *next++;
                if (child != nullptr && isMeant(child)) {
                    next_ = next;
                    return child;
                }
            }
            next_ = next;
        } while (TakeRun());
        return nullptr;
    }

    /// Calls `use(left, right)` for the children of both in step, as long as `isMeant` answers true for both, until it answers
    /// something other than 0, which is the answer then. The first pair that is not meant is not taken.
    template <class IsMeant, class Use>
    static int ForEachPair(ChildCursor& left, ChildCursor& right, IsMeant isMeant, Use use) {
        Node* const* mine = left.next_;
        Node* const* theirs = right.next_;
        int answer = 0;
        while (answer == 0 && mine != left.end_ && theirs != right.end_ && isMeant(*mine) && isMeant(*theirs)) {
            PrefetchBehind(*mine);
            PrefetchBehind(*theirs);
            answer = use(*mine++, *theirs++);
        }
        left.next_ = mine;
        right.next_ = theirs;
        return answer;
    }

    /// The children that lie side by side, from the one that was taken last to GetRunEnd, of which those before GoOnAt count as
    /// taken then.
    Node* const* GetTaken() const noexcept { return next_ - 1; }
    Node* const* GetRunEnd() const noexcept { return end_; }
    void GoOnAt(Node* const* next) noexcept { next_ = next; }
};

}  // namespace KivGenerics
