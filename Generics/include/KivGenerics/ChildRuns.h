#pragma once

#include <KivGenerics/Map.h>
#include <KivGenerics/Prefetch.h>
#include <KivGenerics/Vector.h>

namespace KivGenerics {

/// Goes over the children of a composite in index order, in the arrays that they stand in: a vector's one array; the slots of a
/// map, of which some may be empty, and then the chunks of what stands beyond them.
///
/// Valid until the composite gains or loses a child.
class ChildRuns {
public:
    ChildRuns() noexcept = default;
    explicit ChildRuns(const Vector& vector) noexcept
        : next_(vector.children_.data()), end_(next_ + vector.children_.size()) {}
    explicit ChildRuns(const Map& map) noexcept : next_(map.GetSlots()), end_(next_ + map.slotCount_) {
        if (const Map::Overflow* const overflow = map.GetOverflow()) {
            beyond_ = overflow->begin();
        }
    }
    explicit ChildRuns(const Composite& composite) noexcept
        : ChildRuns(composite.GetType() == NodeTypeVector ? ChildRuns(static_cast<const Vector&>(composite))
                                                          : ChildRuns(static_cast<const Map&>(composite))) {}
    /// The children behind `child`, which is one of the composite's.
    static ChildRuns Behind(const Composite& composite, const Node& child) noexcept {
        const int index = child.GetIndex();
        const bool isVector = composite.GetType() == NodeTypeVector;
        ChildRuns behind;
        if (isVector || index < static_cast<const Map&>(composite).slotCount_) {
            behind = ChildRuns(composite);
            behind.next_ += index + 1;
        } else {
            behind.beyond_ = static_cast<const Map&>(composite).GetOverflow()->After(index);
        }
        return behind;
    }

    /// False when there certainly is no child any more.
    bool MayHaveNext() const noexcept { return next_ != end_ || beyond_.GetRunLength() != 0; }
    /// The next child, or null behind the last.
    Node* Next() noexcept {
        do {
            while (next_ != end_) {
                if (Node* const child = *next_++) {
                    return child;
                }
            }
        } while (TakeRun());
        return nullptr;
    }
    /// The next child if it stands right behind the one before and is of this kind, otherwise null.
    Node* NextLike(NodeType type) noexcept {
        if (next_ == end_ || *next_ == nullptr || (*next_)->GetType() != type) {
            return nullptr;
        }
        return *next_++;
    }

protected:
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

    Node* const* next_ = nullptr;  // in the present array
    Node* const* end_ = nullptr;

private:
    Map::Overflow::Iterator beyond_;
};

}  // namespace KivGenerics
