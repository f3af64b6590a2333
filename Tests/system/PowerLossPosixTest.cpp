// The power fails at any moment of a save. The file system keeps what was synced, and of the rest what it likes: always the
// old file stands, or the new one, whole; and once the save has succeeded, the new one.
//
// KIV_POWER_LOSSES says how many moments are tried.

#include <cstdlib>

#include <KivStorage/SaveTree.h>
#include <gtest/gtest.h>

#include "system/Disk.h"

namespace {

using SystemCalls::Call;
using SystemCalls::Kind;

struct Outcomes {
    int old = 0;
    int whole = 0;
    int broken = 0;
};

class PowerLossPosixTest : public testing::Test {
protected:
    PowerLossPosixTest() {
        WriteFile(path_, old_);
        const SystemCalls::Watch watch;
        EXPECT_EQ("", KivStorage::SaveTree(next_.Get(), path_).sentence);
        calls_ = watch.TakeCalls();
    }

    /// What stands after a power failure behind the first `done` calls.
    void Fail(const std::vector<Call>& calls, std::size_t done, std::mt19937& random, Outcomes& outcomes) const {
        Disk disk(path_, old_);
        for (std::size_t i = 0; i < done; ++i) {
            disk.Do(calls[i]);
        }
        const auto bytes = disk.FailAndRead(path_, random);
        ++(bytes == old_ ? outcomes.old : bytes == new_ ? outcomes.whole : outcomes.broken);
    }

    Outcomes FailAtAnyMoment(const std::vector<Call>& calls) const {
        const char* const wanted = std::getenv("KIV_POWER_LOSSES");
        std::mt19937 random(7);
        Outcomes outcomes;
        for (int i = wanted != nullptr ? std::atoi(wanted) : 2000; i > 0; --i) {
            Fail(calls, random() % (calls.size() + 1), random, outcomes);
        }
        return outcomes;
    }

    Outcomes FailAtTheEnd(const std::vector<Call>& calls) const {
        std::mt19937 random(8);
        Outcomes outcomes;
        for (int i = 0; i < 200; ++i) {
            Fail(calls, calls.size(), random, outcomes);
        }
        return outcomes;
    }

    /// The same save by a program that does not sync the file, or not the folder.
    std::vector<Call> Without(bool (*isLeftOut)(const Call& call)) const {
        std::vector<Call> calls;
        for (const Call& call : calls_) {
            if (!isLeftOut(call)) {
                calls.push_back(call);
            }
        }
        EXPECT_EQ(calls.size() + 1, calls_.size());
        return calls;
    }

    static bool SyncsFile(const Call& call) {
        return call.kind == Kind::Sync && call.path.find(".saving-") != std::string::npos;
    }
    static bool SyncsFolder(const Call& call) { return call.kind == Kind::Sync && !SyncsFile(call); }

    const KivBase::ReturnPtrI<KivGenerics::Tree> next_ = TreeOf(300, u"a text that fills some sectors");
    const Bytes old_ = SavedBytes(*TreeOf(100, u"old"));
    const Bytes new_ = SavedBytes(*next_);
    const Folder folder_;
    const std::filesystem::path path_ = folder_ / "tree";
    std::vector<Call> calls_;
};

TEST_F(PowerLossPosixTest, TheOldOrTheNewFileStandsWhole) {
    const Outcomes outcomes = FailAtAnyMoment(calls_);
    EXPECT_EQ(outcomes.broken, 0);
    EXPECT_GT(outcomes.old, 0);
    EXPECT_GT(outcomes.whole, 0);
}

TEST_F(PowerLossPosixTest, WhatHasBeenSavedStays) {
    const Outcomes outcomes = FailAtTheEnd(calls_);
    EXPECT_EQ(outcomes.old, 0);
    EXPECT_EQ(outcomes.broken, 0);
}

// The two show that the disk would have found it.
TEST_F(PowerLossPosixTest, WithoutSyncingTheFileItWouldBeTorn) {
    EXPECT_GT(FailAtAnyMoment(Without(SyncsFile)).broken, 0);
}

TEST_F(PowerLossPosixTest, WithoutSyncingTheFolderTheOldFileMightComeBack) {
    const Outcomes outcomes = FailAtTheEnd(Without(SyncsFolder));
    EXPECT_GT(outcomes.old, 0);
    EXPECT_EQ(outcomes.broken, 0);
}

}  // namespace
