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
        for (;;) {
            while (next_ != end_) {
                if (Node* const child = *next_++) {
                    return child;
                }
            }
            if (beyond_.GetRunLength() == 0) {
                return nullptr;
            }
            next_ = beyond_.GetRunValues();
            end_ = next_ + beyond_.GetRunLength();
            beyond_.SkipRun();
        }
    }

private:
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
