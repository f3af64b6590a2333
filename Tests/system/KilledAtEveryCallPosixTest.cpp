// A save is killed before every one of its system calls, and in the middle of every write: the old file stands, or the new
// one does, whole.

#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "system/Calls.h"
#include "system/Saves.h"

using namespace KivStorage;
using SystemCalls::Fault;

namespace {

/// Saves in a process of its own, which dies at the k-th call; true when it has died.
bool SaveAndDie(KivGenerics::Tree& tree, const std::filesystem::path& path, Fault::What what, int k) {
    const pid_t child = ::fork();
    if (child == 0) {
        const SystemCalls::Watch watch({what, k, 0, false});
        ::_exit(SaveTree(&tree, path).Ok() ? 0 : 1);
    }
    int status = 0;
    EXPECT_EQ(child, ::waitpid(child, &status, 0));
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
    return WIFSIGNALED(status);
}

void KillAtEveryCall(const Bytes& old, Fault::What what) {
    const auto next = TreeOf(3000, u"a text that fills some blocks");
    const Bytes nextBytes = SavedBytes(*next);
    const Folder folder;
    const auto path = folder / "tree";
    int oldStood = 0;
    int newStood = 0;
    for (int k = 1;; ++k) {
        SCOPED_TRACE(k);
        std::filesystem::remove(path);
        if (!old.empty()) {
            WriteFile(path, old);
        }
        const bool died = SaveAndDie(*next, path, what, k);
        const Bytes bytes = ReadFile(path);
        ASSERT_TRUE(bytes == nextBytes || (died && bytes == old));
        if (!died) {
            break;
        }
        oldStood += bytes == old ? 1 : 0;
        newStood += bytes == nextBytes ? 1 : 0;
    }
    // Up to the renaming the old one stands, and after it the new one.
    EXPECT_GT(oldStood, 5);
    EXPECT_GE(newStood, 3);
    // What the killed processes have left behind disturbs nobody.
    EXPECT_EQ("", SaveTree(next.Get(), path).sentence);
}

TEST(KilledAtEveryCallPosixTest, BeforeACallOverAnOldFile) {
    KillAtEveryCall(SavedBytes(*TreeOf(3, u"old")), Fault::What::Kill);
}

TEST(KilledAtEveryCallPosixTest, InTheMiddleOfACallOverAnOldFile) {
    KillAtEveryCall(SavedBytes(*TreeOf(3, u"old")), Fault::What::KillHalfway);
}

TEST(KilledAtEveryCallPosixTest, BeforeACallWhereNoFileWas) {
    KillAtEveryCall({}, Fault::What::Kill);
}

}  // namespace
