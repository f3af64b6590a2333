#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ostream>
#include <string>
#include <vector>

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

TEST(ToolTest, AWrongValueOfAnOptionGetsOneLine) {
    EXPECT_EQ(RunTool({"ls", "--sort", "siez", EveryKind}).err,
              "kivtree: --sort: 'siez' is none of key,kind,tag,temporality,size. Did you mean 'size'? "
              "kivtree ls --help lists what it takes.\n");
    EXPECT_EQ(RunTool({"dump", "--depth", "x", EveryKind}).err,
              "kivtree: --depth: 'x' is no whole number. kivtree dump --help lists what it takes.\n");
    EXPECT_EQ(RunTool({"dump", "--children", "0", EveryKind}).err,
              "kivtree: --children: '0' is no whole number from 1 up. kivtree dump --help lists what it takes.\n");
    const Ran ran = RunTool({"diff", "--abs", "-1", EveryKind, EveryKind});
    EXPECT_EQ(ran.err, "kivtree: --abs: '-1' is no number from 0 up. kivtree diff --help lists what it takes.\n");
    EXPECT_EQ(ran.code, 2);
}

TEST(ToolTest, StandardInputIsReadOnce) {
    const Ran ran = RunTool({"diff", "-", "-"}, ReadFile(EveryKind));
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.err, "kivtree: standard input can be read but once: name a file for the other tree.\n");
    EXPECT_EQ(RunTool({"diff", "-", EveryKind}, ReadFile(EveryKind)).code, 0);
}

TEST(ToolTest, AWordLikeNoOtherGetsNoSuggestion) {
    EXPECT_EQ(RunTool({"-x"}).err, "kivtree: there is no verb '-x'. kivtree help lists the verbs.\n");
}

/// What is no tree, and what was one.
struct BadFile {
    const char* name;
    std::string bytes;
    const char* says;
};

void PrintTo(const BadFile& file, std::ostream* out) {
    *out << file.name;
}

/// Whether something takes less than a second. A busy machine may need more than one try.
template <class Step>
bool IsQuick(Step step) {
    for (int attempt = 0; attempt < 5; ++attempt) {
        const auto begin = std::chrono::steady_clock::now();
        step();
        if (std::chrono::steady_clock::now() - begin < std::chrono::seconds(1)) {
            return true;
        }
    }
    return false;
}

class BadFileTest : public testing::TestWithParam<BadFile> {};

TEST_P(BadFileTest, EveryVerbEndsWithOneSentenceAndCodeTwoWithinASecond) {
    const Folder folder;
    const std::string file = folder / GetParam().name;
    WriteFile(file, GetParam().bytes);
    const std::vector<std::vector<std::string>> all = {{"info", file},
                                                       {"ls", file},
                                                       {"dump", file},
                                                       {"get", file, "0:"},
                                                       {"find", file, "-e", "x"},
                                                       {"diff", file, EveryKind},
                                                       {"diff", EveryKind, file},
                                                       {"merge", file, EveryKind, "-o", "-"},
                                                       {"merge3", EveryKind, EveryKind, file, "-o", "-"},
                                                       {"check", file},
                                                       {"check", "--checksums", file},
                                                       {"convert", "--to", "text", file},
                                                       {"stats", file},
                                                       {"view", file},
                                                       {"annotate", file}};
    for (const auto& words : all) {
        Ran ran;
        EXPECT_TRUE(IsQuick([&] { ran = RunTool(words); })) << words[0];
        EXPECT_EQ(ran.code, 2) << words[0];
        EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << words[0] << ": " << ran.err;
        EXPECT_NE(ran.err.find(GetParam().name), std::string::npos) << words[0] << ": " << ran.err;
        const bool says = ran.err.find(GetParam().says) != std::string::npos ||
                          ran.err.find("is not in the binary form") != std::string::npos;
        EXPECT_TRUE(says) << words[0] << ": " << ran.err;
    }
}

std::string Damaged() {
    std::string bytes = ReadFile(EveryKind);
    bytes[60] = static_cast<char>(bytes[60] ^ 1);
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(Files, BadFileTest,
                         testing::Values(BadFile{"empty", "", "is empty. Take it from a copy."},
                                         BadFile{"foreign", "MZ and more", "Check"},
                                         BadFile{"cut", ReadFile(EveryKind).substr(0, 100), "kivtree salvage "},
                                         BadFile{"damaged", Damaged(), "kivtree salvage "},
                                         BadFile{"text", "kivtext 1\nMap\n  0: Stringg \"x\"\n", "line 3"},
                                         BadFile{"json", "{\"kivtree\": 1, \"root\": {\"kind\": 5}}", "line 1"}),
                         [](const auto& each) { return std::string(each.param.name); });

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
