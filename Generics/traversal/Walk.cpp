// Where a depth-first walk starts.

#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "core/MapChildren.h"
#include "traversal/WalkComposite.h"
#include "traversal/WalkFlags.h"

namespace KivGenerics {
namespace {

constexpr int kMapBit = 1 << (NodeTypeMap - 1);

}  // namespace

int Node::GetDefaultIterateFlags(int flags, SemanticTag tag) const noexcept {
    if ((flags & IterateTypeBits) == 0) {
        flags |= IterateTypeBits;
    }
    // kept-on-purpose: tag-1-selects
    if (tag != SemanticTagNone && tag != SemanticTagDefault) {
        flags &= ~IterateTypeBits | kMapBit;
    }
    if ((flags & (IteratePreOrder | IteratePostOrder)) == 0) {
        flags |= IteratePreOrder;
    }
    if ((flags & (IterateSelf | IterateChildren | IterateDeeper)) == 0) {
        flags |= IterateChildren | IterateDeeper;
    }
    if ((flags & (kUpToBits | kSeeBits)) == 0) {
        flags |= kSeeBits;
    }
    if ((flags & IterateUpToTemporary) != 0) {
        flags |= IterateUpToTransient | IterateUpToPersistent;
    } else if ((flags & IterateUpToTransient) != 0) {
        flags |= IterateUpToPersistent;
    }
    return flags;
}

void Node::Iterate(Visitor* visitor, SemanticTag tag, int flags) {
    if (visitor == nullptr) {
        return;
    }
    if (IterateInner(visitor, tag, GetDefaultIterateFlags(flags, tag)) == VisitRemove) {
        Remove();
    }
}

VisitCode Vector::Visit(Visitor* visitor, bool postOrder) {
    return visitor->VisitVector(this, postOrder);
}

VisitCode Vector::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    return WalkComposite(*this, *visitor, tag, flags);
}

VisitCode Map::Visit(Visitor* visitor, bool postOrder) {
    return visitor->VisitMap(this, postOrder);
}

VisitCode IterateMap(const MapChildren& children, Visitor* visitor, SemanticTag tag, int flags) {
    return WalkComposite(children.map, *visitor, tag, flags);
}

}  // namespace KivGenerics
