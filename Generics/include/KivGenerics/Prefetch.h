#pragma once

#include <cstddef>

#include <KivGenerics/Map.h>

namespace KivGenerics {

// Nodes that are gone through one after the other mostly lie so, with the arrays of their parents between them. What lies some
// hundred nodes behind is asked for in time, and the processor by itself does not look beyond the end of a page.

/// Asks for what lies behind these bytes, line by line.
[[gnu::always_inline]] inline void PrefetchBehind([[maybe_unused]] const void* memory,
                                                  [[maybe_unused]] std::size_t bytes) noexcept {
#if defined(__GNUC__)
    constexpr std::size_t kDistance = 4096;
    constexpr std::size_t kLine = 64;
    const char* const place = static_cast<const char*>(memory) + kDistance;
    for (std::size_t i = 0; i < bytes; i += kLine) {
        __builtin_prefetch(place + i);
    }
#endif
}
/// The same for a node, which may be null: then nothing is asked for.
[[gnu::always_inline]] inline void PrefetchBehind(const Node& node) noexcept {
    PrefetchBehind(&node, 1);
}
[[gnu::always_inline]] inline void PrefetchBehind(const Node* node) noexcept {
    if (node != nullptr) {
        PrefetchBehind(*node);
    }
}
/// The same for a map and the slots behind it, as many as most maps have.
[[gnu::always_inline]] inline void PrefetchBehind(const Map& map) noexcept {
    constexpr std::size_t kSlots = 8;
    PrefetchBehind(&map, sizeof(Map) + kSlots * sizeof(Node*));
}
/// The same for an array of children.
[[gnu::always_inline]] inline void PrefetchBehind(Node* const* first, Node* const* end) noexcept {
    PrefetchBehind(first, static_cast<std::size_t>(end - first) * sizeof(Node*));
}

/// Asks for a node that will be needed soon.
inline void Fetch([[maybe_unused]] const Node& node) noexcept {
#if defined(__GNUC__)
    __builtin_prefetch(&node);
#endif
}

}  // namespace KivGenerics
