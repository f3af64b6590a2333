#include <gtest/gtest.h>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

const std::string EveryKind = Data("tree-of-every-kind.kiv");

TEST(LsTest, TheRootsChildrenAreListedWithoutAKey) {
    const Ran ran = RunTool({"ls", EveryKind});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out, "0:  Map         4100      persistent  83        12 children\n");
    EXPECT_EQ(ran.err, "");
}

TEST(LsTest, TheChildrenOfAVectorAreListedByItsKey) {
    const Ran ran = RunTool({"ls", EveryKind, "0:6:"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out,
              "0:6:0:  Integer               default     4         7\n"
              "0:6:1:  Integer               default     4         8\n");
}

TEST(LsTest, EveryNodeBelowIsListedRecursively) {
    const Ran ran = RunTool({"ls", "-r", EveryKind});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out,
              "0:      Map         4100      persistent  83        12 children\n"
              "0:1:    Integer               persistent  4         -2\n"
              "0:2:    GlobalID              persistent  16        {12345678-9abc-def0-0102-030405060708}\n"
              "0:3:    String                persistent  8         \"Käse\"\n"
              "0:4:    Double                persistent  8         0.5\n"
              "0:5:    Boolean               persistent  1         true\n"
              "0:6:    Vector                persistent  8         2 children\n"
              "0:6:0:  Integer               default     4         7\n"
              "0:6:1:  Integer               default     4         8\n"
              "0:7:    Map         70000     persistent  0         0 children\n"
              "0:8:    IntegerSet            persistent  4         {-1}\n"
              "0:9:    IdSet                 persistent  16        {{12345678-9abc-def0-0102-030405060708}}\n"
              "0:10:   StringSet             persistent  2         {\"a\"}\n"
              "0:11:   DoubleSet             persistent  8         {2}\n"
              "0:12:   Integer64             persistent  8         4294967298\n");
}

TEST(LsTest, SortingBySizePutsTheLargestFirst) {
    const Ran ran = RunTool({"ls", "--sort", "size", EveryKind, "0:"});
    EXPECT_EQ(ran.out.substr(0, ran.out.find(' ')), "0:2:");
}

TEST(LsTest, JsonHasOneObjectALine) {
    const Ran ran = RunTool({"ls", "--json", EveryKind});
    EXPECT_EQ(
        ran.out,
        "{\"key\":\"0:\",\"kind\":\"Map\",\"tag\":4100,\"temporality\":\"persistent\",\"children\":12,\"size\":83}\n");
}

TEST(LsTest, AMissingKeyEndsWithOne) {
    const Ran ran = RunTool({"ls", EveryKind, "0:99:"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_NE(ran.err.find("\"0:\" has no child \"99\"."), std::string::npos) << ran.err;
}

TEST(GetTest, AValueIsPrintedOnOneLine) {
    EXPECT_EQ(RunTool({"get", EveryKind, "0:3:"}).out, "\"Käse\"\n");
    EXPECT_EQ(RunTool({"get", EveryKind, "0:12"}).out, "4294967298\n");
}

TEST(GetTest, ARawTextHasNoQuotesAndNoLineEnd) {
    EXPECT_EQ(RunTool({"get", "--raw", EveryKind, "0:3:"}).out, "Käse");
}

TEST(GetTest, TheDefaultIsPrintedWhereNothingIs) {
    const Ran ran = RunTool({"get", "--default", "none", EveryKind, "5:"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out, "none\n");
}

TEST(GetTest, AMissingKeyWithoutADefaultEndsWithOne) {
    const Ran ran = RunTool({"get", EveryKind, "0:3:1:"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.err.find("\"0:3:\" is a value: nothing stands below it."), std::string::npos) << ran.err;
}

TEST(GetTest, ATreeComesFromStandardInput) {
    EXPECT_EQ(RunTool({"get", "-", "0:1:"}, ReadFile(EveryKind)).out, "-2\n");
}

}  // namespace
}  // namespace ToolTest
