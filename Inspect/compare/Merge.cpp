#include <KivInspect/Merge.h>

#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>

#include "compare/CopyNode.h"
#include "compare/PairWalk.h"

namespace KivInspect {

using namespace KivGenerics;

namespace {

constexpr auto EveryTemporality = static_cast<EnumOrvGenericsTemporality>(127);

class Merger {
public:
    Merger(Tree* tree, const MergeOptions& options, const OnConflict& onConflict)
        : tree_(tree), options_(options), onConflict_(onConflict) {}

    /// Merges the pair where the walk stands; the children of composites come with its next steps.
    void Step(PairWalk& walk);
    std::uint64_t GetConflicts() const noexcept { return conflicts_; }

private:
    void StepLeaf(Node* ours, Node* theirs, PairWalk& walk);
    void StepComposite(Node* ours, Node* theirs, PairWalk& walk);
    void Report(Node* ours, Node* theirs, const char* what, const PairWalk& walk);
    void Replace(Node* ours, Node* theirs);

    Tree* tree_;
    const MergeOptions& options_;
    const OnConflict& onConflict_;
    std::uint64_t conflicts_ = 0;
};

void Merger::Report(Node* ours, Node* theirs, const char* what, const PairWalk& walk) {
    const std::string key = walk.GetKey(options_.names);
    onConflict_({ours, theirs, what, key});
    ++conflicts_;
}

void Merger::Replace(Node* ours, Node* theirs) {
    if (Composite* const parent = ours->GetParent()) {
        CopyTo(parent, ours->GetIndex(), theirs);
    } else {
        CopyTo(tree_, theirs);
    }
}

/// A leaf merges itself; only what it has lost by that is put right.
void Merger::StepLeaf(Node* ours, Node* theirs, PairWalk& walk) {
    const EnumOrvGenericsTemporality own = ours->GetTemporality();
    if (ours->MergeWith(theirs, false)) {
        return;
    }
    const bool temporality =
        own != TemporalityDefault && theirs->GetTemporality() != TemporalityDefault && own != theirs->GetTemporality();
    Report(ours, theirs, temporality ? "value or temporality" : "value", walk);
    if (options_.favor == Favor::Theirs) {
        Replace(ours, theirs);
    } else if (options_.favor == Favor::Ours) {
        ours->SetTemporality(own);
    }
}

/// The rules of Node::MergeWith for what a composite has beside its children.
void Merger::StepComposite(Node* ours, Node* theirs, PairWalk& walk) {
    if (ours->GetSemanticTag() != theirs->GetSemanticTag()) {
        walk.SkipChildren();
        Report(ours, theirs, "tag", walk);
        if (options_.favor == Favor::Theirs) {
            Replace(ours, theirs);
        }
        return;
    }
    const EnumOrvGenericsTemporality own = ours->GetTemporality();
    const EnumOrvGenericsTemporality other = theirs->GetTemporality();
    if (other == own || other == TemporalityDefault) {
        return;
    }
    if (own != TemporalityDefault) {
        Report(ours, theirs, "temporality", walk);
    }
    if (own == TemporalityDefault || options_.favor != Favor::Ours) {
        ours->SetTemporality(other);
    }
}

void Merger::Step(PairWalk& walk) {
    Node* const ours = walk.Get().left;
    Node* const theirs = walk.Get().right;
    if (theirs == nullptr) {
        return;
    }
    if (ours == nullptr) {
        Composite* const parent = walk.GetLeftParent();
        if (parent != nullptr) {
            CopyTo(parent, theirs->GetIndex(), theirs);
        } else {
            CopyTo(tree_, theirs);
        }
    } else if (ours->GetType() != theirs->GetType()) {
        Report(ours, theirs, "kind", walk);
        if (options_.favor == Favor::Theirs) {
            Replace(ours, theirs);
        }
        walk.SkipChildren();
    } else if (IsCompositeType(ours->GetType())) {
        StepComposite(ours, theirs, walk);
    } else {
        StepLeaf(ours, theirs, walk);
        walk.SkipChildren();
    }
}

}  // namespace

std::uint64_t Merge(Tree* ours, Tree* theirs, const MergeOptions& options, const OnConflict& onConflict) {
    Merger merger(ours, options, onConflict);
    PairWalk walk(ours->GetRoot(), theirs->GetRoot(), EveryTemporality);
    while (walk.Next()) {
        merger.Step(walk);
    }
    return merger.GetConflicts();
}

}  // namespace KivInspect
