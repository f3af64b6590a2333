// Random trees, saved and loaded.

#include <gtest/gtest.h>

#include "persistence/RandomTrees.h"
#include "persistence/Streams.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

constexpr std::uint32_t kTrees = 200;

/// What a recording stream was given, as a script for another.
Calls ScriptOf(const RecordingStream& stream) {
    Calls script;
    for (const std::string& call : stream.calls) {
        script.push_back(call.substr(3));  // without "Put"
    }
    return script;
}

TEST(RoundTripTest, PersistentTreesComeBackEqual) {
    std::size_t nodes = 0;
    for (std::uint32_t seed = 0; seed < kTrees; ++seed) {
        const auto tree = NewRandomTree(seed, 2);
        tree->UpdateDerivedTemporality();
        // Composites that are empty and of default temporality would be left out.
        tree->ClearTemporaryNodes();
        const auto loaded = CreateGenericTree(EnumOrvObjectType{});
        const Calls saved = SaveOf(*tree);
        EXPECT_EQ(0, Load(*loaded, saved)) << "seed " << seed;
        EXPECT_EQ(Describe(*tree), Describe(*loaded)) << "seed " << seed;
        EXPECT_EQ(0, loaded->GetRoot()->Compare(tree->GetRoot(), TemporalityTemporary, true)) << "seed " << seed;
        EXPECT_EQ(saved, SaveOf(*loaded)) << "seed " << seed;
        nodes += Describe(*tree).size();
    }
    EXPECT_LT(10000U, nodes);
}

TEST(RoundTripTest, ASaveWithoutTransientNodesIsWhatClearingTemporaryOnesLeaves) {
    for (std::uint32_t seed = 0; seed < kTrees; ++seed) {
        const auto tree = NewRandomTree(seed, 4);
        const auto loaded = CreateGenericTree(EnumOrvObjectType{});
        EXPECT_EQ(0, Load(*loaded, SaveOf(*tree))) << "seed " << seed;
        tree->ClearTemporaryNodes();
        EXPECT_EQ(Describe(*tree), Describe(*loaded)) << "seed " << seed;
    }
}

TEST(RoundTripTest, StreamsCarryTheSameAsArchives) {
    for (std::uint32_t seed = 0; seed < kTrees; ++seed) {
        const auto tree = NewRandomTree(seed, 3);
        RecordingStream written;
        EXPECT_EQ(0, tree->SaveToStream(&written, true));
        EXPECT_EQ(SaveOf(*tree, true), ScriptOf(written)) << "seed " << seed;
        const auto byArchive = CreateGenericTree(EnumOrvObjectType{});
        const auto byStream = CreateGenericTree(EnumOrvObjectType{});
        ScriptedStream stream(ScriptOf(written));
        EXPECT_EQ(0, byStream->LoadFromStream(&stream)) << "seed " << seed;
        EXPECT_EQ(0, Load(*byArchive, ScriptOf(written))) << "seed " << seed;
        EXPECT_EQ(Describe(*byArchive), Describe(*byStream)) << "seed " << seed;
        EXPECT_TRUE(stream.player.IsOver());
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
