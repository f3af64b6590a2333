#pragma once

#include <cstdint>

#include <KivGenerics/Node.h>

namespace KivGenerics {

/// Asks for what lies some eighty nodes behind this one. Nodes that are gone through one after the other mostly lie so, too, and the
/// processor by itself does not look beyond the end of a page. There need be no node, here or there: an address is all that counts.
inline void PrefetchBehind([[maybe_unused]] const Node* node) noexcept {
#if defined(__GNUC__)
    constexpr std::uintptr_t kDistance = 4096;
    __builtin_prefetch(reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(node) + kDistance));
#endif
}

/// Asks for a node that will be needed soon.
inline void Fetch([[maybe_unused]] const Node& node) noexcept {
#if defined(__GNUC__)
    __builtin_prefetch(&node);
#endif
}

}  // namespace KivGenerics
