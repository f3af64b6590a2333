#include <gtest/gtest.h>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

/// Two trees, and one that both come from.
class ComparingTest : public testing::Test {
protected:
    ComparingTest() {
        WriteFile(base_, "kivtext 1\nMap\n  0: Map\n    0: Integer 1\n    1: String \"old\"\n    2: Double 0.5\n");
        WriteFile(ours_, "kivtext 1\nMap\n  0: Map\n    0: Integer 2\n    1: String \"old\"\n    2: Double 0.5\n");
        WriteFile(
            theirs_,
            "kivtext 1\nMap\n  0: Map\n    0: Integer 1\n    1: String \"new\"\n    3: Map #5\n      0: Integer 1\n");
    }

    Folder folder_;
    std::string base_ = folder_ / "base.kivtext";
    std::string ours_ = folder_ / "ours.kivtext";
    std::string theirs_ = folder_ / "theirs.kivtext";
};

TEST_F(ComparingTest, ChangesAreLinesWithASign) {
    const Ran ran = RunTool({"diff", base_, theirs_});
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.out,
              "~ 0:1: \"old\" -> \"new\"\n"
              "- 0:2: Double persistent 0.5\n"
              "+ 0:3: Map #5 persistent 1 node below\n");
}

TEST_F(ComparingTest, TheSameTreeGivesNothingAndZero) {
    const Ran ran = RunTool({"diff", base_, base_});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out, "");
}

TEST_F(ComparingTest, QuietAndStatPrintNoChanges) {
    EXPECT_EQ(RunTool({"diff", "-q", base_, theirs_}).out, "");
    EXPECT_EQ(RunTool({"diff", "-q", base_, theirs_}).code, 1);
    EXPECT_EQ(RunTool({"diff", "--stat", base_, theirs_}).out, "1 added, 1 removed, 1 changed, 4 compared\n");
}

TEST_F(ComparingTest, JsonHasOldAndNew) {
    EXPECT_EQ(RunTool({"diff", "--json", base_, ours_}).out,
              "{\"change\":\"changed\",\"key\":\"0:0:\","
              "\"old\":{\"key\":\"0:0:\",\"kind\":\"Integer\",\"temporality\":\"persistent\",\"value\":\"1\"},"
              "\"new\":{\"key\":\"0:0:\",\"kind\":\"Integer\",\"temporality\":\"persistent\",\"value\":\"2\"}}\n");
}

TEST_F(ComparingTest, AMissingTreeIsTrouble) {
    EXPECT_EQ(RunTool({"diff", base_, folder_ / "none.kiv"}).code, 2);
}

TEST_F(ComparingTest, ColoursAreUsedWhenAsked) {
    EXPECT_EQ(RunTool({"diff", "--color", "always", base_, ours_}).out, "\x1b[33m~ 0:0: 1 -> 2\x1b[0m\n");
}

TEST_F(ComparingTest, AMergeOfThreeTakesBothSidesChanges) {
    const std::string result = folder_ / "result.kivtext";
    const Ran ran = RunTool({"merge3", base_, ours_, theirs_, "-o", result});
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ReadFile(result),
              "kivtext 1\nMap\n  0: Map\n    0: Integer 2\n    1: String \"new\"\n    3: Map #5\n      0: Integer 1\n");
}

TEST_F(ComparingTest, ConflictsAreListedAndSettledWhenAsked) {
    const std::string result = folder_ / "result.kivtext";
    WriteFile(theirs_, "kivtext 1\nMap\n  0: Map\n    0: Integer 3\n    1: String \"old\"\n    2: Double 0.5\n");
    const Ran ran = RunTool({"merge3", base_, ours_, theirs_, "-o", result});
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.out, "! 0:0: changed by both: 2 <> 3\n");
    EXPECT_EQ(ReadFile(result), ReadFile(ours_));
    const Ran settled = RunTool({"merge3", "--theirs", "-f", base_, ours_, theirs_, "-o", result});
    EXPECT_EQ(settled.code, 0);
    EXPECT_EQ(ReadFile(result), ReadFile(theirs_));
    EXPECT_EQ(RunTool({"merge3", "--ours", "--theirs", base_, ours_, theirs_, "-o", "-"}).code, 2);
}

TEST_F(ComparingTest, AMergeOfTwoCopiesWhatIsMissing) {
    const Ran ran = RunTool({"merge", ours_, theirs_, "-o", "-"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.out,
              "kivtext 1\nMap\n  0: Map\n    0: Integer 2\n    1: String \"old\"\n    2: Double 0.5\n"
              "    3: Map #5\n      0: Integer 1\n");
    EXPECT_EQ(ran.err, "kivtree: ! 0:0: value: 2 <> 1\nkivtree: ! 0:1: value: \"old\" <> \"new\"\n");
}

TEST_F(ComparingTest, FindPrintsWhatIsAskedFor) {
    EXPECT_EQ(RunTool({"find", base_, "-e", "^o.d$"}).out, "0:1:  String persistent  \"old\"\n");
    EXPECT_EQ(RunTool({"find", base_, "--kind", "integer", "--paths"}).out, "0:0:\n");
    EXPECT_EQ(RunTool({"find", base_, "--key", "0:*", "--count"}).out, "3\n");
    EXPECT_EQ(RunTool({"find", base_, "--key", "0:*", "-m", "1", "--paths"}).out, "0:0:\n");
    EXPECT_EQ(RunTool({"find", base_, "--value", "new"}).code, 1);
    EXPECT_EQ(RunTool({"find", base_, "-e", "("}).code, 2);
    EXPECT_EQ(RunTool({"find", base_, "--kind", "Sting"}).err,
              "kivtree: 'Sting' is no kind of node. Did you mean 'String'?\n");
}

TEST_F(ComparingTest, ADumpIsAbbreviatedAndSaysSo) {
    std::string text = "kivtext 1\nVector\n";
    for (int i = 0; i < 12; ++i) {
        text += "  - Integer " + std::to_string(i) + "\n";
    }
    WriteFile(base_, text);
    EXPECT_EQ(RunTool({"dump", "--children", "2", base_}).out,
              "Vector, 12 children\n  0: Integer 0\n  1: Integer 1\n  ... 10 more children\n(abbreviated: --all shows "
              "everything)\n");
    EXPECT_EQ(RunTool({"dump", "--depth", "0", base_}).out,
              "Vector, 12 children\n(abbreviated: --all shows everything)\n");
    const Ran all = RunTool({"dump", "--all", base_});
    EXPECT_EQ(all.out.substr(all.out.size() - 18), "\n  11: Integer 11\n");
}

}  // namespace
}  // namespace ToolTest
