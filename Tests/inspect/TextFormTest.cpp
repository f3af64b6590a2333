#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivInspect/InspectCode.h>

#include "inspect/Corpus.h"

namespace InspectTest {
namespace {

using namespace KivGenerics;

TEST(TextFormTest, EachNodeIsALineWithItsPlaceKindTagTemporalityAndValue) {
    EXPECT_EQ(ToText(SavableTree().Get()),
              "kivtext 1\n"
              "Map #4107\n"
              "  0: Map #4162\n"
              "    0: Integer -7\n"
              "    1: GlobalID {12345678-9abc-def0-0102-030405060708}\n"
              "    2: String \"text\"\n"
              "    3: Double 0.1\n"
              "    4: Boolean true\n"
              "    5: Vector\n"
              "      - Integer 1\n"
              "      - Integer 2\n"
              "    6: IntegerSet {3}\n"
              "    7: IdSet {{12345678-9abc-def0-0102-030405060708}}\n"
              "    8: StringSet {\"element\"}\n"
              "    9: DoubleSet {-0.5}\n"
              "    10: Integer64 1\n"
              "    11: Integer transient 0\n"
              "    12: Integer temporary 0\n");
}

TEST(TextFormTest, AnEmptyTreeIsTheFirstLineAlone) {
    EXPECT_EQ(ToText(NewTree().Get()), "kivtext 1\n");
}

TEST(TextFormTest, WhatWouldNotBeSeenIsEscaped) {
    const auto tree = NewTree();
    New<String>(NewRootMap(tree.Get()), 0)
        ->Set(KivBase::WString(u"a\0\n\"\\\u202E\uFEFF", 7) + static_cast<char16_t>(0xD800));
    EXPECT_EQ(ToText(tree.Get()), "kivtext 1\nMap\n  0: String \"a\\u0000\\n\\\"\\\\\\u202e\\ufeff\\ud800\"\n");
}

TEST(TextFormTest, EditedTextIsRead) {
    const KivStorage::LoadResult loaded =
        FromText("kivtext 1\r\nMap #4107\r\n  9: Integer transient 5\r\n  2: String \"\\u0041\\\"\"");
    ASSERT_TRUE(loaded.result.Ok()) << loaded.result.sentence;
    EXPECT_EQ(ToText(loaded.tree.Get()), "kivtext 1\nMap #4107\n  2: String \"A\\\"\"\n  9: Integer transient 5\n");
}

struct Refusal {
    const char* name;
    const char* text;
    const char* sentence;
};

class TextFormRefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(TextFormRefusalTest, TheLineAndTheReasonAreNamed) {
    const KivStorage::LoadResult loaded = FromText(GetParam().text);
    EXPECT_LT(loaded.result.code, 0);
    EXPECT_FALSE(loaded.tree);
    EXPECT_NE(loaded.result.sentence.find(GetParam().sentence), std::string::npos) << loaded.result.sentence;
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, TextFormRefusalTest,
    testing::Values(
        Refusal{"Nothing", "", "the text, line 0: the first line should be \"kivtext 1\""},
        Refusal{"AnotherVersion", "kivtext 2\n", "line 1: the version of the text form is not known"},
        Refusal{"NoKind", "kivtext 1\nMep\n", "line 2: \"Mep\" is no kind of node."},
        Refusal{"SecondRoot", "kivtext 1\nMap\nMap\n", "line 3: there is a second root."},
        Refusal{"TooDeep", "kivtext 1\nMap\n    0: Map\n",
                "line 3: nothing that could hold this node stands above it."},
        Refusal{"BelowALeaf", "kivtext 1\nMap\n  0: Integer 1\n    0: Map\n", "line 4: nothing that could hold"},
        Refusal{"SecondIndex", "kivtext 1\nMap\n  0: Integer 1\n  0: Integer 2\n",
                "line 4: there is a second child with index 0."},
        Refusal{"LargeIndex", "kivtext 1\nMap\n  536870912: Integer 1\n", "line 3: a child of a map needs an index"},
        Refusal{"NoIndex", "kivtext 1\nMap\n  Integer 1\n", "line 3: a child of a map needs an index"},
        Refusal{"DashInMap", "kivtext 1\nMap\n  - Integer 1\n", "line 3: a child of a map needs an index"},
        Refusal{"IndexInVector", "kivtext 1\nVector\n  0: Integer 1\n", "line 3: an element of a vector has no index."},
        Refusal{"NoDash", "kivtext 1\nVector\n  Integer 1\n", "line 3: a \"-\" stands before the elements"},
        Refusal{"TagOfALeaf", "kivtext 1\nInteger #5 1\n", "line 2: only a map has a tag."},
        Refusal{"NoValue", "kivtext 1\nInteger\n", "line 2: column 8: \" \" is expected here."},
        Refusal{"LargeInteger", "kivtext 1\nInteger 2147483648\n",
                "line 2: column 9: a number of 32 bits is expected here."},
        Refusal{"WrongTemporality", "kivtext 1\nInteger never 1\n", "line 2: column 9: a number of 32 bits"},
        Refusal{"LargeTemporality", "kivtext 1\nInteger temporality=200 1\n",
                "a temporality is a number from -128 to 127."},
        Refusal{"LargeDouble", "kivtext 1\nDouble 1e999\n",
                "line 2: column 8: a floating-point number is expected here."},
        Refusal{"NoNan", "kivtext 1\nDouble nan:0000000000000000\n", "the bits of a NaN is expected here."},
        Refusal{"NoQuote", "kivtext 1\nString \"abc\n",
                "line 2: column 12: the quote that ends the text is expected here."},
        Refusal{"WrongEscape", "kivtext 1\nString \"\\x\"\n", "line 2: column 10: one of"},
        Refusal{"NoUtf8", "kivtext 1\nString \"\xC3\"\n", "line 2: column 9: well-formed UTF-8 is expected here."},
        Refusal{"Surrogate", "kivtext 1\nString \"\xED\xA0\x80\"\n", "well-formed UTF-8 is expected here."},
        Refusal{"More", "kivtext 1\nBoolean true 1\n", "line 2: column 13: the line should end here."},
        Refusal{"Conflict", "kivtext 1\nMap\n<<<<<<< ours\n", "line 3: \"<<<<<<<\" is no kind of node."},
        Refusal{"EmptyLine", "kivtext 1\nMap\n\n", "line 3: \"\" is no kind of node."},
        Refusal{"OpenSet", "kivtext 1\nIntegerSet {1, 2\n", "line 2: column 17: \", \" is expected here."}),
    [](const auto& each) { return each.param.name; });

TEST(TextFormTest, LimitsOfALoadHold) {
    KivStorage::LoadOptions options;
    options.limits.nesting = 2;
    EXPECT_EQ(FromText("kivtext 1\nMap\n  0: Map\n    0: Map\n", options).result.code, KivInspect::InspectTooDeep);
    EXPECT_TRUE(FromText("kivtext 1\nMap\n  0: Map\n    0: Integer 1\n", options).result.Ok());
    options.limits.stringUnits = 3;
    EXPECT_EQ(FromText("kivtext 1\nString \"abcd\"\n", options).result.code, KivInspect::InspectTextTooLong);
    EXPECT_TRUE(FromText("kivtext 1\nString \"abc\"\n", options).result.Ok());
    options.limits.totalBytes = 10;
    EXPECT_EQ(FromText("kivtext 1\nMap\n", options).result.code, KivInspect::InspectTooManyBytes);
}

TEST(TextFormTest, LinesLongerThanAPieceAreRead) {
    const std::string text = "kivtext 1\nString \"" + std::string(200000, 'x') + "\"\n";
    const KivStorage::LoadResult loaded = FromText(text);
    ASSERT_TRUE(loaded.result.Ok()) << loaded.result.sentence;
    EXPECT_EQ(node_cast<String>(loaded.tree->GetRoot())->GetLength(), 200000U);
}

}  // namespace
}  // namespace InspectTest
