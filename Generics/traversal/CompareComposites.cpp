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

/// Two composites that are being compared.
struct Compared {
    Composite* mine = nullptr;
    Composite* theirs = nullptr;
    ChildCursor myChildren;
    ChildCursor theirChildren;  // of a map
    int next = 0;               // the place of their next child, of a vector
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
            order = compared.mine->GetType() == NodeTypeVector ? GoOnInVector(compared) : GoOnInMap(compared);
        }
        return order;
    }

private:
    bool IsCounted(Node& node) const { return NodeAccess::GetDerived(node) <= t_; }

    int Begin(Composite& mine, Node* other, bool recalc) {
        const int order = mine.Node::Compare(other, t_, recalc);
        if (order != 0 || !IsCounted(mine)) {
            return order;
        }
        auto* const theirs = static_cast<Composite*>(other);
        const int sizes = mine.GetSize(t_) - theirs->GetSize(t_);
        if (sizes == 0) {
            path_.Push({&mine, theirs, ChildCursor(mine), ChildCursor(*theirs), 0});
        }
        return sizes;
    }

    Node* TakeCounted(ChildCursor& children) const {
        Node* child = children.Next();
        while (child != nullptr && !IsCounted(*child)) {
            child = children.Next();
        }
        return child;
    }

    /// Where temporalities above the scale hide more of the other side than was counted, its last element stands in, and
    /// after it comes null, which Compare refuses.
    Node* TakeTheirElement(Compared& compared) const {
        auto& vector = static_cast<Vector&>(*compared.theirs);
        const auto size = static_cast<int>(NodeAccess::GetChildren(vector).size());
        Node* theirs = vector.GetNV(compared.next++);
        while (theirs != nullptr && !IsCounted(*theirs) && compared.next < size) {
            theirs = vector.GetNV(compared.next++);
        }
        return theirs;
    }

    int GoOnInVector(Compared& compared) {
        while (Node* const mine = TakeCounted(compared.myChildren)) {
            Node* const theirs = TakeTheirElement(compared);
            if (IsCompositeType(mine->GetType())) {
                return Begin(static_cast<Composite&>(*mine), theirs, false);
            }
            if (const int order = CompareLeaves(*mine, theirs)) {
                return order;
            }
        }
        path_.Pop();
        return 0;
    }

    int GoOnInMap(Compared& compared) {
        while (Node* const theirs = compared.theirChildren.Next()) {
            switch (IsShown(*theirs)) {
                case Shown::No: continue;
                case Shown::ItsChildren: return CompareAsShown();
                case Shown::Itself: break;
            }
            Node* const mine = TakeCounted(compared.myChildren);
            if (mine == nullptr) {
                return -1;
            }
            if (const int order = mine->GetIndex() - theirs->GetIndex()) {
                return order;
            }
            if (IsCompositeType(mine->GetType())) {
                return Begin(static_cast<Composite&>(*mine), theirs, false);
            }
            if (const int order = CompareLeaves(*mine, theirs)) {
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
        MapCompareVisitor visitor(MapChildren(static_cast<Map&>(*pair.mine)), t_);
        pair.theirs->Iterate(&visitor, SemanticTagNone, GetCompareFlags(t_));
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
