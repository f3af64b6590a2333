#include <gtest/gtest.h>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

/// What bash offers when the last of these words is completed.
std::string Offered(const std::string& words) {
    const Folder folder;
    WriteFile(folder / "script", "source '" KIV_PROJECT "/Tools/completions/kivtree'\nCOMP_WORDS=(kivtree " + words +
                                     ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_kivtree\necho \"${COMPREPLY[@]}\"\n");
    WriteFile(folder / "none", "");
    const auto path = [&folder](const char* name) { return std::filesystem::u8path(folder / name); };
    EXPECT_EQ(Start("/bin/bash", {folder / "script"}, path("none"), path("out"), path("err")), 0);
    EXPECT_EQ(ReadFile(folder / "err"), "");
    return ReadFile(folder / "out");
}

TEST(BashCompletionTest, VerbsAreOffered) {
    EXPECT_EQ(Offered("me"), "merge merge3\n");
    EXPECT_EQ(Offered("help sa"), "salvage\n");
}

TEST(BashCompletionTest, OptionsOfTheVerbAreOffered) {
    EXPECT_EQ(Offered("get --"), "--raw --default --help --color --names --no-names --no-progress\n");
    EXPECT_EQ(Offered("diff --ig"), "--ignore-temporality --ignore-tag\n");
}

TEST(BashCompletionTest, ShellsAreOffered) {
    EXPECT_EQ(Offered("completion b"), "bash\n");
}

}  // namespace
}  // namespace ToolTest
