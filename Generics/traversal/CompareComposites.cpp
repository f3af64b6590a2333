// Comparing composites: how many children count, then the counted children one by one, however deep.

#include "core/CompareComposites.h"

#include <algorithm>

#include <KivBase/Guid.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/Prefetch.h>
#include <KivGenerics/String.h>

#include "core/ChildCursor.h"
#include "core/FrameStack.h"
#include "core/LeafKinds.h"
#include "core/Raise.h"
#include "core/TextUnits.h"
#include "core/Texts.h"
#include "traversal/MapCompareVisitor.h"
#include "traversal/WalkFlags.h"

namespace KivGenerics {
namespace {

int GetCompareFlags(EnumOrvGenericsTemporality t) noexcept {
    return t == TemporalityPersistent ? IterateUpToPersistent
                                      : (t == TemporalityTransient ? IterateUpToTransient : IterateUpToTemporary);
}

/// The temporalities that a walk with GetCompareFlags sees, own or derived.
int GetSeenFlags(EnumOrvGenericsTemporality t) noexcept {
    return t == TemporalityPersistent
               ? IterateUpToPersistent
               : (t == TemporalityTransient ? IterateUpToPersistent | IterateUpToTransient : kUpToBits);
}

/// Two composites that are being compared.
struct Compared {
    Compared(Composite& myComposite, Composite& theirComposite) noexcept
        : mine(myComposite),
          theirs(theirComposite),
          areVectors(mine.GetType() == NodeTypeVector),
          myChildren(mine),
          theirChildren(theirs) {}

    Composite& mine;
    Composite& theirs;
    bool areVectors;  // said here, so that coming back asks for no node that has left the processor's cache
    ChildCursor myChildren;
    ChildCursor theirChildren;
};

/// Two leaves of the same kind, both counted.
template <class T>
int CompareValues(const T& mine, const T& theirs) {
    const auto& left = NodeAccess::GetValue(mine);
    const auto& right = NodeAccess::GetValue(theirs);
    if constexpr (T::StaticType == NodeTypeGlobalID) {
        return KivBase::CompareGUID(left, right);
    } else if constexpr (T::StaticType == NodeTypeString) {
        return CompareTexts(left, right);
    } else {
        return left < right ? -1 : (right < left ? 1 : 0);
    }
}

/// The nodes on the way down. Every step answers what decides: 0 as long as nothing does.
///
/// Where kCountsAll, everything in both trees is known to count: no temporality is looked at.
template <bool kCountsAll>
class Comparer {
public:
    explicit Comparer(EnumOrvGenericsTemporality t) noexcept : t_(t), seen_(GetSeenFlags(t)) {}

    int Run(Composite& mine, Node* theirs) {
        int order = Begin(mine, theirs);
        while (order == 0 && !path_.IsEmpty()) {
            Compared& compared = path_.Top();
            order = compared.areVectors ? GoOnInVector(compared) : GoOnInMap(compared);
        }
        return order;
    }

private:
    bool IsCounted(Node& node) const {
        if constexpr (kCountsAll) {
            return true;
        } else {
            return (IsCompositeType(node.GetType()) ? NodeAccess::GetDerived(node)
                                                    : NodeAccess::GetDerivedOfLeaf(node)) <= t_;
        }
    }
    int Begin(Composite& mine, Node* other) {
        if (other == nullptr) {
            Raise(Texts::NullCompare);
        }
        if (other->GetType() != mine.GetType() || GetTag(*other) != GetTag(mine)) {
            const int order = mine.Node::Compare(other, t_, false);
            if (order != 0) {
                return order;
            }
        }
        if (!IsCounted(mine)) {
            return 0;
        }
        auto* const theirs = static_cast<Composite*>(other);
        PrefetchBehind(&mine);
        PrefetchBehind(theirs);
        const int sizes = CompareSizes(mine, *theirs);
        // Their map is walked over, and a walk does not enter what is outside its temporalities.
        if (sizes == 0 && (kCountsAll || mine.GetType() == NodeTypeVector || MayEnter(*theirs, seen_))) {
            path_.Push(mine, *theirs);
        }
        return sizes;
    }

