#include <gtest/gtest.h>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivInspect/Diff.h>
#include <KivInspect/Merge.h>

#include "inspect/Corpus.h"

namespace InspectTest {
namespace {

using namespace KivGenerics;

/// Each change as "+0:1:", "-0:1:", or "~0:1:" with the first letters of what differs.
std::string Changes(std::string_view left, std::string_view right, const KivInspect::DiffOptions& options = {}) {
    const auto first = FromText("kivtext 1\n" + std::string(left));
    const auto second = FromText("kivtext 1\n" + std::string(right));
    EXPECT_TRUE(first.result.Ok()) << first.result.sentence;
    EXPECT_TRUE(second.result.Ok()) << second.result.sentence;
    std::string text;
    KivInspect::Diff(first.tree.Get(), second.tree.Get(), options, [&text](const KivInspect::Change& change) {
        text += text.empty() ? "" : " ";
        text += change.kind == KivInspect::ChangeKind::Added     ? "+"
                : change.kind == KivInspect::ChangeKind::Removed ? "-"
                                                                 : "~";
        text += change.key;
        text += change.differences.kind ? "k" : "";
        text += change.differences.tag ? "g" : "";
        text += change.differences.temporality ? "t" : "";
        text += change.differences.value ? "v" : "";
        return true;
    });
    return text;
}

TEST(DiffTest, TreesThatAreTheSameHaveNoChange) {
    EXPECT_TRUE(KivInspect::AreSame(TreeOfEverything().Get(), TreeOfEverything().Get()));
    EXPECT_TRUE(KivInspect::AreSame(NewTree().Get(), NewTree().Get()));
    EXPECT_FALSE(KivInspect::AreSame(NewTree().Get(), SavableTree().Get()));
}

TEST(DiffTest, ChangesComeInTheOrderOfKeys) {
    EXPECT_EQ(
        Changes("Map\n  0: Integer 1\n  2: Map\n    5: Integer 1\n  9: Integer 1\n",
                "Map\n  1: Integer 1\n  2: Map\n    5: Integer 2\n    6: Vector\n      - Integer 1\n  9: Integer 1\n"),
        "-0: +1: ~2:5:v +2:6:");
}

TEST(DiffTest, ElementsAreComparedByPosition) {
    EXPECT_EQ(Changes("Vector\n  - Integer 1\n  - Integer 2\n", "Vector\n  - Integer 2\n"), "~0:v -1:");
}

TEST(DiffTest, EachDifferenceOfANodeIsTold) {
    EXPECT_EQ(Changes("Map\n  0: Map #2\n  1: Integer 1\n  2: Integer 1\n",
                      "Map\n  0: Map #3 transient\n  1: Double 1\n  2: Integer temporary 2\n"),
              "~0:gt ~1:k ~2:tv");
}

TEST(DiffTest, DifferencesCanBeIgnored) {
    KivInspect::DiffOptions options;
    options.ignoreTag = true;
    EXPECT_EQ(Changes("Map #2\n", "Map #3 transient\n", options), "~t");
    options.ignoreTemporality = true;
    EXPECT_EQ(Changes("Map #2\n", "Map #3 transient\n", options), "");
}

TEST(DiffTest, DoublesAreTheSameWhenTheirBitsAre) {
    EXPECT_EQ(Changes("Double nan\n", "Double nan\n"), "");
    EXPECT_EQ(Changes("Double nan\n", "Double nan:7ff8000000000001\n"), "~v");
    EXPECT_EQ(Changes("Double 0\n", "Double -0\n"), "~v");
    EXPECT_EQ(Changes("DoubleSet {nan}\n", "DoubleSet {nan}\n"), "");
}

TEST(DiffTest, AToleranceLetsDoublesDiffer) {
    KivInspect::DiffOptions options;
    options.absolute = 0.25;
    EXPECT_EQ(Changes("Double 1\n", "Double 1.25\n", options), "");
    EXPECT_EQ(Changes("Double 1\n", "Double 1.2501\n", options), "~v");
    EXPECT_EQ(Changes("Double inf\n", "Double 1\n", options), "~v");
    options.absolute = 0;
    options.relative = 0.5;
    EXPECT_EQ(Changes("Double 1000\n", "Double 2000\n", options), "");
    EXPECT_EQ(Changes("Double 1000\n", "Double 2001\n", options), "~v");
    EXPECT_EQ(Changes("DoubleSet {1, 1000}\n", "DoubleSet {1, 1500}\n", options), "");
}

TEST(DiffTest, WhatIsMoreTransientThanTheLimitDoesNotCount) {
    KivInspect::DiffOptions options;
    options.limit = TemporalityPersistent;
    EXPECT_EQ(
        Changes("Map persistent\n  0: Integer 1\n  1: Integer transient 1\n",
                "Map persistent\n  0: Integer 1\n  1: Integer transient 2\n  2: Map temporary\n    0: Integer 1\n",
                options),
        "");
    options.limit = TemporalityTransient;
    EXPECT_EQ(Changes("Map persistent\n  1: Integer transient 1\n", "Map persistent\n  1: Integer transient 2\n",
                      options),
              "~1:v");
}

TEST(DiffTest, TheWalkNeedsNoStackForItsDepth) {
    const auto deep = [] {
        auto tree = NewTree();
        Composite* deepest = NewRootMap(tree.Get());
        for (int level = 0; level < 200000; ++level) {
            deepest = New<Map>(deepest, 0);
        }
        return tree;
    };
    EXPECT_TRUE(KivInspect::AreSame(deep().Get(), deep().Get()));
}

}  // namespace
}  // namespace InspectTest
