#include "ThreadWorks.h"

#include <atomic>
#include <cstdint>

#include <KivGenerics/Composite.h>
#include <KivGenerics/Tree.h>

#include "Shapes.h"
#include "WordArchive.h"

using namespace KivGenerics;

namespace {

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

}  // namespace

const std::array<ThreadWork, 5> kThreadWorks = {{
    {"calculate", Calculate, false},
    {"use a forest", UseForest, true},
    {"reuse nodes", ReuseNodes, true},
    {"make small forests", MakeForests, true},
    {"take handles", TakeHandles, true},
}};