    /// GetSemanticTag without the virtual call.
    static SemanticTag GetTag(const Node& node) noexcept {
        return node.GetType() == NodeTypeMap ? static_cast<const Map&>(node).GetSemanticTagNV() : SemanticTagDefault;
    }

    int CompareSizes(Composite& mine, Composite& theirs) const {
        if constexpr (!kCountsAll) {
            return mine.GetSize(t_) - theirs.GetSize(t_);
        } else if (mine.GetType() == NodeTypeVector) {
            return CountElements(mine) - CountElements(theirs);
        } else {
            return CompareWholeSizes(MapChildren(static_cast<Map&>(mine)), MapChildren(static_cast<Map&>(theirs)));
        }
    }
    static int CountElements(Composite& vector) noexcept {
        return static_cast<int>(NodeAccess::GetChildren(static_cast<Vector&>(vector)).size());
    }
    // Slots that are taken on both sides are most of them, and looked at together.
    static int CompareWholeSizes(const MapChildren& mine, const MapChildren& theirs) noexcept {
        int difference = CountOverflow(mine) - CountOverflow(theirs);
        const int common = (std::min)(mine.slotCount, theirs.slotCount);
        for (int i = 0; i < common; ++i) {
            difference += (mine.slots[i] != nullptr ? 1 : 0) - (theirs.slots[i] != nullptr ? 1 : 0);
        }
        return difference + CountSlots(mine, common) - CountSlots(theirs, common);
    }
    static int CountSlots(const MapChildren& children, int from) noexcept {
        int count = 0;
        for (int i = from; i < children.slotCount; ++i) {
            count += children.slots[i] != nullptr ? 1 : 0;
        }
        return count;
    }
    static int CountOverflow(const MapChildren& children) noexcept {
        return children.overflow != nullptr ? static_cast<int>(children.overflow->size()) : 0;
    }

    Node* TakeCounted(ChildCursor& children) const {
        return children.FindNext([this](Node* child) { return IsCounted(*child); });
    }

    /// Where temporalities above the scale hide more of the other side than was counted, its last element stands in, and
    /// after it comes null, which Compare refuses.
    Node* TakeTheirElement(ChildCursor& elements) const {
        Node* last = nullptr;
        Node* const counted = elements.FindNext([&](Node* element) {
            last = element;
            return IsCounted(*element);
        });
        return counted != nullptr ? counted : last;
    }

    int GoOnInVector(Compared& compared) {
        ChildCursor& mine = compared.myChildren;
        ChildCursor& theirs = compared.theirChildren;
        while (Node* const left = TakeCounted(mine)) {
            Node* const right = TakeTheirElement(theirs);
            if (IsCompositeType(left->GetType())) {
                return Begin(static_cast<Composite&>(*left), right);
            }
            if (const int order = CompareLeaves(*left, right)) {
                return order;
            }
            if (const int order = CompareRun<false>(left->GetType(), mine, theirs)) {
                return order;
            }
        }
        path_.Pop();
        return 0;
    }

    /// Compares children of this kind as long as they come, all of them counted; those of maps by their indexes first.
    template <bool kOfMaps>
    int CompareRun(NodeType type, ChildCursor& mine, ChildCursor& theirs) const {
        return ForPlainKind(
            type, [&](auto kind) { return this->CompareRunOf<kOfMaps, typename decltype(kind)::Leaf>(mine, theirs); },
            [] { return 0; });
    }

    template <bool kOfMaps, class T>
    int CompareRunOf(ChildCursor& mine, ChildCursor& theirs) const {
        const auto isMeant = [this](Node* leaf) {
            return (!kOfMaps || leaf != nullptr) && leaf->GetType() == T::StaticType &&
                   (kCountsAll || NodeAccess::GetDerivedOfLeaf(*leaf) <= t_);
        };
        return ChildCursor::ForEachPair(mine, theirs, isMeant, [](Node* left, Node* right) {
            const int order = kOfMaps ? left->GetIndex() - right->GetIndex() : 0;
            return order != 0 ? order : CompareValues(static_cast<T&>(*left), static_cast<T&>(*right));
        });
    }

