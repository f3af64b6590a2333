#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/String.h>
#include <KivGenerics/WalkNodes.h>

#include "InstructionCounts.h"
#include "Shapes.h"

using namespace KivGenerics;

namespace {

struct Form {
    const char* name;
    Shape fill;
    Shape fillTyped;
    Shape fillInRuns;
    std::size_t size;
};

// The smallest that the nested shape makes is one chain.
constexpr Form kForms[] = {
    {"numbers", FillNumbers, FillNumbersTyped, FillNumbersInRuns, kNodesOfTree},
    {"records", FillRecords, FillRecordsTyped, FillRecordsInRuns, kNodesOfTree},
    {"sparse", FillSparse, FillSparseTyped, FillSparseInRuns, kNodesOfTree},
    {"nested", FillNested, FillNestedTyped, FillNestedInRuns, 2'500},
};

/// A visitor that is known when compiling.
struct Sum {
    void operator()(const Boolean& leaf) { sum += leaf.Get() ? 1 : 0; }
    void operator()(const Double& leaf) { sum += static_cast<std::int64_t>(leaf.Get()); }
    void operator()(const Integer& leaf) { sum += leaf.Get(); }
    void operator()(const Integer64& leaf) { sum += leaf.Get(); }
    void operator()(const String& leaf) { sum += leaf.GetLength(); }
    void operator()(const Node&) {}

    std::int64_t sum = 0;
};

void WalkInline(Input& input) {
    Keep(WalkNodes(input.tree->GetRoot(), Sum()).sum);
}

std::function<void(Input&)> Filling(Shape fill, std::size_t size) {
    return [fill, size](Input& input) {
        input.tree = NewTree();
        fill(*input.tree, size);
    };
}

void ListChanges(std::vector<Count>& counts, const Form& form, const std::function<std::size_t()>& getUnits) {
    const auto prepare = Filling(form.fill, form.size);
    const auto withCopy = [prepare](Input& input) {
        prepare(input);
        input.other = NewTree();
        input.other->CopyFromTree(input.tree.Get());
    };
    // The walk is done only where a temporality has changed since the last one.
    const auto stale = [prepare](Input& input) {
        prepare(input);
        input.tree->UpdateDerivedTemporality();
        input.tree->GetRoot()->SetTemporality(TemporalityTransient);
    };
    counts.push_back({"merge", form.name, getUnits, withCopy,
                      [](Input& input) { Require(input.tree->GetRoot()->MergeWith(input.other->GetRoot(), false)); }});
    counts.push_back(
        {"update", form.name, getUnits, stale, [](Input& input) { input.tree->UpdateDerivedTemporality(); }});
    counts.push_back({"clear", form.name, getUnits, prepare, [](Input& input) { input.tree->RemoveRoot(); }});
    counts.push_back({"release", form.name, getUnits, prepare, [](Input& input) { input.tree.Reset(); }});
}

}  // namespace

std::vector<Count> ListTreeCounts() {
    std::vector<Count> counts;
    const auto prepareNothing = [](Input&) {};
    for (const Form& form : kForms) {
        const auto fill = Filling(form.fill, form.size);
        const auto getUnits = [fill] {
            Input input;
            fill(input);
            return CountNodes(*input.tree);
        };
        counts.push_back({"build", form.name, getUnits, prepareNothing, fill});
        counts.push_back({"build-typed", form.name, getUnits, prepareNothing, Filling(form.fillTyped, form.size)});
        counts.push_back({"build-runs", form.name, getUnits, prepareNothing, Filling(form.fillInRuns, form.size)});
        ListLookupCounts(counts, form.name, fill);
        ListCommonCounts(counts, form.name, fill, getUnits);
        counts.push_back({"walk-inline", form.name, getUnits, fill, WalkInline});
        ListChanges(counts, form, getUnits);
    }
    return counts;
}
