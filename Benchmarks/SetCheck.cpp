#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <vector>

#include <KivBase/Allocator.h>
#include <KivBase/Buffer.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>

#include "CostCheck.h"
#include "WordArchive.h"

using namespace KivGenerics;

namespace {

constexpr std::size_t kElements = 500'000;
constexpr int kBlockSize = 65536;
constexpr int kRounds = 2;
constexpr int kMostRounds = 16;  // what a disturbed machine gets

using Numbers = std::vector<std::int32_t>;
using StandardSet = std::set<std::int32_t, std::less<std::int32_t>, KivBase::Allocator<std::int32_t>>;

/// The same elements twice: in sets of the library, and in those of the standard library over a buffer of the same kind.
struct Sides {
    std::vector<Numbers> scattered;
    std::vector<std::uint32_t> sorted;  // as an archive has them
    KivBase::ReturnPtrI<Tree> tree = CreateGenericTree(EnumOrvObjectType(55));
    KivBase::ReturnPtrI<Tree> copies = CreateGenericTree(EnumOrvObjectType(55));
    KivBase::ReturnPtrI<Tree> loaded = CreateGenericTree(EnumOrvObjectType(55));
    std::vector<IntegerSet*> sets;
    std::vector<IntegerSet*> setCopies;
    std::vector<std::uint32_t> words;
    std::unique_ptr<KivBase::Buffer> buffer{KivBase::CreateBuffer(0, 0, kBlockSize, false)};
    std::vector<StandardSet> standard;
    std::vector<StandardSet> standardCopies;
    std::size_t sum = 0;
};

std::vector<IntegerSet*> AddSets(Tree& tree, std::size_t count) {
    auto* const root = node_cast<Map>(tree.NewRoot(NodeTypeMap));
    auto* const vector = node_cast<Vector>(root->NewNode(0, NodeTypeVector));
    std::vector<IntegerSet*> sets;
    sets.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        sets.push_back(node_cast<IntegerSet>(vector->Add(NodeTypeIntegerSet)));
    }
    return sets;
}

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void Fill(Sides& sides, std::size_t size) {
    std::mt19937 random(1);
    const std::size_t count = kElements / size;
    sides.sets = AddSets(*sides.tree, count);
    sides.setCopies = AddSets(*sides.copies, count);
    for (std::size_t i = 0; i < count; ++i) {
        Numbers numbers(size);
        std::generate(numbers.begin(), numbers.end(), [&] { return static_cast<std::int32_t>(random()); });
        sides.standard.emplace_back(KivBase::Allocator<std::int32_t>(sides.buffer.get()));
        sides.standardCopies.emplace_back(KivBase::Allocator<std::int32_t>(sides.buffer.get()));
        for (const std::int32_t number : numbers) {
            sides.standard[i].insert(number);
            sides.sets[i]->Add(number);
        }
        sides.sorted.insert(sides.sorted.end(), sides.standard[i].begin(), sides.standard[i].end());
        sides.scattered.push_back(std::move(numbers));
    }
    WordWriteArchive archive;
    Require(sides.tree->SaveToArchive(&archive, true, 255) >= 0);
    sides.words = archive.words;
}

struct Step {
    const char* name;
    double least;  // how many times as fast as the standard library's sets
    std::function<void(Sides&)> library;
    std::function<void(Sides&)> standard;
};

void FindInLibrary(Sides& sides) {
    for (std::size_t i = 0; i < sides.sets.size(); ++i) {
        for (const std::int32_t number : sides.scattered[i]) {
            sides.sum += sides.sets[i]->Exists(number) ? 1 : 0;
        }
    }
}
void FindInStandard(Sides& sides) {
    for (std::size_t i = 0; i < sides.standard.size(); ++i) {
        for (const std::int32_t number : sides.scattered[i]) {
            sides.sum += sides.standard[i].count(number);
        }
    }
}
void WalkLibrary(Sides& sides) {
    for (const IntegerSet* const set : sides.sets) {
        for (const std::int32_t number : set->GetElements()) {
            sides.sum += static_cast<std::uint32_t>(number);
        }
    }
}
void WalkStandard(Sides& sides) {
    for (const StandardSet& set : sides.standard) {
        for (const std::int32_t number : set) {
            sides.sum += static_cast<std::uint32_t>(number);
        }
    }
}
void CopyLibrary(Sides& sides) {
    for (std::size_t i = 0; i < sides.sets.size(); ++i) {
        sides.setCopies[i]->Populate(sides.sets[i]);
    }
}
void CopyStandard(Sides& sides) {
    for (std::size_t i = 0; i < sides.standard.size(); ++i) {
        sides.standardCopies[i] = sides.standard[i];
    }
}
void CompareLibrary(Sides& sides) {
    for (std::size_t i = 0; i < sides.sets.size(); ++i) {
        Require(sides.sets[i]->Compare(sides.setCopies[i], TemporalityTemporary, false) == 0);
    }
}
void CompareStandard(Sides& sides) {
    for (std::size_t i = 0; i < sides.standard.size(); ++i) {
        Require(sides.standard[i] == sides.standardCopies[i]);
    }
}
void LoadLibrary(Sides& sides) {
    WordReadArchive archive(sides.words);
    Require(sides.loaded->LoadFromArchive(&archive) >= 0);
}
void LoadStandard(Sides& sides) {
    WordReadArchive words(sides.sorted);
    KivCOMShared::COrvReadArchive& archive = words;  // by a virtual call for each element, as the library reads
    for (const StandardSet& set : sides.standard) {
        StandardSet& loaded = sides.standardCopies[static_cast<std::size_t>(&set - sides.standard.data())];
        loaded.clear();
        for (std::size_t left = set.size(); left > 0; --left) {
            std::int32_t number = 0;
            Require(archive.ReadLong(&number) >= 0);
            loaded.insert(loaded.end(), number);
        }
    }
}