    int GoOnInMap(Compared& compared) {
        ChildCursor& mine = compared.myChildren;
        ChildCursor& theirs = compared.theirChildren;
        while (Node* const right = theirs.Next()) {
            switch (IsShown(*right)) {
                case Shown::No: continue;
                case Shown::ItsChildren: return CompareAsShown();
                case Shown::Itself: break;
            }
            Node* const left = TakeCounted(mine);
            if (left == nullptr) {
                return -1;
            }
            if (const int order = left->GetIndex() - right->GetIndex()) {
                return order;
            }
            if (IsCompositeType(left->GetType())) {
                return Begin(static_cast<Composite&>(*left), right);
            }
            if (const int order = CompareLeaves(*left, right)) {
                return order;
            }
            if constexpr (kCountsAll) {
                if (const int order = CompareRun<true>(left->GetType(), mine, theirs)) {
                    return order;
                }
            }
        }
        path_.Pop();
        return 0;
    }

    enum class Shown { No, Itself, ItsChildren };

    /// What a walk over their map shows of a child of it.
    Shown IsShown(const Node& child) const noexcept {
        if constexpr (kCountsAll) {
            return Shown::Itself;
        }
        const bool isSeen = NodeAccess::Sees(seen_, child.GetTemporality());
        if (!IsCompositeType(child.GetType())) {
            return isSeen ? Shown::Itself : Shown::No;
        }
        if (!MayEnter(static_cast<const Composite&>(child), seen_)) {
            return Shown::No;
        }
        return isSeen || child.GetType() == NodeTypeMap ? Shown::Itself : Shown::ItsChildren;
    }

    /// Begins the present pair of maps again, and compares what a walk shows: a vector that is not seen itself, but may be entered,
    /// is replaced by its elements there.
    int CompareAsShown() {
        const Compared pair = path_.Top();
        path_.Pop();
        MapCompareVisitor visitor(MapChildren(static_cast<Map&>(pair.mine)), t_);
        pair.theirs.Iterate(&visitor, SemanticTagNone, GetCompareFlags(t_));
        return visitor.GetResult();
    }

    /// A counted leaf of mine.
    int CompareLeaves(Node& mine, Node* theirs) const {
        const bool areAlike = theirs != nullptr && theirs->GetType() == mine.GetType();
        return ForScalarKind(
            areAlike ? mine.GetType() : NodeTypeMap,
            [&](auto kind) {
                using Leaf = typename decltype(kind)::Leaf;
                return CompareValues(static_cast<const Leaf&>(mine), static_cast<const Leaf&>(*theirs));
            },
            [&] { return mine.Compare(theirs, t_, false); });
    }

    EnumOrvGenericsTemporality t_;
    int seen_;
    FrameStack<Compared> path_;
};

/// True when it is known that the node, and everything below it, counts and that a walk shows it.
bool CountsAll(const Node& node, EnumOrvGenericsTemporality t) noexcept {
    const TreeImpl& tree = *NodeAccess::GetTree(node);
    const bool isKnown =
        (t >= TemporalityPersistent && tree.IsAllPersistent()) || (t >= TemporalityTemporary && tree.IsAllOnScale());
    return isKnown && !NodeAccess::IsFrozen(node);
}

}  // namespace

int CompareComposites(Composite& mine, Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    const int order = mine.Node::Compare(other, t, recalc);
    if (order != 0) {
        return order;
    }
    const bool countsAll = CountsAll(mine, t) && CountsAll(*other, t);
    return countsAll ? Comparer<true>(t).Run(mine, other) : Comparer<false>(t).Run(mine, other);
}

int Vector::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareComposites(*this, other, t, recalc);
}

}  // namespace KivGenerics
