#pragma once

#include <KivGenerics/Node.h>

namespace KivGenerics {

/// Asks for what lies some eighty nodes behind this one. Nodes that are gone through one after the other mostly lie so, too, and the
/// processor by itself does not look beyond the end of a page.
inline void PrefetchBehind([[maybe_unused]] const Node* node) noexcept {
#if defined(__GNUC__)
    constexpr int kDistance = 4096;
    __builtin_prefetch(reinterpret_cast<const char*>(node) + kDistance);
#endif
}

}  // namespace KivGenerics
