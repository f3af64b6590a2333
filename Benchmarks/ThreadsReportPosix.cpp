// How much faster two threads with a forest each are than one: twice, unless they wait for each other. Beside it stands what
// the machine gives to two threads that share nothing but the processor. `ThreadsReport --check` asserts 1.9 times.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <thread>
#include <vector>

#include <KivGenerics/Composite.h>
#include <KivGenerics/Tree.h>

#include "Shapes.h"
#include "WordArchive.h"

using namespace KivGenerics;

namespace {

constexpr double kLeastGain = 1.9;
constexpr int kTriesInRow = 20;
// A work is done when this many rows have found no better try by a hundredth: with 0.16 s a row, five seconds. Another machine on the
// same processors may disturb every try of a second.
constexpr int kRowsWithoutGain = 30;
constexpr int kMostRows = 400;
constexpr double kGain = 0.99;
// Long enough that starting together does not matter; so short that a try finds both processors undisturbed, and that what
// both forests of "reuse nodes" grow to, 25 MiB each, fits into the spare memory of the process: one forest must not get all
// of its memory warm while two have to share.
constexpr double kSecondsOfTry = 0.004;
// Small enough that both forests stay in the caches of their processors, which they would otherwise share.
constexpr std::size_t kNodes = 2000;

KivBase::ReturnPtrI<Tree> NewTree() {
    return CreateGenericTree(EnumOrvObjectType(55));
}

/// What a host does all day, in a forest of its own. Its archive keeps its memory: an array that grows anew every round takes new
/// pages from the system, for which the threads of a process wait for each other.
void UseForest(int rounds) {
    WordWriteArchive saved;
    for (int round = 0; round < rounds; ++round) {
        const auto tree = NewTree();
        FillRecords(*tree, kNodes);
        tree->UpdateDerivedTemporality();
        const auto copy = NewTree();
        copy->CopyFromTree(tree.Get());
        copy->GetRoot()->Compare(tree->GetRoot(), TemporalityTemporary, true);
        saved.words.clear();
        tree->SaveToArchive(&saved, true, 255);
        WordReadArchive source(saved.words);
        const auto loaded = NewTree();
        loaded->LoadFromArchive(&source);
        loaded->GetRoot()->MergeWith(tree->GetRoot(), false);
        loaded->ClearTemporaryNodes();
    }
}

/// Nodes that come and go: their memory is handed out again.
void ReuseNodes(int rounds) {
    const auto tree = NewTree();
    for (int round = 0; round < rounds; ++round) {
        tree->RemoveRoot();
        FillRecords(*tree, kNodes);
    }
}

/// Forests that are made for a moment.
void MakeForests(int rounds) {
    for (int round = 0; round < 100 * rounds; ++round) {
        NewTree()->NewRoot(NodeTypeMap);
    }
}

/// Handles on a tree of the thread's own.
void TakeHandles(int rounds) {
    const auto tree = NewTree();
    Node* const root = tree->NewRoot(NodeTypeMap);
    for (int i = 0; i < 20000 * rounds; ++i) {
        const auto handle = root->GetTree();
    }
}

/// What needs nothing but a processor.
void Calculate(int rounds) {
    static std::atomic<std::uint64_t> result{0};
    std::uint64_t value = 1;
    for (int i = 0; i < 300'000 * rounds; ++i) {
        value = value * 6364136223846793005U + (value >> 33);
    }
    result.store(value, std::memory_order_relaxed);
}

struct Work {
    const char* name;
    void (*run)(int rounds);
    bool isChecked;
};

constexpr Work kWorks[] = {
    {"calculate", Calculate, false},           {"use a forest", UseForest, true},   {"reuse nodes", ReuseNodes, true},
    {"make small forests", MakeForests, true}, {"take handles", TakeHandles, true},
};

/// Waits until so many have arrived in all.
void Meet(std::atomic<int>& arrived, int all) {
    ++arrived;
    while (arrived < all) {
        std::this_thread::yield();
    }
}

/// The least seconds that so many threads take for the same work each, which they start together, in a row of tries: systems need
/// a moment until every thread has a processor of its own.
double SecondsOf(const Work& work, int threads, int rounds) {
    std::atomic<int> arrived{0};
    double least = std::numeric_limits<double>::max();
    const auto run = [&](bool measures) {
        for (int meetings = 0; meetings < 2 * kTriesInRow; meetings += 2) {
            Meet(arrived, (meetings + 1) * threads);
            const auto start = std::chrono::steady_clock::now();
            work.run(rounds);
            Meet(arrived, (meetings + 2) * threads);
            const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
            if (measures) {
                least = std::min(least, taken.count());
            }
        }
    };
    std::vector<std::thread> running;
    running.reserve(static_cast<std::size_t>(threads));
    for (int i = 0; i < threads; ++i) {
        running.emplace_back(run, i == 0);
    }
    for (std::thread& thread : running) {
        thread.join();
    }
    return least;
}

/// As many rounds as a try takes.
int RoundsFor(const Work& work) {
    int rounds = 1;
    while (SecondsOf(work, 1, rounds) < kSecondsOfTry) {
        rounds *= 2;
    }
    return rounds;
}

/// The best try so far, and whether it has become better by more than a hundredth.
class BestTry {
public:
    bool Add(double seconds) {
        const bool isGain = seconds < kGain * best_;
        best_ = std::min(best_, seconds);
        return isGain;
    }
    double Get() const { return best_; }

private:
    double best_ = std::numeric_limits<double>::max();
};

/// The throughput of two threads by that of one, each in its best try: what disturbs makes it slower alone.
double GainOf(const Work& work) {
    const int rounds = RoundsFor(work);
    BestTry one;
    BestTry two;
    for (int row = 0, since = 0; row < kMostRows && since < kRowsWithoutGain; ++row) {
        const bool isBetter = one.Add(SecondsOf(work, 1, rounds));
        since = two.Add(SecondsOf(work, 2, rounds)) || isBetter ? 0 : since + 1;
    }
    return 2 * one.Get() / two.Get();
}

}  // namespace

int main(int count, char** words) {
    const bool checks = count == 2 && std::strcmp(words[1], "--check") == 0;
    int broken = 0;
    std::printf("Throughput of two threads, by that of one\n");
    for (const Work& work : kWorks) {
        const double gain = GainOf(work);
        const bool isBroken = work.isChecked && gain < kLeastGain;
        broken += isBroken ? 1 : 0;
        std::printf("%-20s %5.2f%s\n", work.name, gain, isBroken ? "   less than 1.9" : "");
        std::fflush(stdout);
    }
    return checks && broken > 0 ? 1 : 0;
}
