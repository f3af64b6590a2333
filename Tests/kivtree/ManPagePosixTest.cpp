#include <gtest/gtest.h>

#include <cstdlib>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

TEST(ManPageTest, TheManualPageSaysWhatTheToolSays) {
    const Folder folder;
    const std::string command =
        "'" KIV_PROJECT "/cmake/man-page' '" KIVTREE "' >'" + (folder / "page") + "' 2>'" + (folder / "err") + "'";
    ASSERT_EQ(std::system(command.c_str()), 0) << ReadFile(folder / "err");
    EXPECT_EQ(ReadFile(folder / "page"), ReadFile(KIV_PROJECT "/Docs/kivtree.1"))
        << "After a change of the help that is meant: cmake/man-page build/test/bin/kivtree >Docs/kivtree.1";
}

}  // namespace
}  // namespace ToolTest
