// Every k-th call of a host's archive and of its stream answers every kind of result, once and for good, while random trees
// are saved and loaded.

#include <gtest/gtest.h>

#include "core/Invariants.h"
#include "persistence/Archives.h"
#include "persistence/RandomTrees.h"
#include "persistence/Streams.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

constexpr std::uint32_t kTrees = 3;

/// The library's own failures, which a host may answer, too, others of a host's, and the least and the greatest of all.
constexpr std::int32_t kFailures[] = {
    ResultNotImplemented, ResultNullPointer,    ResultUnexpected,      ResultOutOfMemory,
    ArchiveTypeMismatch,  ArchiveStringTooLong, ArchiveNestingTooDeep, -1,
    -2147483647 - 1,
};
constexpr std::int32_t kSuccesses[] = {ResultNoObject, 2, 0x7FFFFFFF};

std::int32_t Save(Tree& tree, RecordingArchive& archive) {
    return tree.SaveToArchive(&archive, true, 255);
}
std::int32_t Save(Tree& tree, RecordingStream& stream) {
    return tree.SaveToStream(&stream, true);
}
std::int32_t Load(Tree& tree, ScriptedArchive& archive) {
    return tree.LoadFromArchive(&archive);
}
std::int32_t Load(Tree& tree, ScriptedStream& stream) {
    return tree.LoadFromStream(&stream);
}

int CountUnsound(Tree& tree) {
    return tree.IsEmpty() ? 0 : CheckInvariants(tree.GetRoot());
}

/// A save into a host's archive or stream, whole and with every call failing.
template <class Sink>
struct SavesTo {
    static void FailForGood(Tree& tree, int k, std::int32_t code) {
        Sink sink;
        sink.counter.FailAt(k, code, true);
        EXPECT_EQ(code, Save(tree, sink)) << "call " << k;
    }

    // What fails once may be overlooked: a word of a packed header behind which others follow.
    static bool IsOverlookedOnce(Tree& tree, int k, std::int32_t code) {
        Sink sink;
        sink.counter.FailAt(k, code);
        const std::int32_t result = Save(tree, sink);
        EXPECT_TRUE(result == code || result == 0) << "call " << k << " answers " << result;
        return result == 0;
    }

    static void SucceedOtherwise(Tree& tree, int k, std::int32_t code, const Calls& whole) {
        Sink sink;
        sink.counter.FailAt(k, code);
        EXPECT_LE(0, Save(tree, sink)) << "call " << k;
        EXPECT_EQ(whole, sink.calls) << "call " << k;
    }

    static void Run(std::uint32_t seed) {
        const auto tree = NewRandomTree(seed, 3);
        const auto before = Describe(*tree);
        Sink good;
        ASSERT_EQ(0, Save(*tree, good));
        int overlooked = 0;
        for (int k = 1; k <= good.counter.GetCount(); ++k) {
            for (const std::int32_t code : kFailures) {
                FailForGood(*tree, k, code);
                overlooked += IsOverlookedOnce(*tree, k, code) ? 1 : 0;
            }
            for (const std::int32_t code : kSuccesses) {
                SucceedOtherwise(*tree, k, code, good.calls);
            }
        }
        EXPECT_LT(overlooked, good.counter.GetCount() * static_cast<int>(std::size(kFailures)) / 2);
        EXPECT_EQ(before, Describe(*tree));
        EXPECT_EQ(0, CountUnsound(*tree));
        Sink again;
        EXPECT_EQ(0, Save(*tree, again));
        EXPECT_EQ(good.calls, again.calls);
    }
};

/// A load from what plays the calls of a save.
template <class Source>
struct LoadsFrom {
    static void Fail(Tree& tree, const Calls& script, int k, std::int32_t code, bool forGood) {
        Source source(script);
        source.counter.FailAt(k, code, forGood);
        EXPECT_EQ(code, Load(tree, source)) << "call " << k;
        EXPECT_EQ(k, source.counter.GetCount()) << "nothing is read after a failure";
        EXPECT_EQ(0, CountUnsound(tree)) << "call " << k;
    }

    // What is read may be something else then, which fails later, or which a tree refuses to hold.
    static void SucceedOtherwise(const Calls& script, int k, std::int32_t code, bool forGood) {
        Source source(script);
        source.counter.FailAt(k, code, forGood);
        const auto tree = CreateGenericTree(EnumOrvObjectType{});
        try {
            Load(*tree, source);
        } catch (const Exception&) {
            // What was read up to there stays, and must be sound.
        }
        EXPECT_EQ(0, CountUnsound(*tree)) << "call " << k;
    }

    static void Run(std::uint32_t seed) {
        const auto tree = NewRandomTree(seed, 3);
        const Calls script = SaveOf(*tree, true);
        Source good(script);
        const auto loaded = CreateGenericTree(EnumOrvObjectType{});
        ASSERT_EQ(0, Load(*loaded, good));
        const auto whole = Describe(*loaded);
        for (int k = 1; k <= good.counter.GetCount(); ++k) {
            const auto failing = CreateGenericTree(EnumOrvObjectType{});
            for (const bool forGood : {false, true}) {
                for (const std::int32_t code : kFailures) {
                    Fail(*failing, script, k, code, forGood);
                }
                for (const std::int32_t code : kSuccesses) {
                    SucceedOtherwise(script, k, code, forGood);
                }
            }
            // A tree that so many loads have failed in takes a good one.
            Source again(script);
            EXPECT_EQ(0, Load(*failing, again)) << "call " << k;
            EXPECT_EQ(whole, Describe(*failing)) << "call " << k;
        }
    }
};

template <class Run>
void ForRandomTrees(Run run) {
    for (std::uint32_t seed = 0; seed < kTrees && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        run(seed);
    }
}

TEST(FailingHostTest, EveryCallOfAnArchiveFailsWhileATreeIsSaved) {
    ForRandomTrees(SavesTo<RecordingArchive>::Run);
}

TEST(FailingHostTest, EveryCallOfAStreamFailsWhileATreeIsSaved) {
    ForRandomTrees(SavesTo<RecordingStream>::Run);
}

TEST(FailingHostTest, EveryCallOfAnArchiveFailsWhileATreeIsLoaded) {
    ForRandomTrees(LoadsFrom<ScriptedArchive>::Run);
}

TEST(FailingHostTest, EveryCallOfAStreamFailsWhileATreeIsLoaded) {
    ForRandomTrees(LoadsFrom<ScriptedStream>::Run);
}

}  // namespace
}  // namespace KivGenerics::Testing
