#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

/// Takes a saved tree through every form and back, and expects the same bytes at each return.
void ExpectEveryFormGivesItBack(const Folder& folder, const std::string& tree) {
    const auto convert = [](const std::string& from, const std::string& to) {
        const Ran ran = RunTool({"convert", from, to});
        EXPECT_EQ(ran.code, 0) << from << ": " << ran.err;
    };
    convert(tree, folder / "1.kivtext");
    convert(folder / "1.kivtext", folder / "2.json");
    convert(folder / "2.json", folder / "3.kiv");
    convert(folder / "3.kiv", folder / "4.kivtext");
    EXPECT_GT(ReadFile(tree).size(), 0U);
    EXPECT_TRUE(ReadFile(tree) == ReadFile(folder / "3.kiv")) << tree;
    EXPECT_TRUE(ReadFile(folder / "1.kivtext") == ReadFile(folder / "4.kivtext")) << tree;
    const Ran same = RunTool({"diff", tree, folder / "2.json"});
    EXPECT_EQ(same.code, 0) << same.out.substr(0, 1000);
}

/// Lets every verb that looks at a tree, merges or draws it work on a saved one.
void ExpectEveryVerbTakesIt(const Folder& folder, const std::string& tree) {
    const std::vector<std::vector<std::string>> all = {{"info", tree},
                                                       {"ls", "-r", tree},
                                                       {"dump", tree},
                                                       {"dump", "--all", tree},
                                                       {"get", tree, ":"},
                                                       {"find", tree, "--kind", "Map", "--count"},
                                                       {"diff", tree, tree},
                                                       {"merge", tree, tree, "-o", folder / "merged.kiv"},
                                                       {"merge3", tree, tree, tree, "-o", folder / "merged3.kiv"},
                                                       {"check", "--strict", tree},
                                                       {"stats", tree},
                                                       {"stats", "--svg", folder / "stats.svg", tree},
                                                       {"view", tree, "-o", folder / "page.html"},
                                                       {"view", tree, tree, "-o", folder / "diff.html"},
                                                       {"view", "--format", "dot", tree},
                                                       {"view", "--format", "svg", "--depth", "3", tree},
                                                       {"annotate", tree},
                                                       {"salvage", tree, "-o", folder / "salvaged.kiv"}};
    for (const auto& words : all) {
        const Ran ran = RunTool(words);
        EXPECT_EQ(ran.code, 0) << words[0] << ": " << ran.err;
        EXPECT_EQ(ran.err, "") << words[0];
    }
    EXPECT_TRUE(ReadFile(tree) == ReadFile(folder / "merged.kiv")) << tree;
    EXPECT_TRUE(ReadFile(tree) == ReadFile(folder / "merged3.kiv")) << tree;
    EXPECT_TRUE(ReadFile(tree) == ReadFile(folder / "salvaged.kiv")) << tree;
}

class IsoCodesTest : public testing::TestWithParam<const char*> {};

TEST_P(IsoCodesTest, AnImportedDocumentGoesThroughEveryForm) {
    const Folder folder;
    const Ran ran = RunTool({"import", "/usr/share/iso-codes/json/" + std::string(GetParam()), folder / "0.kiv"});
    ASSERT_EQ(ran.code, 0) << ran.err;
    ExpectEveryFormGivesItBack(folder, folder / "0.kiv");
}

TEST_P(IsoCodesTest, EveryVerbTakesAnImportedDocument) {
    const Folder folder;
    const Ran ran = RunTool({"import", "/usr/share/iso-codes/json/" + std::string(GetParam()), folder / "0.kiv"});
    ASSERT_EQ(ran.code, 0) << ran.err;
    ExpectEveryVerbTakesIt(folder, folder / "0.kiv");
}

INSTANTIATE_TEST_SUITE_P(Documents, IsoCodesTest,
                         testing::Values("iso_15924.json", "iso_3166-1.json", "iso_3166-2.json", "iso_3166-3.json",
                                         "iso_4217.json", "iso_639-2.json", "iso_639-3.json", "iso_639-5.json",
                                         "schema-15924.json", "schema-3166-1.json", "schema-3166-2.json",
                                         "schema-3166-3.json", "schema-4217.json", "schema-639-2.json",
                                         "schema-639-3.json", "schema-639-5.json"),
                         [](const auto& each) {
                             std::string name = each.param;
                             for (char& c : name) {
                                 c = c == '-' || c == '.' ? '_' : c;
                             }
                             return name;
                         });

TEST(IsoCodesTest, ValuesAreFoundByTheNamesOfTheDocument) {
    const Folder folder;
    ASSERT_EQ(RunTool({"import", "/usr/share/iso-codes/json/iso_4217.json", folder / "a.kiv"}).code, 0);
    const Ran found = RunTool({"find", folder / "a.kiv", "-k", "document:*:*:alpha_3", "--value", "CHF"});
    EXPECT_EQ(found.code, 0) << found.err;
    EXPECT_NE(found.out.find("alpha_3:  String persistent  \"CHF\""), std::string::npos) << found.out;
}

/// The tree of the Unicode example, of a small part of its data, with its dictionary.
class UnicodeTreeTest : public testing::Test {
protected:
    UnicodeTreeTest() {
        WriteFile(folder_ / "none", "");
        const int code = Start(KIV_UNICODE_DATA, {"--output", tree_, KIV_PROJECT "/Examples/unicode/sample"},
                               std::filesystem::u8path(folder_ / "none"), std::filesystem::u8path(folder_ / "out"),
                               std::filesystem::u8path(folder_ / "err"));
        EXPECT_EQ(code, 0) << ReadFile(folder_ / "err");
    }

    Folder folder_;
    std::string tree_ = folder_ / "unicode.kiv";
};

TEST_F(UnicodeTreeTest, ItGoesThroughEveryForm) {
    ExpectEveryFormGivesItBack(folder_, tree_);
}

TEST_F(UnicodeTreeTest, EveryVerbTakesIt) {
    ExpectEveryVerbTakesIt(folder_, tree_);
}

TEST_F(UnicodeTreeTest, ItsDictionaryNamesPartsAndFields) {
    EXPECT_EQ(RunTool({"get", tree_, "codepoints:65:name:"}).out, "\"LATIN CAPITAL LETTER A\"\n");
    EXPECT_EQ(RunTool({"get", tree_, "0:65:name"}).out, "\"LATIN CAPITAL LETTER A\"\n");
    EXPECT_EQ(RunTool({"find", tree_, "--tag", "character", "-k", "codepoints:65", "--paths"}).out, "codepoints:65:\n");
    const Ran names = RunTool({"ls", tree_});
    EXPECT_NE(names.out.find("4162 codepoints"), std::string::npos) << names.out;
}

}  // namespace
}  // namespace ToolTest
