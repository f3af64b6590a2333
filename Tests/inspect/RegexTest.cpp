#include <gtest/gtest.h>

#include <string>

#include <KivInspect/Regex.h>

namespace InspectTest {
namespace {

bool Matches(const char* expression, const std::u16string& text, bool ignoreCase = false) {
    const KivInspect::Regex::Compiled compiled = KivInspect::Regex::Compile(expression, ignoreCase);
    EXPECT_EQ(compiled.problem, "") << expression;
    return compiled.regex.Matches(text.data(), text.size());
}

TEST(RegexTest, CharactersMatchAnywhere) {
    EXPECT_TRUE(Matches("b", u"abc"));
    EXPECT_FALSE(Matches("d", u"abc"));
    EXPECT_TRUE(Matches("", u""));
    EXPECT_TRUE(Matches("bc", u"abc"));
    EXPECT_FALSE(Matches("ac", u"abc"));
}

TEST(RegexTest, AnchorsAreTheEndsOfTheText) {
    EXPECT_TRUE(Matches("^abc$", u"abc"));
    EXPECT_FALSE(Matches("^b", u"abc"));
    EXPECT_FALSE(Matches("b$", u"abc"));
    EXPECT_TRUE(Matches("^$", u""));
    EXPECT_FALSE(Matches("^$", u"a"));
}

TEST(RegexTest, RepetitionsTakeWhatTheySay) {
    EXPECT_TRUE(Matches("^a*$", u""));
    EXPECT_TRUE(Matches("^a*$", u"aaa"));
    EXPECT_FALSE(Matches("^a+$", u""));
    EXPECT_TRUE(Matches("^a+$", u"aa"));
    EXPECT_TRUE(Matches("^ab?c$", u"ac"));
    EXPECT_FALSE(Matches("^ab?c$", u"abbc"));
    EXPECT_TRUE(Matches("^a{2,3}$", u"aaa"));
    EXPECT_FALSE(Matches("^a{2,3}$", u"a"));
    EXPECT_FALSE(Matches("^a{2,3}$", u"aaaa"));
    EXPECT_TRUE(Matches("^a{2}$", u"aa"));
    EXPECT_TRUE(Matches("^a{2,}$", u"aaaaa"));
    EXPECT_TRUE(Matches("^(a{0}b)*$", u"bb"));
    EXPECT_TRUE(Matches("^(a*)*$", u"aaab") == false);
}

TEST(RegexTest, AlternativesAndGroupsNest) {
    EXPECT_TRUE(Matches("^(cat|dog|bird)s?$", u"dogs"));
    EXPECT_TRUE(Matches("^(cat|dog|bird)s?$", u"bird"));
    EXPECT_FALSE(Matches("^(cat|dog|bird)s?$", u"cow"));
    EXPECT_TRUE(Matches("^((a|b)+(c|d)){2}$", u"abcbad"));
    EXPECT_TRUE(Matches("^(a|b|c|d|)e$", u"e"));
    EXPECT_TRUE(Matches("^(a(b|c)|d(e|f))*$", u"abdface") == false);
    EXPECT_TRUE(Matches("^(a(b|c)|d(e|f))*$", u"abdfac"));
}

TEST(RegexTest, ClassesHoldRangesAndShorthands) {
    EXPECT_TRUE(Matches("^[a-cx]+$", u"abcx"));
    EXPECT_FALSE(Matches("^[a-cx]+$", u"d"));
    EXPECT_TRUE(Matches("^[^a-c]$", u"d"));
    EXPECT_TRUE(Matches("^\\d+\\s\\w+$", u"42 a_Z"));
    EXPECT_FALSE(Matches("\\D", u"123"));
    EXPECT_TRUE(Matches("^[\\d.-]+$", u"-1.5"));
    EXPECT_TRUE(Matches("^[]a]+$", u"]a"));
    EXPECT_FALSE(Matches(".", u"\n"));
    EXPECT_TRUE(Matches("\\.", u"a.b"));
    EXPECT_TRUE(Matches("\\u00e4", u"K\u00E4se"));
}

TEST(RegexTest, ACharacterOutsideTheFirstPlaneIsOne) {
    EXPECT_TRUE(Matches("^.$", u"\U0001F600"));
    EXPECT_TRUE(Matches("^\xF0\x9F\x98\x80+$", u"\U0001F600\U0001F600"));
}

TEST(RegexTest, CaseCanBeIgnored) {
    EXPECT_TRUE(Matches("LATIN [a-z]+", u"latin CAPITAL", true));
    EXPECT_FALSE(Matches("LATIN", u"latin"));
}

TEST(RegexTest, WhatIsNoExpressionIsRefused) {
    for (const char* const expression : {"(", ")", "a)", "[a", "*", "+a", "{2}", "a{3,2}", "a{1001}", "\\", "\\u00",
                                         "[z-a]", "\xFF", "((((a{1000}){1000}){1000}){1000}){1000}"}) {
        EXPECT_NE(KivInspect::Regex::Compile(expression).problem, "") << expression;
    }
    EXPECT_NE(KivInspect::Regex::Compile(std::string(100000, '(')).problem, "");
}

TEST(RegexTest, HostileExpressionsTakeTimeInProportion) {
    EXPECT_FALSE(Matches("^(a+)+$", std::u16string(100000, u'a') + u"b"));
    EXPECT_FALSE(Matches("(x+x+)+y", std::u16string(20000, u'x')));
}

}  // namespace
}  // namespace InspectTest
