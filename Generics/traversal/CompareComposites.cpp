// Comparing composites: how many children count, then the counted children one by one, however deep.

#include "core/CompareComposites.h"

#include <KivBase/Guid.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>

#include "core/ChildCursor.h"
#include "core/FrameStack.h"
#include "core/Raise.h"
#include "core/Texts.h"
#include "traversal/CompositeWalk.h"
#include "traversal/MapCompareVisitor.h"

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

using Elements = std::vector<Node*, KivBase::Allocator<Node*>>;

/// Two composites that are being compared.
struct Compared {
    Compared(Composite& myComposite, Composite& theirComposite) noexcept
        : mine(myComposite), theirs(theirComposite), myChildren(mine), theirChildren(theirs) {}

    Composite& mine;
    Composite& theirs;
    ChildCursor myChildren;  // of maps
    ChildCursor theirChildren;
    std::size_t myNext = 0;  // of vectors
    std::size_t theirNext = 0;
};

/// Two leaves of the same kind, both counted.
template <class T>
int CompareValues(Node& mine, Node& theirs) {
    const auto& left = NodeAccess::GetValue(static_cast<T&>(mine));
    const auto& right = NodeAccess::GetValue(static_cast<T&>(theirs));
    return left < right ? -1 : (right < left ? 1 : 0);
}

/// The nodes on the way down. Every step answers what decides: 0 as long as nothing does.
class Comparer {
public:
    explicit Comparer(EnumOrvGenericsTemporality t) noexcept : t_(t), seen_(GetSeenFlags(t)) {}

    int Run(Composite& mine, Node* theirs, bool recalc) {
        int order = Begin(mine, theirs, recalc);
        while (order == 0 && !path_.IsEmpty()) {
            Compared& compared = path_.Top();
            order = compared.mine.GetType() == NodeTypeVector ? GoOnInVector(compared) : GoOnInMap(compared);
        }
        return order;
    }

private:
    bool IsCounted(Node& node) const {
        return (IsCompositeType(node.GetType()) ? NodeAccess::GetDerived(node) : NodeAccess::GetDerivedOfLeaf(node)) <=
               t_;
    }
    int Begin(Composite& mine, Node* other, bool recalc) {
        if (other == nullptr) {
            Raise(Texts::NullCompare);
        }
        if (recalc || other->GetType() != mine.GetType() || GetTag(*other) != GetTag(mine)) {
            const int order = mine.Node::Compare(other, t_, recalc);
            if (order != 0) {
                return order;
            }
        }
        if (!IsCounted(mine)) {
            return 0;
        }
        auto* const theirs = static_cast<Composite*>(other);
        const int sizes = GetSize(mine) - GetSize(*theirs);
        // Their map is walked over, and a walk does not enter what is outside its temporalities.
        if (sizes == 0 && (mine.GetType() == NodeTypeVector || MayEnter(*theirs, seen_))) {
            path_.Push(mine, *theirs);
        }
        return sizes;
    }

    /// GetSemanticTag without the virtual call.
    static SemanticTag GetTag(const Node& node) noexcept {
        return node.GetType() == NodeTypeMap ? static_cast<const Map&>(node).GetSemanticTagNV() : SemanticTagDefault;
    }

    int GetSize(Composite& composite) const {
        return composite.GetType() == NodeTypeVector ? static_cast<Vector&>(composite).GetSize(t_)
                                                     : GetMapSize(MapChildren(static_cast<Map&>(composite)), t_);
    }

    Node* TakeCounted(ChildCursor& children) const {
        Node* child = children.Next();
        while (child != nullptr && !IsCounted(*child)) {
            child = children.Next();
        }
        return child;
    }

    Node* TakeMyElement(const Elements& elements, std::size_t& next) const {
        while (next < elements.size()) {
            Node* const mine = elements[next++];
            if (IsCounted(*mine)) {
                return mine;
            }
        }
        return nullptr;
    }

    /// Where temporalities above the scale hide more of the other side than was counted, its last element stands in, and
    /// after it comes null, which Compare refuses.
    Node* TakeTheirElement(const Elements& elements, std::size_t& next) const {
        while (next < elements.size()) {
            Node* const theirs = elements[next++];
            if (IsCounted(*theirs) || next == elements.size()) {
                return theirs;
            }
        }
        return nullptr;
    }

