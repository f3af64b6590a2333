// Every k-th system call of a save and of a load fails, with every error, once and for good, or does half of what it is asked
// for. Either the operation succeeds, or it says which file it is about, and what stood there before stands there still.

#include <cerrno>

#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "system/Calls.h"
#include "system/Saves.h"

using namespace KivStorage;
using SystemCalls::CountOpenFiles;
using SystemCalls::Fault;
using SystemCalls::Watch;

namespace {

constexpr int kMostCalls = 1000;
// Two blocks of the format, so that there is more than one write.
constexpr int kTexts = 3000;

Fault FailWith(int error, bool forGood) {
    return {Fault::What::Fail, 0, error, forGood};
}

const std::vector<Fault>& AllFaults() {
    static const std::vector<Fault> all = {
        FailWith(ENOSPC, false),
        FailWith(EIO, false),
        FailWith(EINTR, false),
        FailWith(EACCES, false),
        FailWith(EDQUOT, false),
        FailWith(EMFILE, false),
        FailWith(ENOSPC, true),
        FailWith(EIO, true),
        FailWith(EROFS, true),
        {Fault::What::DoHalf, 0, 0, false},
        {Fault::What::DoHalf, 0, 0, true},
        {Fault::What::DoNothing, 0, 0, false},
    };
    return all;
}

struct Attempted {
    Result result;
    bool struck;
};

Attempted SaveWith(const Fault& fault, KivGenerics::Tree& tree, const std::filesystem::path& path) {
    const Watch watch(fault);
    const Result result = SaveTree(&tree, path);
    return {result, watch.HasStruck()};
}

LoadResult LoadWith(const Fault& fault, const std::filesystem::path& path, bool& struck) {
    const Watch watch(fault);
    LoadResult loaded = LoadTree(path);
    struck = watch.HasStruck();
    return loaded;
}

/// Runs `attempt` with the fault at the first call, then at the second, and so on, until there is no such call.
template <class Attempt>
int ForEveryCall(Fault fault, Attempt attempt) {
    for (fault.at = 1; fault.at < kMostCalls; ++fault.at) {
        SCOPED_TRACE("call " + std::to_string(fault.at) + ", error " + std::to_string(fault.error));
        const int open = CountOpenFiles();
        const bool struck = attempt(fault);
        EXPECT_EQ(CountOpenFiles(), open);
        if (!struck || testing::Test::HasFailure()) {
            break;
        }
    }
    return fault.at;
}

void ExpectOldOrNew(const std::filesystem::path& path, const Result& result, const Bytes& old, const Bytes& next) {
    // The new file stands in two cases: it is saved, or all that is missing is that its folder is on the disk.
    const bool stands = result.Ok() || result.code == StorageDirectoryNotSynced;
    EXPECT_TRUE(ReadFile(path) == (stands ? next : old));
    if (!result.Ok()) {
        EXPECT_NE(result.sentence.find(path.filename().string()), std::string::npos) << result.sentence;
    }
}

class FailingCallsPosixTest : public testing::Test {
protected:
    const KivBase::ReturnPtrI<KivGenerics::Tree> oldTree_ = TreeOf(3, u"old");
    const KivBase::ReturnPtrI<KivGenerics::Tree> newTree_ = TreeOf(kTexts, u"a text that fills some blocks");
    const Bytes old_ = SavedBytes(*oldTree_);
    const Bytes new_ = SavedBytes(*newTree_);
    const Folder folder_;
    const std::filesystem::path path_ = folder_ / "tree";
};

TEST_F(FailingCallsPosixTest, ASaveOverAnOldFileLeavesItWholeOrReplacesIt) {
    for (const Fault& each : AllFaults()) {
        const int calls = ForEveryCall(each, [&](const Fault& fault) {
            WriteFile(path_, old_);
            const auto [result, struck] = SaveWith(fault, *newTree_, path_);
            ExpectOldOrNew(path_, result, old_, new_);
            EXPECT_EQ(folder_.GetNames(), std::vector<std::string>{"tree"});
            return struck;
        });
        EXPECT_GT(calls, 10);
    }
}

TEST_F(FailingCallsPosixTest, ASaveWhereNoFileWasLeavesNoneOrAWholeOne) {
    for (const Fault& each : AllFaults()) {
        ForEveryCall(each, [&](const Fault& fault) {
            std::filesystem::remove(path_);
            const auto [result, struck] = SaveWith(fault, *newTree_, path_);
            ExpectOldOrNew(path_, result, {}, new_);
            EXPECT_LE(folder_.GetNames().size(), ReadFile(path_).empty() ? 0U : 1U);
            return struck;
        });
    }
}

TEST_F(FailingCallsPosixTest, ASaveThroughALinkLeavesTheLink) {
    const std::filesystem::path link = folder_ / "link";
    std::filesystem::create_symlink("tree", link);
    for (const Fault& each : AllFaults()) {
        ForEveryCall(each, [&](const Fault& fault) {
            WriteFile(path_, old_);
            const auto [result, struck] = SaveWith(fault, *newTree_, link);
            EXPECT_TRUE(std::filesystem::is_symlink(link));
            ExpectOldOrNew(link, result, old_, new_);
            EXPECT_EQ(folder_.GetNames(), (std::vector<std::string>{"link", "tree"}));
            return struck;
        });
    }
}

TEST_F(FailingCallsPosixTest, ALoadGivesTheWholeTreeOrSaysWhichFileFailed) {
    WriteFile(path_, new_);
    for (const Fault& each : AllFaults()) {
        const int calls = ForEveryCall(each, [&](const Fault& fault) {
            bool struck = false;
            const LoadResult loaded = LoadWith(fault, path_, struck);
            if (loaded.result.Ok()) {
                EXPECT_TRUE(SavedBytes(*loaded.tree) == new_);
            } else {
                EXPECT_FALSE(loaded.tree);
                EXPECT_NE(loaded.result.sentence.find("tree"), std::string::npos) << loaded.result.sentence;
            }
            return struck;
        });
        EXPECT_GT(calls, 3);
    }
}

// What can be done again is done again.
TEST_F(FailingCallsPosixTest, ASignalOrAShortWriteIsNoFailure) {
    for (const Fault& each : {FailWith(EINTR, false), Fault{Fault::What::DoHalf, 0, 0, true}}) {
        Fault fault = each;
        WriteFile(path_, old_);
        std::vector<SystemCalls::Call> calls;
        {
            const Watch watch;
            ASSERT_EQ("", SaveTree(newTree_.Get(), path_).sentence);
            calls = watch.TakeCalls();
        }
        for (fault.at = 1; fault.at <= static_cast<int>(calls.size()); ++fault.at) {
            const auto kind = calls[static_cast<std::size_t>(fault.at - 1)].kind;
            if (kind == SystemCalls::Kind::Open || kind == SystemCalls::Kind::Write ||
                kind == SystemCalls::Kind::Sync || kind == SystemCalls::Kind::Close) {
                const auto [result, struck] = SaveWith(fault, *newTree_, path_);
                EXPECT_EQ("", result.sentence) << fault.at;
                EXPECT_TRUE(struck);
            }
        }
        EXPECT_TRUE(ReadFile(path_) == new_);
    }
}

}  // namespace
