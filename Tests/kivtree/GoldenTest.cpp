#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

/// Words that print something, how that ends, and the file of Tests/data/kivtree that has what is printed.
struct Golden {
    const char* file;
    std::vector<std::string> words;
    int code = 0;
};

void PrintTo(const Golden& golden, std::ostream* out) {
    *out << golden.file;
}

const std::string EveryKind = Data("tree-of-every-kind.kiv");

/// Trees that stand still: of every kind, with what a save would lose, and one with a byte that is not as it was.
class GoldenTest : public testing::TestWithParam<Golden> {
protected:
    GoldenTest() {
        // Sentences name files as they were given.
        std::filesystem::current_path(std::filesystem::u8path(folder_ / ""));
        std::string bytes = ReadFile(EveryKind);
        bytes[100] = static_cast<char>(bytes[100] ^ 0x10);
        WriteFile(folder_ / "one-bit.kiv", bytes);
        bytes[200] = static_cast<char>(bytes[200] ^ 0x55);
        WriteFile(folder_ / "damaged.kiv", bytes);
        WriteFile(folder_ / "cut.kiv", bytes.substr(0, 150));
        WriteFile(folder_ / "lossy.kivtext",
                  "kivtext 1\nMap\n  0: Map\n    0: String \"a\\u0000b\"\n    1: String \"\\ud800\"\n"
                  "    2: Integer temporary 1\n  1: Integer 5\n");
        WriteFile(folder_ / "named.kivtext", "kivtext 1\nMap\n  0: Map #4100\n    1: Integer 1\n");
        WriteFile(folder_ / "named.kivtext.names.json",
                  R"({"names": 1, "tags": {"4100": {"name": "group", "indexes": {"1": "members"}}}})");
    }

    ~GoldenTest() override { std::filesystem::current_path(before_); }

private:
    std::filesystem::path before_ = std::filesystem::current_path();
    Folder folder_;
};

TEST_P(GoldenTest, PrintsWhatItAlwaysHas) {
    const Ran ran = RunTool(GetParam().words);
    EXPECT_EQ(ran.code, GetParam().code) << ran.err;
    EXPECT_EQ(ran.out, ReadFile(Data(std::string("kivtree/") + GetParam().file)));
    EXPECT_EQ(ran.err.empty(), GetParam().code < 2) << ran.err;
}

INSTANTIATE_TEST_SUITE_P(
    Verbs, GoldenTest,
    testing::Values(
        Golden{"info.txt", {"info", EveryKind}}, Golden{"info.json", {"info", "--json", EveryKind}},
        Golden{"info-of-text.txt", {"info", "named.kivtext"}},
        Golden{"info-without-binary-form.txt", {"info", "lossy.kivtext"}, 2},
        Golden{"dump.txt", {"dump", "--all", EveryKind}}, Golden{"dump-with-names.txt", {"dump", "named.kivtext"}},
        Golden{"check.txt", {"check", EveryKind}}, Golden{"check.json", {"check", "--json", EveryKind}},
        Golden{"check-lossy.txt", {"check", "lossy.kivtext"}, 1},
        Golden{"check-strict.json", {"check", "--strict", "--json", "lossy.kivtext"}, 1},
        Golden{"check-damaged.txt", {"check", "damaged.kiv"}, 2},
        Golden{"check-damaged.json", {"check", "--json", "damaged.kiv"}, 2},
        Golden{"annotate.txt", {"annotate", EveryKind}},
        Golden{"annotate-part.txt", {"annotate", "--from", "0x52", "--to", "110", EveryKind}},
        Golden{"annotate-damaged.txt", {"annotate", "damaged.kiv"}, 2},
        Golden{"annotate-cut.txt", {"annotate", "cut.kiv"}, 2}, Golden{"salvage-whole.txt", {"salvage", EveryKind}},
        Golden{"salvage-repaired.txt", {"salvage", "one-bit.kiv"}}, Golden{"stats.txt", {"stats", EveryKind}},
        Golden{"stats-top.txt", {"stats", "--top", "2", EveryKind}},
        Golden{"stats.json", {"stats", "--json", EveryKind}}, Golden{"stats.svg", {"stats", "--svg", "-", EveryKind}},
        Golden{"view.dot", {"view", "--format", "dot", "--depth", "2", "--limit", "5", EveryKind}},
        Golden{"view.svg", {"view", "--format", "svg", EveryKind}}, Golden{"help.txt", {"help"}}),
    [](const auto& each) {
        std::string name = each.param.file;
        for (char& c : name) {
            c = c == '-' || c == '.' ? '_' : c;
        }
        return name;
    });

}  // namespace
}  // namespace ToolTest
