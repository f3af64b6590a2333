#pragma once

#include <KivGenerics/Vector.h>

#include "core/MapChildren.h"
#include "core/NodeAccess.h"

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

private:
    bool TakeRun() noexcept {
        const auto length = beyond_.GetRunLength();
        if (length == 0) {
            return false;
        }
        next_ = beyond_.GetRunValues();
        end_ = next_ + length;
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
