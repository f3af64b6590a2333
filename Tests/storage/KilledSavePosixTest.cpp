// KIV_KILLED_SAVES says how many saves are killed.

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <thread>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "storage/Support.h"

using namespace KivGenerics;
using namespace StorageTest;

namespace {

KivBase::ReturnPtrI<Tree> TreeOf(int count, int value) {
    auto tree = NewTree();
    auto* const map = static_cast<Map*>(NewRootMap(tree.Get())->NewNode(0, NodeTypeMap));
    for (int i = 0; i < count; ++i) {
        static_cast<Integer*>(map->NewNode(i, NodeTypeInteger))->Set(value);
    }
    return tree;
}

TEST(KilledSavePosixTest, TheOldOrTheNewFileStandsWheneverASaveIsKilled) {
    const Folder folder;
    const auto path = folder / "tree";
    const auto old = TreeOf(2000, 1);
    const auto next = TreeOf(40000, 2);
    const std::string oldText = Describe(old.Get());
    const std::string nextText = Describe(next.Get());

    ASSERT_EQ("", KivStorage::SaveTree(old.Get(), path).sentence);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ("", KivStorage::SaveTree(next.Get(), path).sentence);
    const auto oneSave = std::chrono::steady_clock::now() - start;

    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto longest = std::chrono::duration_cast<std::chrono::microseconds>(oneSave).count() * 3 / 2 + 200;
    int killed = 0;
    const char* const wanted = std::getenv("KIV_KILLED_SAVES");
    for (int left = wanted != nullptr ? std::atoi(wanted) : 100; left > 0; --left) {
        ASSERT_EQ("", KivStorage::SaveTree(old.Get(), path).sentence);
        const pid_t child = ::fork();
        if (child == 0) {
            ::_exit(KivStorage::SaveTree(next.Get(), path).Ok() ? 0 : 1);
        }
        std::this_thread::sleep_for(
            std::chrono::microseconds(std::uniform_int_distribution<long long>(0, longest)(random)));
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(child, ::waitpid(child, &status, 0));
        killed += WIFSIGNALED(status) ? 1 : 0;

        const auto loaded = KivStorage::LoadTree(path);
        ASSERT_EQ("", loaded.result.sentence);
        const std::string text = Describe(loaded.tree.Get());
        if (WIFSIGNALED(status)) {
            ASSERT_TRUE(text == oldText || text == nextText);
        } else {
            ASSERT_EQ(0, WEXITSTATUS(status));
            ASSERT_TRUE(text == nextText);
        }
    }
    // Otherwise the moments were badly chosen, and nothing was shown.
    EXPECT_GE(killed, 10);
    // What a killed process leaves behind does not disturb anybody.
    ASSERT_EQ("", KivStorage::SaveTree(next.Get(), path).sentence);
}

}  // namespace
