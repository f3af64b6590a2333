#include <gtest/gtest.h>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

const std::string EveryKind = Data("tree-of-every-kind.kiv");

using Names = std::vector<std::string>;

const char* const EveryKindAsText =
    "kivtext 1\n"
    "Map\n"
    "  0: Map #4100\n"
    "    1: Integer -2\n"
    "    2: GlobalID {12345678-9abc-def0-0102-030405060708}\n"
    "    3: String \"Käse\"\n"
    "    4: Double 0.5\n"
    "    5: Boolean true\n"
    "    6: Vector\n"
    "      - Integer 7\n"
    "      - Integer 8\n"
    "    7: Map #70000\n"
    "    8: IntegerSet {-1}\n"
    "    9: IdSet {{12345678-9abc-def0-0102-030405060708}}\n"
    "    10: StringSet {\"a\"}\n"
    "    11: DoubleSet {2}\n"
    "    12: Integer64 4294967298\n";

TEST(ConvertTest, ATreeGoesToStandardOutputAsText) {
    const Ran ran = RunTool({"convert", "--to", "text", EveryKind});
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_EQ(ran.out, EveryKindAsText);
    EXPECT_EQ(ran.err, "");
}

TEST(ConvertTest, EveryFormGivesBackTheSameFile) {
    const Folder folder;
    EXPECT_EQ(RunTool({"convert", EveryKind, folder / "a.kivtext"}).code, 0);
    EXPECT_EQ(RunTool({"convert", folder / "a.kivtext", folder / "b.json"}).code, 0);
    EXPECT_EQ(RunTool({"convert", folder / "b.json", folder / "c.kiv"}).code, 0);
    EXPECT_EQ(RunTool({"convert", folder / "c.kiv", folder / "d.kivtext"}).code, 0);
    EXPECT_EQ(ReadFile(folder / "a.kivtext"), EveryKindAsText);
    EXPECT_EQ(ReadFile(folder / "d.kivtext"), EveryKindAsText);
    EXPECT_EQ(ReadFile(folder / "c.kiv"), ReadFile(EveryKind));
    EXPECT_EQ(folder.GetNames(), (Names{"a.kivtext", "b.json", "c.kiv", "d.kivtext"}));
}

