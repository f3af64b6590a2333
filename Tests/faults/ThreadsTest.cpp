// What hosts may do with several threads: handles from any thread, one thread a forest, forests in parallel.

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <KivGenerics/Initializer.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/NodeCast.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>

#include "faults/Documents.h"

using namespace KivGenerics;

namespace {

constexpr int kThreads = 8;

template <class Work>
void RunOnThreads(Work work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back(work, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(ThreadsTest, HandlesAreTakenAndDroppedFromAnyThread) {
    auto tree = NewDocument();
    Node* const root = tree->GetRoot();
    RunOnThreads([root](int) {
        for (int i = 0; i < 2000; ++i) {
            const auto handle = root->GetTree();
            const auto again = handle;
            ASSERT_TRUE(again);
        }
    });
    EXPECT_EQ(tree->AddRef(), 2);
    EXPECT_EQ(tree->Release(), 1);
}

TEST(ThreadsTest, TheLastHandleMayBeDroppedOnAnyThread) {
    for (int round = 0; round < 200; ++round) {
        auto tree = NewDocument();
        auto second = tree->CreateTreeInForest();
        std::thread other([handle = std::move(second)]() mutable { handle.Reset(); });
        tree.Reset();
        other.join();
    }
}

TEST(ThreadsTest, ForestsWorkInParallel) {
    std::atomic<int> sound{0};
    RunOnThreads([&sound](int thread) {
        for (int round = 0; round < 20; ++round) {
            const auto tree = NewDocument();
            node_cast<Integer>(tree->FindNodeByKey(u"0:0:"))->Set(thread);
            const auto copy = CreateGenericTree(EnumOrvObjectType(0));
            copy->CopyFromTree(tree.Get());
            const auto out = KivStorage::MemoryWriteStream::Create();
            tree->SaveToStream(out.Get(), true);
            out->Finish();
            const auto in = KivStorage::MemoryReadStream::Create(out->GetBytes().data(), out->GetBytes().size());
            const auto loaded = CreateGenericTree(EnumOrvObjectType(0));
            loaded->LoadFromStream(in.Get());
            const bool equal = copy->GetRoot()->Compare(loaded->GetRoot(), TemporalityTemporary, true) == 0;
            sound += equal && CountUnsoundNodes(*loaded) == 0 ? 1 : 0;
        }
    });
    EXPECT_EQ(sound, kThreads * 20);
}

TEST(ThreadsTest, InitializersComeAndGoOnAllThreads) {
    std::atomic<int> made{0};
    RunOnThreads([&made](int) {
        for (int i = 0; i < 2000; ++i) {
            const Initializer initializer;
            ++made;
        }
    });
    EXPECT_EQ(made, kThreads * 2000);
}

}  // namespace
