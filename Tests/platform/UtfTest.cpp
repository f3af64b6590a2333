#include <KivBase/Utf.h>

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using KivBase::FromUtf8;
using KivBase::ToUtf8;
using KivBase::WString;

WString Units(std::u16string_view text) {
    return WString(text.data(), text.size());
}

std::string Bytes(std::u16string_view text) {
    return ToUtf8(text.data(), text.size());
}

using namespace std::string_view_literals;

struct Pair {
    std::u16string_view units;
    std::string_view bytes;
};

// Each side is the other one's conversion; the lengths change at these places.
constexpr Pair kWellFormed[] = {
    {u""sv, ""sv},
    {u"\0"sv, "\0"sv},
    {u"a\0b"sv, "a\0b"sv},
    {u"A"sv, "A"sv},
    {u"\x007F"sv, "\x7F"sv},
    {u"\x0080"sv, "\xC2\x80"sv},
    {u"\x07FF"sv, "\xDF\xBF"sv},
    {u"\x0800"sv, "\xE0\xA0\x80"sv},
    {u"\xD7FF"sv, "\xED\x9F\xBF"sv},
    {u"\xE000"sv, "\xEE\x80\x80"sv},
    {u"\xFEFF"sv, "\xEF\xBB\xBF"sv},
    {u"\xFFFD"sv, "\xEF\xBF\xBD"sv},
    {u"\xFFFF"sv, "\xEF\xBF\xBF"sv},
    {u"\xD800\xDC00"sv, "\xF0\x90\x80\x80"sv},
    {u"\xD83D\xDE00"sv, "\xF0\x9F\x98\x80"sv},
    {u"\xDBFF\xDFFF"sv, "\xF4\x8F\xBF\xBF"sv},
    {u"\x00FC\xD83D\xDE00z"sv, "\xC3\xBC\xF0\x9F\x98\x80z"sv},
};

TEST(UtfTest, ConvertsWellFormedTextBothWays) {
    for (const Pair& pair : kWellFormed) {
        EXPECT_EQ(pair.bytes, Bytes(pair.units)) << pair.bytes;
        EXPECT_EQ(Units(pair.units), FromUtf8(pair.bytes)) << pair.bytes;
    }
}

TEST(UtfTest, ConvertsAWholeText) {
    EXPECT_EQ("na\xC3\xAFve", ToUtf8(WString(u"na\u00EFve")));
}

TEST(UtfTest, ASurrogateWithoutItsPartnerBecomesAReplacement) {
    constexpr Pair kLonely[] = {
        {u"\xD800"sv, "\xEF\xBF\xBD"sv},
        {u"\xDBFF"sv, "\xEF\xBF\xBD"sv},
        {u"\xDC00"sv, "\xEF\xBF\xBD"sv},
        {u"\xDFFF"sv, "\xEF\xBF\xBD"sv},
        {u"a\xD800"sv, "a\xEF\xBF\xBD"sv},
        {u"\xD800z"sv, "\xEF\xBF\xBDz"sv},
        {u"\xD800\x0000"sv, "\xEF\xBF\xBD\0"sv},
        {u"\xDC00\xD800"sv, "\xEF\xBF\xBD\xEF\xBF\xBD"sv},
        {u"\xD800\xD800\xDC00"sv, "\xEF\xBF\xBD\xF0\x90\x80\x80"sv},
        {u"\xD800\xDC00\xDC00"sv, "\xF0\x90\x80\x80\xEF\xBF\xBD"sv},
    };
    for (const Pair& pair : kLonely) {
        EXPECT_EQ(pair.bytes, Bytes(pair.units)) << pair.bytes;
    }
}

TEST(UtfTest, DoesNotReadPastItsUnits) {
    const char16_t units[] = {0xD83D, 0xDE00};
    EXPECT_EQ("\xEF\xBF\xBD", ToUtf8(units, 1));
    EXPECT_EQ("", ToUtf8(nullptr, 0));
}

TEST(UtfTest, EachByteOutsideAWellFormedSequenceBecomesAReplacement) {
    constexpr Pair kMalformed[] = {
        {u"\xFFFD"sv, "\x80"sv},                                         // a continuation alone
        {u"\xFFFD"sv, "\xBF"sv},
        {u"\xFFFD\xFFFD"sv, "\xC0\x80"sv},                               // overlong
        {u"\xFFFD\xFFFD"sv, "\xC1\xBF"sv},
        {u"\xFFFD\xFFFD\xFFFD"sv, "\xE0\x9F\xBF"sv},
        {u"\xFFFD\xFFFD\xFFFD\xFFFD"sv, "\xF0\x8F\xBF\xBF"sv},
        {u"\xFFFD\xFFFD\xFFFD"sv, "\xED\xA0\x80"sv},                     // surrogates
        {u"\xFFFD\xFFFD\xFFFD"sv, "\xED\xBF\xBF"sv},
        {u"\xFFFD\xFFFD\xFFFD\xFFFD"sv, "\xF4\x90\x80\x80"sv},           // above U+10FFFF
        {u"\xFFFD\xFFFD\xFFFD\xFFFD"sv, "\xF5\x80\x80\x80"sv},
        {u"\xFFFD\xFFFD"sv, "\xFE\xFF"sv},                               // never in UTF-8
        {u"\xFFFD"sv, "\xC3"sv},                                         // cut off
        {u"\xFFFD\xFFFD"sv, "\xE2\x82"sv},
        {u"\xFFFD\xFFFD\xFFFD"sv, "\xF0\x9F\x98"sv},
        {u"\xFFFD("sv, "\xC3("sv},                                       // broken by what follows
        {u"\xFFFD\xFFFD"
         u"A"sv,
         "\xE2\x82"
         "A"sv},
        {u"\xFFFD\x00FC"sv, "\xE2\xC3\xBC"sv},
        {u"a\xFFFDz"sv, "a\xFFz"sv},
    };
    for (const Pair& pair : kMalformed) {
        EXPECT_EQ(Units(pair.units), FromUtf8(pair.bytes)) << testing::PrintToString(pair.bytes);
    }
}

TEST(UtfTest, EveryCodePointComesBack) {
    WString all;
    for (char32_t point = 0; point <= 0x10FFFF; ++point) {
        if (point >= 0x10000) {
            all += static_cast<char16_t>(0xD7C0 + (point >> 10));
            all += static_cast<char16_t>(0xDC00 + (point & 0x3FF));
        } else if (point < 0xD800 || point > 0xDFFF) {
            all += static_cast<char16_t>(point);
        }
    }
    const std::string bytes = ToUtf8(all);
    // 128 of one byte, 1,920 of two, 61,440 of three, 1,048,576 of four.
    EXPECT_EQ(4382592U, bytes.size());
    EXPECT_EQ(2160640U, all.size());
    EXPECT_TRUE(all == FromUtf8(bytes));
}

TEST(UtfTest, TheResultIsOnTheHeap) {
    EXPECT_EQ(nullptr, FromUtf8("text").get_allocator().GetBuffer());
}

}  // namespace
}  // namespace KivPlatform::Testing
