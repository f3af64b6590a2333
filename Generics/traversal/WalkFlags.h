#pragma once

#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Visitor.h>

#include "core/NodeAccess.h"

namespace KivGenerics {

inline constexpr int kUpToBits = IterateUpToPersistent | IterateUpToTransient | IterateUpToTemporary;
inline constexpr int kSeeBits = IterateSeeDefault | IterateSeePersistent | IterateSeeTransient | IterateSeeTemporary;

/// False when the flags restrict a walk to temporalities that a composite's derived one does not reach: it is skipped whole.
inline bool MayEnter(const Composite& composite, int flags) noexcept {
    return (flags & kUpToBits) == 0 || NodeAccess::Sees(flags, NodeAccess::GetStoredDerived(composite));
}

/// The flags for the children: what stood for the children now stands for the node itself, what stood for the deeper levels
/// for its children.
constexpr int GetChildFlags(int flags) noexcept {
    int child = flags & ~(IterateSelf | IterateChildren);
    child |= (flags & IterateChildren) != 0 ? IterateSelf : 0;
    child |= (flags & IterateDeeper) != 0 ? IterateChildren : 0;
    return child;
}

/// The flags that a whole walk below a node, begun without any, has for its children and everything below them.
inline constexpr int kFlagsOfAllBelow =
    IterateTypeBits | IteratePreOrder | IterateSelf | IterateChildren | IterateDeeper | kSeeBits;

}  // namespace KivGenerics
