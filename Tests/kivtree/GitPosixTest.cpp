#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include <sys/wait.h>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

/// A repository with the settings that the document recommends.
class GitTest : public testing::Test {
protected:
    GitTest() {
        Do("git init -q -b main .");
        Do("git config user.name Tester");
        Do("git config user.email tester@example.invalid");
        Do("git config commit.gpgsign false");
        Do("git config diff.kivtree.textconv \"" KIVTREE " convert --to text\"");
        Do("git config merge.kivtree.name \"trees by key\"");
        Do("git config merge.kivtree.driver \"" KIVTREE " merge3 %O %A %B -f -o %A\"");
        WriteFile(folder_ / ".gitattributes", "*.kiv diff=kivtree merge=kivtree\n*.kivtext merge=kivtree\n");
        Save("    0: Integer 1\n    1: String \"old\"\n");
        Do("git add . && git commit -q -m one");
    }

    /// Runs a command in the repository; returns its exit code.
    int Do(const std::string& command) {
        const std::string all = "cd '" + (folder_ / "") + "' && export HOME=\"$PWD\" GIT_CONFIG_NOSYSTEM=1 && { " +
                                command + "; } >'" + output_ + "' 2>&1";
        const int status = std::system(all.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string Output() const { return ReadFile(output_); }

    /// Saves a tree with one map that has these children, in the binary form.
    void Save(const std::string& children) {
        const Ran ran = RunTool({"convert", "-f", "-", folder_ / "tree.kiv"}, "kivtext 1\nMap\n  0: Map\n" + children);
        EXPECT_EQ(ran.code, 0) << ran.err;
    }

    std::string Children() {
        const std::string text = RunTool({"convert", "--to", "text", folder_ / "tree.kiv"}).out;
        return text.substr(std::min(text.size(), std::string("kivtext 1\nMap\n  0: Map\n").size()));
    }

    Folder folder_;
    Folder elsewhere_;
    std::string output_ = elsewhere_ / "output";
};

TEST_F(GitTest, ADiffOfBinaryTreesShowsLines) {
    Save("    0: Integer 2\n    1: String \"old\"\n");
    EXPECT_EQ(Do("git diff"), 0);
    EXPECT_NE(Output().find("\n-    0: Integer 1\n+    0: Integer 2\n"), std::string::npos) << Output();
}

TEST_F(GitTest, BranchesThatChangeDifferentNodesMerge) {
    EXPECT_EQ(Do("git checkout -q -b other"), 0) << Output();
    Save("    0: Integer 1\n    1: String \"new\"\n");
    EXPECT_EQ(Do("git commit -q -a -m two && git checkout -q main"), 0) << Output();
    Save("    0: Integer 2\n    1: String \"old\"\n    2: Boolean true\n");
    EXPECT_EQ(Do("git commit -q -a -m three && git merge -q -m merged other"), 0) << Output();
    EXPECT_EQ(Children(), "    0: Integer 2\n    1: String \"new\"\n    2: Boolean true\n");
}

TEST_F(GitTest, AConflictIsListedAndLeftUnmerged) {
    EXPECT_EQ(Do("git checkout -q -b other"), 0) << Output();
    Save("    0: Integer 3\n    1: String \"old\"\n");
    EXPECT_EQ(Do("git commit -q -a -m two && git checkout -q main"), 0) << Output();
    Save("    0: Integer 2\n    1: String \"old\"\n");
    EXPECT_EQ(Do("git commit -q -a -m three"), 0) << Output();
    EXPECT_EQ(Do("git merge -m merged other"), 1);
    EXPECT_NE(Output().find("! 0:0: changed by both: 2 <> 3"), std::string::npos) << Output();
    EXPECT_EQ(Do("git ls-files -u"), 0);
    EXPECT_NE(Output().find("tree.kiv"), std::string::npos) << Output();
    EXPECT_EQ(Children(), "    0: Integer 2\n    1: String \"old\"\n");
}

}  // namespace
}  // namespace ToolTest
