#include <KivInspect/Diff.h>

#include <KivInspect/Key.h>

#include "compare/PairWalk.h"
#include "compare/SameValue.h"

namespace KivInspect {

using namespace KivGenerics;

namespace {

/// A temporality that nothing is above.
constexpr auto NoLimit = static_cast<EnumOrvGenericsTemporality>(127);

/// Compares the pair where the walk stands; returns what changed, if anything did.
std::optional<ChangeKind> Step(const Pair& pair, const DiffOptions& options, Differences& differences,
                               DiffTotals& totals) {
    if (pair.left == nullptr || pair.right == nullptr) {
        const bool added = pair.left == nullptr;
        (added ? totals.added : totals.removed) += 1;
        return added ? ChangeKind::Added : ChangeKind::Removed;
    }
    ++totals.compared;
    differences = Compare(pair.left, pair.right, options);
    if (!differences.Any()) {
        return std::nullopt;
    }
    ++totals.changed;
    return ChangeKind::Changed;
}

DiffTotals DiffNodes(Node* left, Node* right, const DiffOptions& options, const OnChange& onChange) {
    DiffTotals totals;
    PairWalk walk(left, right, options.limit.value_or(NoLimit));
    while (walk.Next()) {
        Differences differences;
        const auto kind = Step(walk.Get(), options, differences, totals);
        if (kind) {
            const std::string key = walk.GetKey(options.names);
            if (!onChange({*kind, differences, walk.Get().left, walk.Get().right, key})) {
                break;
            }
        }
    }
    return totals;
}

}  // namespace

Differences Compare(Node* left, Node* right, const DiffOptions& options) {
    Differences differences;
    differences.temporality = !options.ignoreTemporality && left->GetTemporality() != right->GetTemporality();
    differences.kind = left->GetType() != right->GetType();
    if (!differences.kind) {
        differences.tag = !options.ignoreTag && left->GetSemanticTag() != right->GetSemanticTag();
        differences.value = !HaveSameValue(left, right, options);
    }
    return differences;
}

DiffTotals Diff(Tree* left, Tree* right, const DiffOptions& options, const OnChange& onChange) {
    if (options.limit) {
        left->UpdateDerivedTemporality();
        right->UpdateDerivedTemporality();
    }
    return DiffNodes(left->GetRoot(), right->GetRoot(), options, onChange);
}

bool AreSame(Tree* left, Tree* right, const DiffOptions& options) {
    return !Diff(left, right, options, [](const Change&) { return false; }).Any();
}

bool AreSame(Node* left, Node* right, const DiffOptions& options) {
    return !DiffNodes(left, right, options, [](const Change&) { return false; }).Any();
}

}  // namespace KivInspect
