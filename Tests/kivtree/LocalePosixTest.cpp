#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

/// Locales that are made for the test: one with a comma in numbers, and one in which the capital of i is another letter.
class LocaleTest : public testing::TestWithParam<const char*> {
protected:
    LocaleTest() {
        const std::string name = GetParam();
        EXPECT_EQ(Run({"localedef", "-i", name, "-f", "UTF-8", folder_ / (name + ".UTF-8")}).code, 0);
    }

    /// Runs a program in the locale.
    Ran RunThere(std::vector<std::string> words) const {
        words.insert(words.begin(), {"LOCPATH=" + (folder_ / ""), "LC_ALL=" + std::string(GetParam()) + ".UTF-8"});
        return Run(words);
    }

private:
    Ran Run(const std::vector<std::string>& words) const {
        const auto path = [this](const char* name) { return std::filesystem::u8path(folder_ / name); };
        WriteFile(folder_ / "none", "");
        Ran ran;
        ran.code = Start("/usr/bin/env", words, path("none"), path("out"), path("err"));
        ran.out = ReadFile(folder_ / "out");
        ran.err = ReadFile(folder_ / "err");
        return ran;
    }

    Folder folder_;
};

TEST_P(LocaleTest, EveryVerbPrintsTheSame) {
    const std::string tree = Data("tree-of-every-kind.kiv");
    ASSERT_EQ(RunThere({"locale", "decimal_point"}).out, ",\n") << "The locale is not in force.";
    const std::vector<std::vector<std::string>> all = {{"info", tree},
                                                       {"ls", "-r", tree},
                                                       {"ls", "--json", tree, "0:"},
                                                       {"dump", "--all", tree},
                                                       {"get", tree, "0:4:"},
                                                       {"find", "--kind", "INTEGER", tree},
                                                       {"find", "-i", "-e", "K.SE", tree},
                                                       {"convert", "--to", "text", tree},
                                                       {"convert", "--to", "json", tree},
                                                       {"diff", "--rel", "0.5", tree, tree},
                                                       {"check", tree},
                                                       {"stats", tree},
                                                       {"stats", "--svg", "-", tree},
                                                       {"view", tree},
                                                       {"view", "--format", "svg", tree},
                                                       {"annotate", tree},
                                                       {"help", "--all"}};
    for (std::vector<std::string> words : all) {
        const Ran here = RunTool(words);
        words.insert(words.begin(), KIVTREE);
        const Ran there = RunThere(words);
        EXPECT_EQ(here.code, there.code) << words[1];
        EXPECT_EQ(here.out, there.out) << words[1];
        EXPECT_EQ(here.err, there.err) << words[1];
    }
}

INSTANTIATE_TEST_SUITE_P(Locales, LocaleTest, testing::Values("de_DE", "tr_TR"),
                         [](const auto& each) { return std::string(each.param); });

}  // namespace
}  // namespace ToolTest
