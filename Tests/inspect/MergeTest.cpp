#include <gtest/gtest.h>

#include <KivInspect/Diff.h>
#include <KivInspect/Merge.h>

#include "inspect/Corpus.h"

namespace InspectTest {
namespace {

using KivInspect::Favor;

KivBase::ReturnPtrI<Tree> Parse(std::string_view text) {
    auto loaded = FromText("kivtext 1\n" + std::string(text));
    EXPECT_TRUE(loaded.result.Ok()) << loaded.result.sentence;
    return std::move(loaded.tree);
}

struct Merged {
    std::string tree;
    std::string conflicts;  ///< their keys
};

template <class Merge>
Merged Finish(Tree* ours, Favor favor, Merge merge) {
    Merged merged;
    KivInspect::MergeOptions options;
    options.favor = favor;
    merge(options, [&merged](const KivInspect::Conflict& conflict) {
        merged.conflicts += conflict.key + " " + conflict.what + "; ";
    });
    merged.tree = ToText(ours).substr(10);
    return merged;
}

Merged Merge2(std::string_view ours, std::string_view theirs, Favor favor = Favor::None) {
    const auto mine = Parse(ours);
    const auto other = Parse(theirs);
    return Finish(mine.Get(), favor, [&](const auto& options, const auto& onConflict) {
        return KivInspect::Merge(mine.Get(), other.Get(), options, onConflict);
    });
}

Merged Merge3(std::string_view base, std::string_view ours, std::string_view theirs, Favor favor = Favor::None) {
    const auto origin = Parse(base);
    const auto mine = Parse(ours);
    const auto other = Parse(theirs);
    return Finish(mine.Get(), favor, [&](const auto& options, const auto& onConflict) {
        return KivInspect::Merge3(origin.Get(), mine.Get(), other.Get(), options, onConflict);
    });
}

TEST(MergeTest, WhatIsMissingIsCopiedIn) {
    const Merged merged = Merge2("Map\n  0: Map\n    1: Integer 1\n",
                                 "Map\n  0: Map\n    2: String \"a\\u0000b\"\n  5: Vector\n    - Integer 1\n");
    EXPECT_EQ(merged.tree,
              "Map\n  0: Map\n    1: Integer 1\n    2: String \"a\\u0000b\"\n  5: Vector\n    - Integer 1\n");
    EXPECT_EQ(merged.conflicts, "");
}

TEST(MergeTest, AnEmptyTreeBecomesTheOther) {
    EXPECT_EQ(Merge2("", "Map\n  0: Integer 1\n").tree, "Map\n  0: Integer 1\n");
    EXPECT_EQ(Merge2("Map\n", "").tree, "Map\n");
}

TEST(MergeTest, ConflictsKeepOursAndAreListedByKey) {
    const char* const ours = "Map\n  0: Integer 1\n  1: Map #5\n    0: Integer 1\n  2: String \"a\"\n";
    const char* const theirs = "Map\n  0: Integer 2\n  1: Map #6\n    1: Integer 1\n  2: Integer 1\n  3: Integer 3\n";
    const Merged merged = Merge2(ours, theirs);
    EXPECT_EQ(merged.conflicts, "0: value; 1: tag; 2: kind; ");
    EXPECT_EQ(merged.tree, "Map\n  0: Integer 1\n  1: Map #5\n    0: Integer 1\n  2: String \"a\"\n  3: Integer 3\n");
    EXPECT_EQ(Merge2(ours, theirs, Favor::Theirs).tree,
              "Map\n  0: Integer 2\n  1: Map #6\n    1: Integer 1\n  2: Integer 1\n  3: Integer 3\n");
}

TEST(MergeTest, OfTwoTemporalitiesTheirsWinsUnlessOursIsFavoured) {
    EXPECT_EQ(Merge2("Map transient\n  0: Integer transient 1\n", "Map temporary\n  0: Integer temporary 1\n").tree,
              "Map temporary\n  0: Integer temporary 1\n");
    const Merged ours =
        Merge2("Map transient\n  0: Integer transient 1\n", "Map temporary\n  0: Integer temporary 1\n", Favor::Ours);
    EXPECT_EQ(ours.tree, "Map transient\n  0: Integer transient 1\n");
    EXPECT_EQ(ours.conflicts, " temporality; 0: value or temporality; ");
}

TEST(MergeTest, TheResultIsThatOfTheNodesOwnMerge) {
    const auto ours = SavableTree();
    const auto theirs = TreeOfEverything();
    const auto expected = SavableTree();
    KivInspect::MergeOptions options;
    std::uint64_t shown = 0;
    const std::uint64_t conflicts =
        KivInspect::Merge(ours.Get(), theirs.Get(), options, [&shown](const KivInspect::Conflict&) { ++shown; });
    EXPECT_EQ(conflicts, shown);
    const bool agreed = expected->GetRoot()->MergeWith(theirs->GetRoot(), false);
    EXPECT_EQ(conflicts == 0, agreed);
    EXPECT_EQ(ToText(ours.Get()), ToText(expected.Get()));
}

TEST(Merge3Test, WhatOneSideHasChangedIsTaken) {
    const Merged merged = Merge3("Map\n  0: Integer 1\n  1: Integer 1\n  2: Integer 1\n",
                                 "Map\n  0: Integer 2\n  1: Integer 1\n  2: Integer 1\n  3: Integer 3\n",
                                 "Map\n  0: Integer 1\n  1: Integer 5\n  4: String \"new\"\n");
    EXPECT_EQ(merged.tree, "Map\n  0: Integer 2\n  1: Integer 5\n  3: Integer 3\n  4: String \"new\"\n");
    EXPECT_EQ(merged.conflicts, "");
}

TEST(Merge3Test, WhatBothHaveChangedAlikeIsNoConflict) {
    EXPECT_EQ(
        Merge3("Map\n  0: Integer 1\n  1: Integer 1\n", "Map\n  0: Integer 2\n", "Map\n  0: Integer 2\n").conflicts,
        "");
}

TEST(Merge3Test, WhatBothHaveChangedIsAConflict) {
    const char* const base = "Map\n  0: Integer 1\n  1: Integer 1\n  2: Integer 1\n";
    const char* const ours = "Map\n  0: Integer 2\n  2: Integer 2\n  3: Integer 1\n";
    const char* const theirs = "Map\n  0: Integer 3\n  1: Integer 2\n  3: String \"x\"\n";
    const Merged merged = Merge3(base, ours, theirs);
    EXPECT_EQ(merged.conflicts,
              "0: changed by both; 1: removed by ours, changed by theirs; 2: changed by ours, removed by theirs; 3: "
              "changed by "
              "both; ");
    EXPECT_EQ(merged.tree, "Map\n  0: Integer 2\n  2: Integer 2\n  3: Integer 1\n");
    EXPECT_EQ(Merge3(base, ours, theirs, Favor::Theirs).tree,
              "Map\n  0: Integer 3\n  1: Integer 2\n  3: String \"x\"\n");
}

TEST(Merge3Test, TagAndTemporalityAreMergedLikeValues) {
    const Merged merged = Merge3("Map\n  0: Map #2\n    0: Integer 1\n", "Map\n  0: Map #3\n    0: Integer 1\n",
                                 "Map\n  0: Map #2 transient\n    0: Integer temporary 1\n");
    EXPECT_EQ(merged.tree, "Map\n  0: Map #3 transient\n    0: Integer temporary 1\n");
    EXPECT_EQ(merged.conflicts, "");
    EXPECT_EQ(Merge3("Map #1\n", "Map #2\n", "Map #3\n").conflicts, " tag changed by both; ");
}

TEST(Merge3Test, VectorsAreMergedWhereOtherElementsHaveChanged) {
    const char* const base = "Vector\n  - Integer 1\n  - Integer 2\n  - Integer 3\n  - Integer 4\n";
    EXPECT_EQ(Merge3(base, "Vector\n  - Integer 9\n  - Integer 1\n  - Integer 2\n  - Integer 3\n  - Integer 4\n",
                     "Vector\n  - Integer 1\n  - Integer 2\n  - Integer 4\n  - Integer 5\n")
                  .tree,
              "Vector\n  - Integer 9\n  - Integer 1\n  - Integer 2\n  - Integer 4\n  - Integer 5\n");
    EXPECT_EQ(Merge3(base, "Vector\n  - Integer 1\n  - Integer 2\n  - Integer 3\n",
                     "Vector\n  - Integer 8\n  - Integer 7\n  - Integer 2\n  - Integer 3\n  - Integer 4\n")
                  .tree,
              "Vector\n  - Integer 8\n  - Integer 7\n  - Integer 2\n  - Integer 3\n");
    EXPECT_EQ(Merge3(base, base, "Vector\n  - Integer 1\n  - Integer 5\n").tree,
              "Vector\n  - Integer 1\n  - Integer 5\n");
    EXPECT_EQ(Merge3(base, "Vector\n  - Integer 5\n", base).tree, "Vector\n  - Integer 5\n");
}

TEST(Merge3Test, VectorsThatBothHaveChangedInOnePlaceAreAConflict) {
    const char* const base = "Vector\n  - Integer 1\n";
    EXPECT_EQ(
        Merge3(base, "Vector\n  - Integer 1\n  - Integer 2\n", "Vector\n  - Integer 1\n  - Integer 3\n").conflicts,
        " changed by both; ");
    EXPECT_EQ(
        Merge3(base, "Vector\n  - Integer 1\n  - Integer 2\n", "Vector\n  - Integer 1\n  - Integer 2\n").conflicts, "");
}

TEST(Merge3Test, VectorsOfOneSizeAreMergedElementByElement) {
    const Merged merged = Merge3("Vector\n  - Integer 1\n  - Integer 2\n  - Integer 3\n",
                                 "Vector\n  - Integer 5\n  - Integer 2\n  - Integer 7\n",
                                 "Vector\n  - Integer 1\n  - Integer 6\n  - Integer 8\n");
    EXPECT_EQ(merged.tree, "Vector\n  - Integer 5\n  - Integer 6\n  - Integer 7\n");
    EXPECT_EQ(merged.conflicts, "2: changed by both; ");
}

}  // namespace
}  // namespace InspectTest