double GetSeconds(const std::function<void(Sides&)>& run, Sides& sides) {
    const std::clock_t start = std::clock();
    run(sides);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// The best of several rounds each, the two sides in turn; where a ratio is too low, more rounds tell a disturbance of the
/// machine from a cost that is really there.
int CheckSize(std::size_t size, double leastOfCalls) {
    const std::vector<Step> steps = {{"contains", leastOfCalls, FindInLibrary, FindInStandard},
                                     {"walk", 3.0, WalkLibrary, WalkStandard},
                                     {"copy", 3.0, CopyLibrary, CopyStandard},
                                     {"compare", 3.0, CompareLibrary, CompareStandard},
                                     {"load", leastOfCalls, LoadLibrary, LoadStandard}};
    Sides sides;
    Fill(sides, size);
    std::vector<double> library(steps.size(), 1e9);
    std::vector<double> standard(steps.size(), 1e9);
    int broken = 0;
    for (int round = 1; round <= kRounds || (broken > 0 && round <= kMostRounds); ++round) {
        broken = 0;
        for (std::size_t i = 0; i < steps.size(); ++i) {
            library[i] = (std::min)(library[i], GetSeconds(steps[i].library, sides));
            standard[i] = (std::min)(standard[i], GetSeconds(steps[i].standard, sides));
            broken += standard[i] < library[i] * steps[i].least ? 1 : 0;
        }
    }
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const double scale = 1e9 / static_cast<double>(kElements);
        std::printf("%-10zu %-16s %8.1f %8.1f %8.1f %8.1f%s\n", size, steps[i].name, library[i] * scale,
                    standard[i] * scale, standard[i] / library[i], steps[i].least,
                    standard[i] < library[i] * steps[i].least ? "  TOO LOW" : "");
    }
    std::fflush(stdout);
    return broken;
}

/// Bytes of the buffer for each element of one set, added in ascending or random order.
double MeasureElement(int count, bool ascending) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(55));
    auto* const set = node_cast<IntegerSet>(tree->NewRoot(NodeTypeIntegerSet));
    const std::size_t before = tree->BufferQueryB();
    std::mt19937 random(1);
    for (int i = 0; set->Count() < count; ++i) {
        set->Add(ascending ? i : static_cast<std::int32_t>(random()));
    }
    return static_cast<double>(tree->BufferQueryB() - before) / count;
}

int CheckBytes() {
    constexpr double kMost = 8.0;
    std::printf("\nBytes of the forest's buffer for an element of an IntegerSet, at most %.1f: ascending, random\n",
                kMost);
    int broken = 0;
    for (const int count : {65, 128, 256, 1000, 10'000, 1'000'000}) {
        const double ascending = MeasureElement(count, true);
        const double random = MeasureElement(count, false);
        const bool high = (std::max)(ascending, random) > kMost;
        std::printf("%-10d %8.2f %8.2f%s\n", count, ascending, random, high ? "  TOO HIGH" : "");
        broken += high ? 1 : 0;
    }
    return broken;
}

}  // namespace

int CheckSets() {
    std::printf(
        "\nCost of an element in ns of CPU time, %zu in all, in sets of so many: IntegerSet, std::set, times, least\n",
        kElements);
    // A set of 64 lies in the cache whole; finding shares the gain that is left with the call into the library, and loading
    // with the making of the node.
    const int broken = CheckSize(64, 2.0) + CheckSize(kElements, 3.0);
    return broken + CheckBytes();
}
