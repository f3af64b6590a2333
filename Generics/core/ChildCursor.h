#pragma once

#include <KivGenerics/Vector.h>

#include "core/MapChildren.h"
#include "core/NodeAccess.h"
#include "core/Prefetch.h"

namespace KivGenerics {

/// Goes over the children of a composite in index order, whichever of the two kinds it is.
///
/// The composite must not lose or gain children meanwhile.
class ChildCursor {
public:
    ChildCursor() = default;
    explicit ChildCursor(Composite& composite) noexcept {
        if (composite.GetType() == NodeTypeVector) {
            StartAt(static_cast<Vector&>(composite));
        } else {
            StartAt(static_cast<Map&>(composite));
        }
    }

    /// The next child, or null behind the last.
    Node* Next() noexcept {
        return FindNext([](Node*) { return true; });
    }

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

private:
    bool TakeRun() noexcept {
        const auto length = beyond_.GetRunLength();
        if (length == 0) {
            return false;
        }
        next_ = beyond_.GetRunValues();
        end_ = next_ + length;
        PrefetchBehind(next_, end_);
        beyond_.SkipRun();
        return true;
    }
    void StartAt(Vector& vector) noexcept {
        auto& children = NodeAccess::GetChildren(vector);
        next_ = children.data();
        end_ = next_ + children.size();
    }
    void StartAt(Map& map) noexcept {
        const MapChildren children(map);
        next_ = children.slots;
        end_ = next_ + children.slotCount;
        if (children.overflow != nullptr) {
            beyond_ = children.overflow->begin();
        }
    }

    // Children side by side: a vector's or the slots of a map, then those of a chunk of its overflow store after the other.
    Node* const* next_ = nullptr;
    Node* const* end_ = nullptr;
    MapOverflow::Iterator beyond_;
};

}  // namespace KivGenerics
