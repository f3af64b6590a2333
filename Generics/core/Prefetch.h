#pragma once

#include <KivGenerics/Node.h>

namespace KivGenerics {

/// Asks for what lies some eighty nodes behind this one. Nodes that are gone through one after the other mostly lie so, too, and the
/// processor by itself does not look beyond the end of a page. Null asks for nothing.
[[gnu::always_inline]] inline void PrefetchBehind([[maybe_unused]] const Node& node) noexcept {
#if defined(__GNUC__)
    constexpr int kDistance = 4096;
    __builtin_prefetch(reinterpret_cast<const char*>(&node) + kDistance);
#endif
}
[[gnu::always_inline]] inline void PrefetchBehind(const Node* node) noexcept {
    if (node != nullptr) {
        PrefetchBehind(*node);
    }
}

/// Asks for a node that will be needed soon.
inline void Fetch([[maybe_unused]] const Node& node) noexcept {
#if defined(__GNUC__)
    __builtin_prefetch(&node);
#endif
}

}  // namespace KivGenerics
