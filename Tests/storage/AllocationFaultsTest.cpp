#include <atomic>

#include <KivStorage/FileReadStream.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <KivStorage/SizeArchive.h>
#include <gtest/gtest.h>

#include "storage/Heap.h"
#include "storage/Support.h"

namespace {

std::atomic<long> countdown{0};  // 0: nothing fails
std::atomic<bool> struck{false};

}  // namespace

bool StorageTest::Strikes() noexcept {
    if (countdown == 0) {
        return false;
    }
    const long left = --countdown;
    if (left > 0) {
        return false;
    }
    struck = true;
    return true;
}

namespace {

using namespace KivStorage;
using namespace StorageTest;

/// Runs `step` with the first, the second, … allocation failing, until there is none that fails; the number of failures.
template <class Step>
int FailEach(Step step) {
    for (long k = 1;; ++k) {
        struck = false;
        countdown = k;
        const Result result = step();
        countdown = 0;
        if (!struck) {
            EXPECT_EQ("", result.sentence);
            EXPECT_EQ(0, result.code);
            return static_cast<int>(k - 1);
        }
        // An allocation whose failure is got over leaves a success, a whole one.
        if (!result.Ok()) {
            EXPECT_TRUE(result.code == StorageOutOfMemory || result.code == static_cast<std::int32_t>(0x8007000E))
                << k << ": " << std::hex << result.code << " " << result.sentence;
        }
    }
}

TEST(AllocationFaultsTest, ASaveForWhichThereIsNoMemoryLeavesTheOldFileAndNoTemporary) {
    const Folder folder;
    const auto path = folder / "tree";
    const auto tree = TreeOfEveryKind();
    const int failures = FailEach([&] {
        const long armed = countdown.exchange(0);
        WriteFile(path, Text("old"));
        countdown = armed;
        Result result = SaveTree(tree.Get(), path);
        countdown = 0;
        EXPECT_EQ(1u, folder.GetNames().size());
        EXPECT_EQ(result.Ok() ? 303u : 3u, ReadFile(path).size());
        return result;
    });
    EXPECT_GE(failures, 10);
}

TEST(AllocationFaultsTest, ASaveToMemoryForWhichThereIsNoneLeavesTheBytes) {
    const auto tree = TreeOfEveryKind();
    const Bytes old = Text("old");
    Bytes bytes = old;
    const int failures = FailEach([&] {
        Result result = SaveTreeToMemory(tree.Get(), bytes);
        countdown = 0;
        EXPECT_EQ(result.Ok() ? 303u : 3u, bytes.size());
        bytes = old;
        return result;
    });
    EXPECT_GE(failures, 5);
}

TEST(AllocationFaultsTest, ALoadForWhichThereIsNoMemoryGivesNoTree) {
    const Folder folder;
    const auto path = folder / "tree";
    const auto tree = TreeOfEveryKind();
    ASSERT_EQ("", SaveTree(tree.Get(), path).sentence);
    const std::string text = Describe(tree.Get());
    const int failures = FailEach([&] {
        LoadResult loaded = LoadTree(path);
        countdown = 0;
        EXPECT_EQ(loaded.result.Ok(), loaded.tree.Get() != nullptr);
        if (loaded.tree) {
            EXPECT_EQ(text, Describe(loaded.tree.Get()));
        }
        return loaded.result;
    });
    EXPECT_GE(failures, 8);
}

TEST(AllocationFaultsTest, AnErrorForWhoseSentenceThereIsNoMemoryIsAnErrorAllTheSame) {
    const Folder folder;
    const auto path = folder / "a name that is long enough for its sentence to need memory";
    for (long k = 1; k < 60; ++k) {
        countdown = k;
        const LoadResult loaded = LoadTree(path);
        countdown = 0;
        EXPECT_TRUE(loaded.result.code == StorageFileNotFound || loaded.result.code == StorageOutOfMemory) << k;
    }
}

}  // namespace
