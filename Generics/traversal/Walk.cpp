// The depth-first walk: where it starts, and a composite's step.

#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "core/MapChildren.h"
#include "traversal/CompositeWalk.h"
#include "traversal/WalkChild.h"

namespace KivGenerics {
namespace {

constexpr int kMapBit = 1 << (NodeTypeMap - 1);
constexpr int kVectorBit = 1 << (NodeTypeVector - 1);

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

namespace {

using Elements = std::vector<Node*, KivBase::Allocator<Node*>>;

VisitCode WalkBelow(const Elements& elements, std::size_t& place, Visitor* visitor, SemanticTag tag, int flags) {
    const VisitCode code = NodeAccess::IterateInner(*elements[place], visitor, tag, flags);
    place += code == VisitStop || code == VisitRemove ? 0 : 1;
    return code;
}

// As WalkElements, whatever the kind.
VisitCode WalkRun(const Elements& elements, std::size_t& place, Visitor* visitor, SemanticTag tag, int flags) {
    switch (elements[place]->GetType()) {
        case NodeTypeInteger: return WalkElements(elements, place, visitor, &Visitor::VisitInteger, flags);
        case NodeTypeGlobalID: return WalkElements(elements, place, visitor, &Visitor::VisitGlobalID, flags);
        case NodeTypeString: return WalkElements(elements, place, visitor, &Visitor::VisitString, flags);
        case NodeTypeDouble: return WalkElements(elements, place, visitor, &Visitor::VisitDouble, flags);
        case NodeTypeBoolean: return WalkElements(elements, place, visitor, &Visitor::VisitBoolean, flags);
        case NodeTypeIntegerSet: return WalkElements(elements, place, visitor, &Visitor::VisitIntegerSet, flags);
        case NodeTypeIdSet: return WalkElements(elements, place, visitor, &Visitor::VisitIdSet, flags);
        case NodeTypeStringSet: return WalkElements(elements, place, visitor, &Visitor::VisitStringSet, flags);
        case NodeTypeDoubleSet: return WalkElements(elements, place, visitor, &Visitor::VisitDoubleSet, flags);
        case NodeTypeInteger64: return WalkElements(elements, place, visitor, &Visitor::VisitInteger64, flags);
        case NodeTypeVector:
        case NodeTypeMap: break;
    }
    return WalkBelow(elements, place, visitor, tag, flags);
}

}  // namespace

VisitCode Vector::Visit(Visitor* visitor, bool postOrder) {
    return visitor->VisitVector(this, postOrder);
}

VisitCode Vector::IterateInner(Visitor* visitor, SemanticTag tag, int flags) {
    if (!MayEnter(*this, flags)) {
        return VisitContinue;
    }
    constexpr int kNeeded = IterateSelf | kVectorBit;
    const bool self = (flags & kNeeded) == kNeeded && NodeAccess::Sees(flags, GetTemporality());
    return WalkComposite(
        self, flags, [&](bool postOrder) { return visitor->VisitVector(this, postOrder); },
        [&](int childFlags) {
            for (std::size_t i = 0; i < children_.size();) {
                const VisitCode code = WalkRun(children_, i, visitor, tag, childFlags);
                if (code == VisitStop) {
                    return false;
                }
                if (code == VisitRemove) {
                    Remove(static_cast<int>(i));  // the next child moves to i
                }
            }
            return true;
        });
}

VisitCode Map::Visit(Visitor* visitor, bool postOrder) {
    return visitor->VisitMap(this, postOrder);
}

namespace {

// Answers false when the walk stops.
bool WalkMapChildren(const MapChildren& children, Visitor* visitor, SemanticTag tag, int flags) {
    for (int i = 0; i < children.slotCount; ++i) {
        if (children.slots[i] == nullptr) {
            continue;
        }
        const VisitCode code = WalkChild(*children.slots[i], visitor, tag, flags);
        if (code == VisitStop) {
            return false;
        }
        if (code == VisitRemove) {
            children.map.Remove(i);
        }
    }
    return children.ForEachInOverflow([&](Node* child) {
        const VisitCode code = WalkChild(*child, visitor, tag, flags);
        if (code == VisitRemove) {
            child->Remove();
        }
        return code != VisitStop;
    });
}

}  // namespace

VisitCode IterateMap(const MapChildren& children, Visitor* visitor, SemanticTag tag, int flags) {
    Map& map = children.map;
    if (!MayEnter(map, flags)) {
        return VisitContinue;
    }
    // Where a walk goes by derived temporalities, a map's own one is not asked, unlike a vector's.
    // kept-on-purpose: map-visibility
    constexpr int kNeeded = IterateSelf | kMapBit;
    const bool self = (flags & kNeeded) == kNeeded && (tag == SemanticTagNone || tag == map.GetSemanticTagNV()) &&
                      ((flags & kUpToBits) != 0 || NodeAccess::Sees(flags, map.GetTemporality()));
    return WalkComposite(
        self, flags, [&](bool postOrder) { return visitor->VisitMap(&map, postOrder); },
        [&](int childFlags) { return WalkMapChildren(children, visitor, tag, childFlags); });
}

}  // namespace KivGenerics
