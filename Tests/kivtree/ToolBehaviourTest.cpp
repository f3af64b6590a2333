#include <gtest/gtest.h>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

const std::string EveryKind = Data("tree-of-every-kind.kiv");

TEST(ToolTest, TheVersionIsPrinted) {
    const Ran ran = RunTool({"--version"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out.substr(0, 8), "kivtree ");
    EXPECT_EQ(ran.out, RunTool({"version"}).out);
}

TEST(ToolTest, HelpGoesToStandardOutput) {
    const Ran ran = RunTool({"--help"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out.substr(0, 6), "Looks ");
    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(RunTool({"help", "get"}).out, RunTool({"get", "--help"}).out);
    EXPECT_NE(RunTool({"get", "--help"}).out.find("--default"), std::string::npos);
}

TEST(ToolTest, AWrongVerbGetsOneLineWithASuggestion) {
    const Ran ran = RunTool({"gte"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, "kivtree: there is no verb 'gte'. Did you mean 'get'? kivtree help lists the verbs.\n");
}

TEST(ToolTest, AWrongOptionGetsOneLineWithASuggestion) {
    const Ran ran = RunTool({"get", "--rwa", EveryKind, "0:"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.err,
              "kivtree: The following argument was not expected: --rwa. Did you mean '--raw'? "
              "kivtree get --help lists what it takes.\n");
}

TEST(ToolTest, AMissingFileIsNamed) {
    const Ran ran = RunTool({"get", "/nowhere/tree.kiv", "0:"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_NE(ran.err.find("/nowhere/tree.kiv"), std::string::npos) << ran.err;
    EXPECT_NE(ran.err.find("There is no such file"), std::string::npos) << ran.err;
}

TEST(ToolTest, ADamagedFileIsToldFromAForeignOne) {
    const Folder folder;
    std::string bytes = ReadFile(EveryKind);
    bytes[60] = static_cast<char>(bytes[60] ^ 1);
    WriteFile(folder / "damaged.kiv", bytes);
    WriteFile(folder / "cut.kiv", bytes.substr(0, 30));
    WriteFile(folder / "empty.kiv", "");
    const Ran damaged = RunTool({"ls", folder / "damaged.kiv"});
    EXPECT_EQ(damaged.code, 2);
    EXPECT_NE(damaged.err.find("A block does not match its checksum"), std::string::npos) << damaged.err;
    EXPECT_NE(damaged.err.find("kivtree salvage "), std::string::npos) << damaged.err;
    const Ran cut = RunTool({"ls", folder / "cut.kiv"});
    EXPECT_EQ(cut.code, 2);
    EXPECT_NE(cut.err.find("The data end too early"), std::string::npos) << cut.err;
    const Ran empty = RunTool({"ls", folder / "empty.kiv"});
    EXPECT_EQ(empty.code, 2);
    EXPECT_NE(empty.err.find("empty.kiv"), std::string::npos) << empty.err;
    const Ran foreign = RunTool({"ls", KIVTREE});
    EXPECT_EQ(foreign.code, 2);
    EXPECT_NE(foreign.err.find("do not begin as saved trees do"), std::string::npos) << foreign.err;
}

}  // namespace
}  // namespace ToolTest
