#include "traversal/ChildPlaces.h"

namespace KivGenerics {

OverflowPlaces OverflowPlaces::GetBehind(OverflowPlaces places) noexcept {
    if (places.changes_ == places.overflow_->GetChanges()) {
        places.run_.SkipRun();
    } else {
        places.changes_ = places.overflow_->GetChanges();
        places.run_ = places.overflow_->After(places.key_);
    }
    places.TakeRun();
    return places;
}

}  // namespace KivGenerics
