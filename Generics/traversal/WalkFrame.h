#pragma once

#include <cstddef>
#include <cstdint>

#include "traversal/ChildPlaces.h"
#include "traversal/WalkTask.h"

namespace KivGenerics {

/// A composite that a walk has gone down from.
struct WalkFrame {
    WalkFrame(Composite& walkedOver, const WalkLevel& childLevel, std::ptrdiff_t child, bool again) noexcept
        : composite(walkedOver), at(static_cast<std::int32_t>(child)), isShownAgain(again), level(childLevel) {}

    void SetPlace(std::ptrdiff_t child) noexcept { at = static_cast<std::int32_t>(child); }

    Composite& composite;
    std::int32_t at;  // of the child that the walk has gone down to, as FoundComposite has it
    bool isShownAgain;  // after its children
    const WalkLevel& level;  // of the children
    union {
        OverflowPlace beyond;  // where that child stands beyond the slots
    };
};

}  // namespace KivGenerics
