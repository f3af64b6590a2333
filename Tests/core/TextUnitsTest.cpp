#include "core/TextUnits.h"

#include <gtest/gtest.h>

using namespace KivGenerics;
using KivBase::WString;

TEST(TextUnitsTest, CountsWhatStandsBeforeTheFirstNulWhereverThatIs) {
    for (std::size_t size = 0; size <= 13; ++size) {
        for (std::size_t nul = 0; nul <= size; ++nul) {
            WString text(size, u'\xFFFF');
            if (nul < size) {
                text[nul] = u'\0';
            }
            EXPECT_EQ(nul, CountBeforeNul(text.data(), text.size())) << size;
        }
    }
}

TEST(TextUnitsTest, UnitsWithAZeroByteAreNotNul) {
    const WString text = u"\u0100\u8000\u0001\u0080\u0100\u8000\u0001\u0080";
    EXPECT_EQ(8U, CountBeforeNul(text.data(), text.size()));
}

TEST(TextUnitsTest, OrdersByUnitsThenByLength) {
    EXPECT_EQ(0, CompareTexts(u"", u""));
    EXPECT_EQ(0, CompareTexts(u"abcde", u"abcde"));
    EXPECT_EQ(-1, CompareTexts(u"abcd", u"abcde"));
    EXPECT_EQ(1, CompareTexts(u"abcde", u"abcd"));
    EXPECT_EQ(-1, CompareTexts(u"\u00FF", u"\u0100")) << "the low byte alone would say otherwise";
    EXPECT_EQ(1, CompareTexts(u"\uFFFF", u"\u7FFF"));
}

// kept-on-purpose: text-cut-at-nul
TEST(TextUnitsTest, TheLeftTextCountsWholeAndTheRightOneUpToItsFirstNul) {
    const WString withNul(u"ab\0cd", 5);
    EXPECT_EQ(1, CompareTexts(withNul, withNul));
    EXPECT_EQ(0, CompareTexts(u"ab", withNul));
    EXPECT_EQ(1, CompareTexts(withNul, u"ab"));
}
