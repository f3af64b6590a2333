#pragma once

#include <cstddef>
#include <cstdint>

#include <KivGenerics/Prefetch.h>
#include <KivGenerics/Vector.h>

#include "core/MapChildren.h"
#include "core/NodeAccess.h"
#include "traversal/FoundComposite.h"

namespace KivGenerics {

// Where a walk is among children of one composite. A visitor may change them whenever it is shown one, and the next one is found as
// they are by then.

/// Among the elements of a vector: the number of the place counts.
class VectorPlaces {
public:
    /// Before the first element with `at` -1.
    VectorPlaces(Vector& vector, std::ptrdiff_t at) noexcept : vector_(vector), at_(at) {}

    std::ptrdiff_t GetNumber() const noexcept { return at_; }
    /// Goes on: true when there is a child, which `child` is then.
    bool Next(Node*& child) noexcept {
        ++at_;
        // Addresses are compared: the size would be calculated from them, and there may be no array any more.
        const auto& elements = NodeAccess::GetChildren(vector_);
        const auto at = static_cast<std::size_t>(at_);
        if (reinterpret_cast<std::uintptr_t>(elements.data()) + at * sizeof(Node*) >=
            reinterpret_cast<std::uintptr_t>(elements.data() + elements.size())) {
            return false;
        }
        child = elements[at];
        return true;
    }
    /// Removes `child`, the present one.
    void Remove(Node&) {
        vector_.Remove(static_cast<int>(at_));
        --at_;  // the next child moves to the place of this one
    }

private:
    Vector& vector_;
    std::ptrdiff_t at_;
};

/// Where an OverflowPlaces stood.
struct OverflowPlace {
    MapOverflow::Iterator run;
    int at;
    int key;
    std::uint32_t changes;
};

/// Among the children of a map beyond its slots. Whenever the store has been changed, the next child is the first one after that
/// which was shown last.
class OverflowPlaces {
public:
    explicit OverflowPlaces(const MapOverflow& overflow) noexcept
        : overflow_(&overflow), run_(overflow.begin()), changes_(overflow.GetChanges()) {
        TakeRun();
    }
    OverflowPlaces(const MapOverflow& overflow, const OverflowPlace& place) noexcept
        : overflow_(&overflow), run_(place.run), key_(place.key), changes_(place.changes) {
        if (changes_ == overflow.GetChanges()) {
            TakeRun();
            values_ += place.at;
            key_ = place.key;
        }
    }

    static std::ptrdiff_t GetNumber() noexcept { return FoundComposite::kBeyondSlots; }
    OverflowPlace GetPlace() const noexcept {
        return {run_, static_cast<int>(values_ - run_.GetRunValues()), key_, changes_};
    }
    bool First(Node*& child) const noexcept {
        if (values_ == end_) {
            return false;
        }
        child = *values_;
        return true;
    }
    bool Next(Node*& child) noexcept {
        if (changes_ == overflow_->GetChanges() && values_ + 1 < end_) {
            child = *++values_;
            key_ = child->GetIndex();
            return true;
        }
        *this = GetBehind(*this);
        return First(child);
    }
    static void Remove(Node& child) { child.Remove(); }

private:
    // The rare steps work on a copy, so that in the frequent ones the fields can stay in the processor's registers.
    static OverflowPlaces GetBehind(OverflowPlaces places) noexcept;
    void TakeRun() noexcept {
        const int length = run_.GetRunLength();
        if (length > 0) {
            values_ = run_.GetRunValues();
            end_ = values_ + length;
            PrefetchBehind(values_, end_);
            key_ = *run_.GetRun();
        } else {
            values_ = nullptr;
            end_ = nullptr;
        }
    }

    const MapOverflow* overflow_;
    MapOverflow::Iterator run_;
    Node* const* values_ = nullptr;
    Node* const* end_ = nullptr;
    int key_ = 0;
    std::uint32_t changes_;
};

}  // namespace KivGenerics
