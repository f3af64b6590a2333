#include "CostCheck.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <vector>

#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Iterator.h>
#include <KivGenerics/Node.h>
#include <KivGenerics/VisitorNode.h>

#include "Shapes.h"
#include "WordArchive.h"

using namespace KivGenerics;

namespace {

constexpr std::size_t kSmallTree = 10'000;
constexpr std::size_t kAllNodes = 10'000'000;
constexpr double kLimit = 1.5;
// The breadth-first iterator comes to the nodes in another order than they lie in memory: in a small tree the processor's
// cache makes up for it, in a large one nothing does. Where thousands of chains lie behind each other, as in the nested
// shape, each step misses the cache: there the figure is shown and not limited.
constexpr double kBreadthFirstLimit = 4.0;
constexpr double kShownOnly = 1e9;
constexpr int kRounds = 2;
constexpr int kMostRounds = 16;  // what a disturbed machine gets

double GetCpuSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

class Sum final : public VisitorNode {
public:
    VisitCode VisitNode(Node* node, bool, NodeType type) override {
        sum += static_cast<std::size_t>(type) + static_cast<std::size_t>(node->GetIndex());
        return VisitContinue;
    }
    std::size_t sum = 0;
};

using Trees = std::vector<KivBase::ReturnPtrI<Tree>>;
using Archives = std::vector<std::vector<std::uint32_t>>;

/// The same number of nodes in all, in trees of one size. What small trees would gain by staying in the processor's cache
/// they lose by their number: both sides touch the same amount of memory, and what remains is the cost of the tree's size.
struct Forests {
    Trees trees;
    Trees copies;
    Archives archives;
};

struct Step {
    const char* name;
    double limit;
    std::function<void(Forests&)> run;
};

// A step that is run and not measured.
constexpr double kNotMeasured = 0.0;

void Save(Tree& tree, std::vector<std::uint32_t>& words) {
    WordWriteArchive archive;
    archive.words.swap(words);
    archive.words.clear();
    if (tree.SaveToArchive(&archive, true, 255) < 0) {
        std::abort();
    }
    words.swap(archive.words);
}

void Load(Tree& tree, const std::vector<std::uint32_t>& words) {
    WordReadArchive archive(words);
    if (tree.LoadFromArchive(&archive) < 0) {
        std::abort();
    }
}

std::vector<Step> MakeSteps(Shape fill, std::size_t treeSize) {
    const auto forEach = [](auto use) {
        return [use](Forests& forests) {
            for (std::size_t i = 0; i < forests.trees.size(); ++i) {
                use(*forests.trees[i], forests, i);
            }
        };
    };
    return {
        {"build", kLimit, forEach([fill, treeSize](Tree& tree, Forests&, std::size_t) { fill(tree, treeSize); })},
        {"walk", kLimit, forEach([](Tree& tree, Forests&, std::size_t) {
             Sum sum;
             tree.GetRoot()->Iterate(&sum, SemanticTagNone, 0);
         })},
        {"breadth-first", fill == FillNested ? kShownOnly : kBreadthFirstLimit,
         forEach([](Tree& tree, Forests&, std::size_t) {
             auto iterator = tree.GetRoot()->GetIterator();
             while (iterator->Next() != nullptr) {
             }
         })},
        {"update", kLimit, forEach([](Tree& tree, Forests&, std::size_t) { tree.UpdateDerivedTemporality(); })},
        {"copy", kLimit,
         forEach([](Tree& tree, Forests& forests, std::size_t i) { forests.copies[i]->CopyFromTree(&tree); })},
        {"compare", kLimit, forEach([](Tree& tree, Forests& forests, std::size_t i) {
             if (tree.GetRoot()->Compare(forests.copies[i]->GetRoot(), TemporalityTemporary, true) != 0) {
                 std::abort();
             }
         })},
        {"merge", kLimit, forEach([](Tree& tree, Forests& forests, std::size_t i) {
             if (!tree.GetRoot()->MergeWith(forests.copies[i]->GetRoot(), false)) {
                 std::abort();
             }
         })},
        // The archive's own memory is taken from the system before it is measured.
        {"first save", kNotMeasured,
         forEach([](Tree& tree, Forests& forests, std::size_t i) { Save(tree, forests.archives[i]); })},
        {"save", kLimit, forEach([](Tree& tree, Forests& forests, std::size_t i) { Save(tree, forests.archives[i]); })},
        {"clear temporary", kLimit, forEach([](Tree& tree, Forests&, std::size_t) { tree.ClearTemporaryNodes(); })},
        {"clear", kLimit, forEach([](Tree& tree, Forests& forests, std::size_t i) {
             tree.RemoveRoot();
             forests.copies[i]->RemoveRoot();
         })},
        {"load", kLimit, forEach([](Tree& tree, Forests& forests, std::size_t i) { Load(tree, forests.archives[i]); })},
    };
}

std::vector<double> Measure(Shape fill, std::size_t treeSize) {
    const std::size_t treeCount = kAllNodes / treeSize;
    Forests forests;
    forests.archives.resize(treeCount);
    for (std::size_t i = 0; i < treeCount; ++i) {
        forests.trees.push_back(CreateGenericTree(EnumOrvObjectType(55)));
        forests.copies.push_back(CreateGenericTree(EnumOrvObjectType(55)));
    }
    std::vector<double> seconds;
    for (const Step& step : MakeSteps(fill, treeSize)) {
        const double start = GetCpuSeconds();
        step.run(forests);
        seconds.push_back(GetCpuSeconds() - start);
    }
    return seconds;
}

double GetNanoseconds(double seconds) {
    return seconds * 1e9 / static_cast<double>(kAllNodes);
}

/// Below a nanosecond a node the clock's steps and the 1,000 calls of the small side are all there is to see.
double GetRatio(double small, double large) {
    return (GetNanoseconds(large) + 0.5) / (GetNanoseconds(small) + 0.5);
}

void KeepBest(std::vector<double>& best, const std::vector<double>& seconds) {
    best = best.empty() ? seconds : best;
    for (std::size_t i = 0; i < best.size(); ++i) {
        best[i] = (std::min)(best[i], seconds[i]);
    }
}

/// The best of several rounds each, the two sizes in turn, so that a disturbance of the machine meets both. Where a ratio is
/// too high, more rounds tell a disturbance from a cost that is really there: the latter does not go away.
int CheckShape(const char* name, Shape fill) {
    const std::vector<Step> steps = MakeSteps(fill, kSmallTree);
    std::vector<double> small;
    std::vector<double> large;
    int broken = 0;
    for (int round = 1; round <= kRounds || (broken > 0 && round <= kMostRounds); ++round) {
        KeepBest(small, Measure(fill, kSmallTree));
        KeepBest(large, Measure(fill, kAllNodes));
        broken = 0;
        for (std::size_t i = 0; i < steps.size(); ++i) {
            broken += steps[i].limit != kNotMeasured && GetRatio(small[i], large[i]) > steps[i].limit ? 1 : 0;
        }
    }
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (steps[i].limit != kNotMeasured) {
            const double ratio = GetRatio(small[i], large[i]);
            std::printf("%-10s %-16s %8.1f %8.1f %8.2f%s\n", name, steps[i].name, GetNanoseconds(small[i]),
                        GetNanoseconds(large[i]), ratio, ratio > steps[i].limit ? "  TOO HIGH" : "");
        }
    }
    std::fflush(stdout);
    return broken;
}

}  // namespace

int CheckCosts() {
    std::printf(
        "Cost of a node in ns of CPU time, %zu nodes in all: in trees of %zu, in one tree, and the ratio, at most %.1f "
        "(breadth-first %.1f)\n",
        kAllNodes, kSmallTree, kLimit, kBreadthFirstLimit);
    return CheckShape("numbers", FillNumbers) + CheckShape("records", FillRecords) + CheckShape("sparse", FillSparse) +
           CheckShape("nested", FillNested);
}
