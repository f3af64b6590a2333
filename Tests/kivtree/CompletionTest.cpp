#include <gtest/gtest.h>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

void ExpectInstalled(const std::string& shell, const std::string& file) {
    const Ran ran = RunTool({"completion", shell});
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_EQ(ran.out, ReadFile(std::string(KIV_PROJECT "/Tools/completions/") + file))
        << "After a change of the options that is meant: kivtree completion " << shell << " >Tools/completions/"
        << file;
}

TEST(CompletionTest, WhatIsInstalledIsWhatTheToolPrints) {
    ExpectInstalled("bash", "kivtree");
    ExpectInstalled("zsh", "_kivtree");
    ExpectInstalled("fish", "kivtree.fish");
}

TEST(CompletionTest, AnUnknownShellIsRefused) {
    const Ran ran = RunTool({"completion", "tcsh"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.out, "");
    EXPECT_NE(ran.err.find("tcsh"), std::string::npos) << ran.err;
}

}  // namespace
}  // namespace ToolTest