    int GoOnInVector(Compared& compared) {
        const Elements& mine = NodeAccess::GetChildren(static_cast<Vector&>(compared.mine));
        const Elements& theirs = NodeAccess::GetChildren(static_cast<Vector&>(compared.theirs));
        for (;;) {
            if (const int order = CompareRun(mine, theirs, compared)) {
                return order;
            }
            Node* const left = TakeMyElement(mine, compared.myNext);
            if (left == nullptr) {
                path_.Pop();
                return 0;
            }
            Node* const right = TakeTheirElement(theirs, compared.theirNext);
            if (IsCompositeType(left->GetType())) {
                return Begin(static_cast<Composite&>(*left), right, false);
            }
            if (const int order = CompareLeaves(*left, right)) {
                return order;
            }
        }
    }

    /// Compares elements of one kind as long as they come, all of them counted.
    int CompareRun(const Elements& mine, const Elements& theirs, Compared& compared) const {
        if (compared.myNext >= mine.size()) {
            return 0;
        }
        switch (mine[compared.myNext]->GetType()) {
            case NodeTypeInteger: return CompareRunOf<Integer>(mine, theirs, compared);
            case NodeTypeDouble: return CompareRunOf<Double>(mine, theirs, compared);
            case NodeTypeBoolean: return CompareRunOf<Boolean>(mine, theirs, compared);
            case NodeTypeInteger64: return CompareRunOf<Integer64>(mine, theirs, compared);
            case NodeTypeGlobalID:
            case NodeTypeString:
            case NodeTypeVector:
            case NodeTypeMap:
            case NodeTypeIntegerSet:
            case NodeTypeIdSet:
            case NodeTypeStringSet:
            case NodeTypeDoubleSet: break;
        }
        return 0;
    }

    template <class T>
    int CompareRunOf(const Elements& mine, const Elements& theirs, Compared& compared) const {
        std::size_t left = compared.myNext;
        std::size_t right = compared.theirNext;
        int order = 0;
        for (; order == 0 && left < mine.size() && right < theirs.size(); ++left, ++right) {
            Node& a = *mine[left];
            Node& b = *theirs[right];
            if (a.GetType() != T::StaticType || b.GetType() != T::StaticType || NodeAccess::GetDerivedOfLeaf(a) > t_ ||
                NodeAccess::GetDerivedOfLeaf(b) > t_) {
                break;
            }
            order = CompareValues<T>(a, b);
        }
        compared.myNext = left;
        compared.theirNext = right;
        return order;
    }

    int GoOnInMap(Compared& compared) {
        ChildCursor mine = compared.myChildren;
        ChildCursor theirs = compared.theirChildren;
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
                compared.myChildren = mine;
                compared.theirChildren = theirs;
                return Begin(static_cast<Composite&>(*left), right, false);
            }
            if (const int order = CompareLeaves(*left, right)) {
                return order;
            }
        }
        path_.Pop();
        return 0;
    }

    enum class Shown { No, Itself, ItsChildren };

    /// What a walk over their map shows of a child of it.
    Shown IsShown(const Node& child) const noexcept {
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

    int CompareLeaves(Node& mine, Node* theirs) const {
        if (theirs != nullptr && theirs->GetType() == mine.GetType()) {
            switch (mine.GetType()) {
                case NodeTypeInteger: return CompareValues<Integer>(mine, *theirs);
                case NodeTypeDouble: return CompareValues<Double>(mine, *theirs);
                case NodeTypeBoolean: return CompareValues<Boolean>(mine, *theirs);
                case NodeTypeInteger64: return CompareValues<Integer64>(mine, *theirs);
                case NodeTypeGlobalID:
                    return KivBase::CompareGUID(static_cast<GlobalID&>(mine).Get(),
                                                static_cast<GlobalID*>(theirs)->Get());
                case NodeTypeString:
                case NodeTypeVector:
                case NodeTypeMap:
                case NodeTypeIntegerSet:
                case NodeTypeIdSet:
                case NodeTypeStringSet:
                case NodeTypeDoubleSet: break;
            }
        }
        return mine.Compare(theirs, t_, false);
    }

    EnumOrvGenericsTemporality t_;
    int seen_;
    FrameStack<Compared> path_;
};

}  // namespace

int CompareComposites(Composite& mine, Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return Comparer(t).Run(mine, other, recalc);
}

int Vector::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareComposites(*this, other, t, recalc);
}

}  // namespace KivGenerics
