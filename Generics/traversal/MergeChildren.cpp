// Merging of composites: child by child, however deep.

#include <KivGenerics/IterateFlags.h>

#include "core/FrameStack.h"
#include "core/NextChild.h"
#include "core/NodeAccess.h"
#include "traversal/CopyVisitors.h"
#include "traversal/WalkFlags.h"

namespace KivGenerics {
namespace {

/// A composite that is being merged into another. Its children are found by their places: merging a composite with what stands
/// below it may add to them.
struct Merged {
    Merged(Composite& merged, Composite& from) noexcept : target(merged), other(from) {}

    Composite& target;
    Composite& other;
    int position = 0;
};

/// The merge of two composites before their children: answers whether these are to be merged, too.
bool MergeComposite(Node& target, Node& other, bool flag, bool& agreed) {
    agreed = NodeAccess::MergeWithChecks(target, &other, flag) && agreed;
    const bool sameTag = target.GetSemanticTag() == other.GetSemanticTag();
    agreed = sameTag && agreed;
    return sameTag;
}

}  // namespace

/// The nodes on the way down, and what came of the merge so far.
class Composite::Merger {
public:
    explicit Merger(bool flag) noexcept : flag_(flag) {}

    bool Run(Composite& target, Composite& other) {
        path_.Push(target, other);
        while (!path_.IsEmpty()) {
            Merged& merged = path_.Top();
            Node* const theirs = TakeNextChild(merged.other, merged.position);
            if (theirs == nullptr || !Merge(merged.target, *theirs)) {
                path_.Pop();
            }
        }
        return agreed_;
    }

private:
    /// False when there was no node to be had: the rest of the composite is left out.
    bool Merge(Composite& target, Node& theirs) {
        const bool isComposite = IsCompositeType(theirs.GetType());
        if (NodeAccess::GetSeeBits(theirs.GetTemporality()) == 0) {
            return !isComposite || MergeHidden(target, theirs);
        }
        Node* const mine = target.Get(theirs.GetIndex());
        if (mine == nullptr) {
            return CopyVisitor(&target).VisitNode(&theirs, false, theirs.GetType()) != VisitStop;
        }
        if (!IsCompositeType(mine->GetType())) {
            agreed_ = mine->MergeWith(&theirs, flag_) && agreed_;
        } else if (MergeComposite(*mine, theirs, flag_, agreed_)) {
            path_.Push(static_cast<Composite&>(*mine), static_cast<Composite&>(theirs));
        }
        return true;
    }

    /// What is hidden is left out, but not what stands below it.
    bool MergeHidden(Composite& target, Node& hidden) {
        MergeVisitor visitor(&target, flag_);
        const VisitCode code = NodeAccess::IterateInner(hidden, &visitor, SemanticTagNone, kFlagsOfAllBelow);
        agreed_ = visitor.GetResult() && agreed_;
        return code != VisitStop;
    }

    FrameStack<Merged> path_;
    bool flag_;
    bool agreed_ = true;
};

bool Composite::MergeWithComposite(Composite* other, bool flag) {
    return Merger(flag).Run(*this, *other);
}

}  // namespace KivGenerics