TEST(ConvertTest, AFileIsOverwrittenOnlyWhenAsked) {
    const Folder folder;
    WriteFile(folder / "a.kivtext", "mine");
    const Ran ran = RunTool({"convert", EveryKind, folder / "a.kivtext"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_NE(ran.err.find("a.kivtext\" exists. -f overwrites it."), std::string::npos) << ran.err;
    EXPECT_EQ(ReadFile(folder / "a.kivtext"), "mine");
    EXPECT_EQ(RunTool({"convert", "-f", EveryKind, folder / "a.kivtext"}).code, 0);
    EXPECT_EQ(ReadFile(folder / "a.kivtext"), EveryKindAsText);
    EXPECT_EQ(folder.GetNames(), (Names{"a.kivtext"}));
}

TEST(ConvertTest, WhatTheBinaryFormCannotHoldIsToldAndNothingIsWritten) {
    const Folder folder;
    const Ran ran =
        RunTool({"convert", "-", folder / "a.kiv"}, "kivtext 1\nMap\n  0: Map\n    0: String \"a\\u0000b\"\n");
    EXPECT_EQ(ran.code, 2);
    EXPECT_NE(ran.err.find("0:0:"), std::string::npos) << ran.err;
    EXPECT_NE(ran.err.find("1 of its nodes would be lost or altered"), std::string::npos) << ran.err;
    EXPECT_EQ(folder.GetNames(), Names());
}

TEST(ConvertTest, TransientNodesStayAndTemporaryOnesAreSaidToGo) {
    const Folder folder;
    const Ran ran = RunTool({"convert", "-", folder / "a.kiv"},
                            "kivtext 1\nMap\n  0: Map\n    0: Integer transient 1\n    1: Integer temporary 2\n");
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_EQ(ran.err, "kivtree: 1 temporary node is left out: it is never saved.\n");
    EXPECT_EQ(RunTool({"convert", "--to", "text", folder / "a.kiv"}).out,
              "kivtext 1\nMap\n  0: Map\n    0: Integer transient 1\n");
}

TEST(ConvertTest, AFormThatNobodyNamesIsAskedFor) {
    const Ran ran = RunTool({"convert", EveryKind, "tree.txt"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_NE(ran.err.find("name it with --to"), std::string::npos) << ran.err;
}

TEST(ConvertTest, MalformedTextIsNamedByLine) {
    const Ran ran = RunTool({"ls", "-"}, "kivtext 1\nMap\n  x\n");
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.err, "kivtree: standard input, line 3: \"x\" is no kind of node.\n");
}

TEST(ConvertTest, AFolderThatIsMissingIsNamed) {
    const Ran ran = RunTool({"convert", EveryKind, "/nowhere/a.kivtext"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_NE(ran.err.find("file \"/nowhere/a.kivtext\" cannot be written"), std::string::npos) << ran.err;
}

TEST(ImportTest, ADocumentBecomesATreeWithNames) {
    const Folder folder;
    const Ran ran =
        RunTool({"import", "-", folder / "a.kiv"},
                R"({"name": "Ada", "year": 1815, "tags": ["a", 1, null], "big": [1, 4294967296], "none": {}})");
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_EQ(folder.GetNames(), (Names{"a.kiv", "a.kiv.names.json"}));
    EXPECT_EQ(RunTool({"dump", folder / "a.kiv"}).out,
              "Map #18000 document, 1 child\n"
              "  document: Map #18001 object, 5 children\n"
              "    name: String \"Ada\"\n"
              "    year: Integer 1815\n"
              "    tags: Map #18002 list, 3 children\n"
              "      0: String \"a\"\n"
              "      1: Integer 1\n"
              "      2: Map #18003 null, 0 children\n"
              "    big: Vector, 2 children\n"
              "      0: Double persistent 1\n"
              "      1: Double persistent 4294967296\n"
              "    none: Map #18001 object, 0 children\n");
    EXPECT_EQ(RunTool({"get", folder / "a.kiv", "document:year"}).out, "1815\n");
    EXPECT_EQ(RunTool({"get", folder / "a.kiv", "0:1"}).out, "1815\n");
    EXPECT_EQ(RunTool({"ls", "--no-names", folder / "a.kiv"}).out.substr(0, 2), "0:");
}

TEST(ImportTest, HardValuesAreKept) {
    const Folder folder;
    const Ran ran = RunTool({"import", "-", folder / "a.kivtext"},
                            R"([123456789012345678901, "a\u0000b", -0.0, {"a": 1, "a": 2}])");
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_EQ(ran.err, "kivtree: 1 member has been replaced by a later one of the same name in their object.\n");
    EXPECT_EQ(
        ReadFile(folder / "a.kivtext"),
        "kivtext 1\nMap #18000\n  0: Map #18002\n"
        "    0: Map #18005\n      0: String \"123456789012345678901\"\n"
        "    1: Map #18006\n      0: Vector\n        - String \"a\"\n        - String \"\"\n        - String \"b\"\n"
        "    2: Double -0\n"
        "    3: Map #18001\n      0: Integer 2\n");
}

TEST(ImportTest, WhatIsNoJsonIsNamedByLine) {
    const Folder folder;
    const Ran ran = RunTool({"import", "-", folder / "a.kiv"}, "{\"a\": 1,\n\"b\" 2}");
    EXPECT_EQ(ran.code, 2);
    EXPECT_NE(ran.err.find("standard input, line 2: this is no JSON"), std::string::npos) << ran.err;
    EXPECT_EQ(folder.GetNames(), Names());
}

}  // namespace
}  // namespace ToolTest
