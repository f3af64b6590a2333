// The limit of nesting when a tree is loaded, whatever way a sequence nests.

#include <KivGenerics/Children.h>
#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

constexpr auto kTooDeep = static_cast<std::int32_t>(0x800703E9);

/// `levels` composites, one inside the other, inside a tree's envelope: the calls that open an outer one, those that open the
/// innermost, and those that close one.
Calls Nested(int levels, const Calls& outer, const Calls& innermost, const Calls& close) {
    return InEnvelope(Repeat(levels - 1, outer) + innermost + Repeat(levels, close));
}

/// The same without objects: all words stand in the root's.
Calls NestedInline(int levels, const Calls& outer, const Calls& innermost) {
    return InEnvelope(Calls{"Begin 0406"} + Repeat(levels - 1, outer) + innermost + Calls{"End"});
}

int DepthOf(Tree& tree) {
    int depth = 0;
    for (Node* node = tree.GetRoot(); node != nullptr; node = static_cast<Composite*>(node)->GetNth(0)) {
        ++depth;
    }
    return depth;
}

std::int32_t LoadedDepth(const Calls& calls, int& depth) {
    const auto tree = CreateGenericTree(EnumOrvObjectType{});
    const std::int32_t result = Load(*tree, calls);
    depth = DepthOf(*tree);
    return result;
}

void ExpectLimit(const Calls& allowed, const Calls& tooDeep) {
    int depth = 0;
    EXPECT_EQ(0, LoadedDepth(allowed, depth));
    EXPECT_EQ(1000, depth);
    EXPECT_EQ(kTooDeep, LoadedDepth(tooDeep, depth));
    EXPECT_EQ(1001, depth);
}

TEST(NestingTest, VectorsInObjectsNestAThousandLevels) {
    const auto calls = [](int levels) {
        return Nested(levels, {"Begin 0406", "Long 00010000"}, {"Begin 0406", "Long 00000000"}, {"End"});
    };
    ExpectLimit(calls(1000), calls(1001));
}

TEST(NestingTest, MapsInObjectsNestAThousandLevels) {
    const auto calls = [](int levels) {
        return Nested(levels, {"Begin 0407", "Long 00010100"}, {"Begin 0407", "Long 00010000"}, {"End"});
    };
    ExpectLimit(calls(1000), calls(1001));
}

TEST(NestingTest, InlineVectorsNestAThousandLevels) {
    const auto calls = [](int levels) { return NestedInline(levels, {"Long 00018600"}, {"Long 00000000"}); };
    ExpectLimit(calls(1000), calls(1001));
}

TEST(NestingTest, InlineMapsInVectorsAndVectorsInMapsNestAThousandLevels) {
    const auto calls = [](int pairs, const Calls& innermost) {
        // A vector of one inline map; a map, its tag first, of one inline vector.
        return NestedInline(pairs + 1, {"Long 00018700", "Long 00010180", "Long 86000000"}, innermost);
    };
    // 499 pairs, a vector, a map.
    ExpectLimit(calls(499, {"Long 00018700", "Long 00010000"}), calls(500, {"Long 00000000"}));
}

TEST(NestingTest, InlineMapsInMapsNestAThousandLevels) {
    const auto calls = [](int levels) {
        return InEnvelope(Calls{"Begin 0407"} + Repeat(levels - 1, {"Long 00010180", "Long 87000000"}) +
                          Calls{"Long 00010000", "End"});
    };
    ExpectLimit(calls(1000), calls(1001));
}

TEST(NestingTest, BeyondTheLimitNothingIsRead) {
    const auto tree = CreateGenericTree(EnumOrvObjectType{});
    ScriptedArchive archive(NestedInline(1001, {"Long 00018600"}, {"Long 00000000"}));
    EXPECT_EQ(kTooDeep, tree->LoadFromArchive(&archive));
    // Envelope, word, root, and the words of a thousand vectors.
    EXPECT_EQ(1003, archive.counter.GetCount());
}

TEST(NestingTest, AHundredThousandLevelsAreRefusedLikeAThousandAndOne) {
    int depth = 0;
    EXPECT_EQ(kTooDeep, LoadedDepth(NestedInline(100000, {"Long 00018600"}, {"Long 00000000"}), depth));
    EXPECT_EQ(1001, depth);
}

TEST(NestingTest, LeavesAndSetsAreNoLevels) {
    const auto tree = CreateGenericTree(EnumOrvObjectType{});
    EXPECT_EQ(0, Load(*tree, Nested(1000, {"Begin 0406", "Long 00010000"},
                                    {"Begin 0406", "Long 00014800", "Begin 040B", "Long 00000000", "End"}, {"End"})));
}

TEST(NestingTest, LevelsThatWereLeftDoNotCount) {
    const Calls deep =
        Repeat(998, {"Begin 0406", "Long 00010000"}) + Calls{"Begin 0406", "Long 00000000"} + Repeat(999, {"End"});
    const auto tree = CreateGenericTree(EnumOrvObjectType{});
    EXPECT_EQ(0, Load(*tree, InEnvelope(Calls{"Begin 0406", "Long 00030000"} + Repeat(3, deep) + Calls{"End"})));
    EXPECT_EQ(3, static_cast<Composite*>(tree->GetRoot())->GetSize(TemporalityTemporary));
}

}  // namespace
}  // namespace KivGenerics::Testing
