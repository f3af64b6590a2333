#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/RowVisitor.h>
#include <KivGenerics/String.h>

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

class RowSum final : public RowVisitor {
public:
    RowSum()
        : RowVisitor({NodeTypeBoolean, NodeTypeDouble, NodeTypeInteger, NodeTypeInteger64, NodeTypeString},
                     SlotRows::OfAnyKinds) {}

    VisitCode VisitBooleans(LeafRow<Boolean> row) override {
        return Add(row, [](const Boolean& leaf) { return leaf.Get() ? 1 : 0; });
    }
    VisitCode VisitDoubles(LeafRow<Double> row) override {
        return Add(row, [](const Double& leaf) { return leaf.Get(); });
    }
    VisitCode VisitIntegers(LeafRow<Integer> row) override {
        return Add(row, [](const Integer& leaf) { return leaf.Get(); });
    }
    VisitCode VisitInteger64s(LeafRow<Integer64> row) override {
        return Add(row, [](const Integer64& leaf) { return leaf.Get(); });
    }
    VisitCode VisitStrings(LeafRow<String> row) override {
        return Add(row, [](const String& leaf) { return leaf.GetLength(); });
    }
    VisitCode VisitSlots(LeafRow<Node> row) override { return Add(row, GetNumber); }

    std::int64_t sum = 0;

private:
    static double GetNumber(const Node& leaf) {
        switch (leaf.GetType()) {
            case NodeTypeBoolean: return static_cast<const Boolean&>(leaf).Get() ? 1 : 0;
            case NodeTypeDouble: return static_cast<const Double&>(leaf).Get();
            case NodeTypeInteger: return static_cast<const Integer&>(leaf).Get();
            case NodeTypeInteger64: return static_cast<double>(static_cast<const Integer64&>(leaf).Get());
            default: return static_cast<double>(static_cast<const String&>(leaf).GetLength());
        }
    }
    template <class T, class Get>
    VisitCode Add(LeafRow<T> row, Get getNumber) {
        std::int64_t sumOfRow = 0;
        for (const T* leaf : row) {
            sumOfRow += static_cast<std::int64_t>(getNumber(*leaf));
        }
        sum += sumOfRow;
        return VisitContinue;
    }
};

void WalkRows(Input& input) {
    RowSum sum;
    input.tree->GetRoot()->IterateRows(&sum, SemanticTagNone, IterateSelf | IterateChildren | IterateDeeper);
    Keep(sum.sum);
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
        counts.push_back({"walk-rows", form.name, getUnits, fill, WalkRows});
        ListChanges(counts, form, getUnits);
    }
    return counts;
}
