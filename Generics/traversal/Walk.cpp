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

VisitCode WalkBelow(const Elements& elements, std::size_t& place, const ChildWalk& walk) {
    const VisitCode code = NodeAccess::IterateInner(*elements[place], walk.visitor, walk.tag, walk.flags);
    place += code == VisitStop || code == VisitRemove ? 0 : 1;
    return code;
}

// As WalkElements, whatever the kind.
VisitCode WalkRun(const Elements& elements, std::size_t& place, const ChildWalk& walk) {
    switch (elements[place]->GetType()) {
        case NodeTypeInteger: return WalkElements(elements, place, walk, &Visitor::VisitInteger);
        case NodeTypeGlobalID: return WalkElements(elements, place, walk, &Visitor::VisitGlobalID);
        case NodeTypeString: return WalkElements(elements, place, walk, &Visitor::VisitString);
        case NodeTypeDouble: return WalkElements(elements, place, walk, &Visitor::VisitDouble);
        case NodeTypeBoolean: return WalkElements(elements, place, walk, &Visitor::VisitBoolean);
        case NodeTypeIntegerSet: return WalkElements(elements, place, walk, &Visitor::VisitIntegerSet);
        case NodeTypeIdSet: return WalkElements(elements, place, walk, &Visitor::VisitIdSet);
        case NodeTypeStringSet: return WalkElements(elements, place, walk, &Visitor::VisitStringSet);
        case NodeTypeDoubleSet: return WalkElements(elements, place, walk, &Visitor::VisitDoubleSet);
        case NodeTypeInteger64: return WalkElements(elements, place, walk, &Visitor::VisitInteger64);
        case NodeTypeVector:
        case NodeTypeMap: break;
    }
    return WalkBelow(elements, place, walk);
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
            const ChildWalk walk(visitor, tag, childFlags);
            for (std::size_t i = 0; i < children_.size();) {
                const VisitCode code = WalkRun(children_, i, walk);
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

// Whenever a visitor has changed the store, the walk goes on with the first child after the one that was shown last. Answers
// false when the walk stops.
bool WalkOverflow(const MapOverflow& overflow, const ChildWalk& walk) {
    for (auto run = overflow.begin(); run.GetRunLength() > 0;) {
        const std::uint32_t changes = overflow.GetChanges();
        const int* key = run.GetRun();
        const int* const end = key + run.GetRunLength();
        Node* const* value = run.GetRunValues();
        int index = 0;
        while (key != end && changes == overflow.GetChanges()) {
            index = *key++;
            Node& child = **value++;
            const VisitCode code = WalkChild(child, walk);
            if (code == VisitRemove) {
                child.Remove();
            } else if (code == VisitStop) {
                return false;
            }
        }
        if (changes == overflow.GetChanges()) {
            run.SkipRun();
        } else {
            run = overflow.After(index);
        }
    }
    return true;
}

// Answers false when the walk stops.
bool WalkMapChildren(const MapChildren& children, const ChildWalk& walk) {
    for (int i = 0; i < children.slotCount; ++i) {
        if (children.slots[i] == nullptr) {
            continue;
        }
        const VisitCode code = WalkChild(*children.slots[i], walk);
        if (code == VisitStop) {
            return false;
        }
        if (code == VisitRemove) {
            children.map.Remove(i);
        }
    }
    return children.overflow == nullptr || WalkOverflow(*children.overflow, walk);
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
        [&](int childFlags) { return WalkMapChildren(children, ChildWalk(visitor, tag, childFlags)); });
}

}  // namespace KivGenerics
