#include <string>
#include <utility>

#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

using KivBase::WString;

constexpr char16_t kLongText[] = u"a text that is too long to fit into a string object itself";
constexpr char16_t kCutText[] = u"ab\0cd";
const WString kWithNul(kCutText, 5);

class StringTest : public ::testing::Test {
protected:
    int Compare(const WString& left, const WString& right) {
        left_->Set(left);
        right_->Set(right);
        return left_->Compare(right_, TemporalityTemporary, false);
    }
    bool Merge(const WString& left, const WString& right) {
        left_->Set(left);
        right_->Set(right);
        return left_->MergeWith(right_, false);
    }
    static WString Text(const String& node) { return WString(node.Get(), node.GetLength()); }

    ValueTree tree_;
    String* left_ = tree_.Add<String>(0);
    String* right_ = tree_.Add<String>(1);
};

TEST_F(StringTest, IsTheEmptyTerminatedTextWhenNew) {
    ASSERT_NE(nullptr, left_->Get());
    EXPECT_EQ(u'\0', left_->Get()[0]);
    EXPECT_EQ(0U, left_->GetLength());
}

TEST_F(StringTest, SettingATextKeepsItsEmbeddedNuls) {
    left_->Set(kWithNul);
    EXPECT_EQ(5U, left_->GetLength());
    EXPECT_EQ(kWithNul, Text(*left_));
    EXPECT_EQ(u'\0', left_->Get()[5]);
}

TEST_F(StringTest, SettingAPointerTakesTheTextUpToTheFirstNul) {
    left_->Set(kCutText);
    EXPECT_EQ(WString(u"ab"), Text(*left_));
    left_->Set(u"");
    EXPECT_EQ(0U, left_->GetLength());
}

TEST_F(StringTest, SettingANullPointerEmptiesAndCountsOnce) {
    left_->Set(u"old");
    EXPECT_EQ(1, tree_.ChangesOf([&] { left_->Set(static_cast<const char16_t*>(nullptr)); }));
    EXPECT_EQ(0U, left_->GetLength());
    EXPECT_EQ(u'\0', left_->Get()[0]);
}

TEST_F(StringTest, SettingItsOwnTextKeepsIt) {
    for (const char16_t* const text : {u"short", static_cast<const char16_t*>(kLongText)}) {
        left_->Set(text);
        EXPECT_EQ(1, tree_.ChangesOf([&] { left_->Set(left_->Get()); }));
        EXPECT_EQ(WString(text), Text(*left_));
    }
}

TEST_F(StringTest, SettingTheTailOfItsOwnTextKeepsTheTail) {
    left_->Set(u"short");
    left_->Set(left_->Get() + 2);
    EXPECT_EQ(WString(u"ort"), Text(*left_));
    left_->Set(left_->Get() + 3);
    EXPECT_EQ(WString(), Text(*left_)) << "the end of the text";
    left_->Set(kLongText);
    left_->Set(left_->Get() + 5);
    EXPECT_EQ(WString(u"t that is too long to fit into a string object itself"), Text(*left_));
}

TEST_F(StringTest, SettingTheTailBehindItsOwnNulTakesIt) {
    left_->Set(kWithNul);
    left_->Set(left_->Get() + 3);
    EXPECT_EQ(WString(u"cd"), Text(*left_));
}

TEST_F(StringTest, KeepsTextsOfAnyLengthAndAnyUnits) {
    WString text(300000, u'x');
    text[1] = 0xD800;
    text[2] = 0xFFFF;
    left_->Set(text);
    EXPECT_EQ(300000U, left_->GetLength());
    EXPECT_EQ(text, Text(*left_));
    EXPECT_EQ(u'\0', left_->Get()[300000]);
}

TEST_F(StringTest, AReadOnlyTreeRefusesBothSettersAlsoForTheOwnText) {
    left_->Set(u"old");
    tree_->SetReadOnly();
    EXPECT_EQ(kReadOnlyText, TextOf([&] { left_->Set(u"new"); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { left_->Set(left_->Get()); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { left_->Set(static_cast<const char16_t*>(nullptr)); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { left_->Set(kWithNul); }));
    EXPECT_THROW(left_->Set(u"new"), ReadOnlyException);
    EXPECT_EQ(WString(u"old"), Text(*left_));
}

TEST_F(StringTest, ComparesUnitsAsUnsignedNumbersThenLengths) {
    EXPECT_EQ(0, Compare(u"", u""));
    EXPECT_EQ(0, Compare(u"abc", u"abc"));
    EXPECT_EQ(-1, Compare(u"", u"a"));
    EXPECT_EQ(1, Compare(u"a", u""));
    EXPECT_EQ(-1, Compare(u"ab", u"abc"));
    EXPECT_EQ(1, Compare(u"abc", u"ab"));
    EXPECT_EQ(-1, Compare(u"abc", u"abd"));
    EXPECT_EQ(1, Compare(u"b", u"abc"));
    EXPECT_EQ(1, Compare(WString(1, char16_t(0xFFFF)), WString(1, char16_t(0x0001))));
    EXPECT_EQ(-1, Compare(WString(1, char16_t(0x0001)), WString(1, char16_t(0xFFFF))));
    EXPECT_EQ(-1, Compare(WString(1, char16_t(0x7FFF)), WString(1, char16_t(0x8000))));
    EXPECT_EQ(1, Compare(WString(1, char16_t(0x0100)), WString(1, char16_t(0x00FF)))) << "not byte by byte";
    EXPECT_EQ(-1, Compare(u"B", u"a")) << "no letter case";
}

// kept-on-purpose: text-cut-at-nul
TEST_F(StringTest, PopulateAndTheOtherSideOfACompareSeeTheTextUpToTheFirstNul) {
    right_->Set(kWithNul);
    left_->Populate(right_);
    EXPECT_EQ(WString(u"ab"), Text(*left_));
    EXPECT_EQ(kWithNul, Text(*right_));

    EXPECT_EQ(0, Compare(u"ab", kWithNul));
    EXPECT_EQ(1, Compare(kWithNul, u"ab")) << "this side counts whole";
    EXPECT_EQ(1, Compare(kWithNul, kWithNul));
    EXPECT_EQ(1, left_->Compare(left_, TemporalityTemporary, false));
    EXPECT_EQ(1, Compare(WString(1, u'\0'), u""));
    EXPECT_EQ(-1, Compare(kWithNul, u"abc"));
}

TEST_F(StringTest, MergesWithTheSameTextByTheSameOrder) {
    EXPECT_TRUE(Merge(u"abc", u"abc"));
    EXPECT_TRUE(Merge(u"", u""));
    EXPECT_FALSE(Merge(u"abc", u"ab"));
    EXPECT_FALSE(Merge(u"abc", u"ABC"));
    EXPECT_TRUE(Merge(u"ab", kWithNul));
    EXPECT_FALSE(Merge(kWithNul, u"ab"));
    EXPECT_FALSE(Merge(kWithNul, kWithNul));
    EXPECT_EQ(kWithNul, Text(*left_));
}

TEST_F(StringTest, KeepsItsTextInTheForestAndItsCopiesOnTheHeap) {
    const std::size_t before = tree_->BufferQueryB();
    left_->Set(WString(1000, u'x'));
    EXPECT_GE(tree_->BufferQueryB(), before + 2000);
    const std::size_t withText = tree_->BufferQueryB();
    const String copy(*left_);
    EXPECT_EQ(withText, tree_->BufferQueryB());
    EXPECT_EQ(WString(1000, u'x'), Text(copy));
    EXPECT_NE(left_->Get(), copy.Get());
}

TEST_F(StringTest, ClearingGivesTheTextsMemoryBackToTheForest) {
    const std::size_t before = tree_->BufferQueryB();
    left_->Set(WString(1000, u'x'));
    left_->Clear();
    EXPECT_EQ(before, tree_->BufferQueryB());
}

TEST_F(StringTest, AMoveTakesTheTextOutOfTheSource) {
    left_->Set(kLongText);
    const char16_t* const units = left_->Get();
    const std::size_t withText = tree_->BufferQueryB();
    {
        const String moved(std::move(*left_));
        EXPECT_EQ(WString(kLongText), Text(moved));
        EXPECT_EQ(units, moved.Get()) << "the units themselves";
        EXPECT_EQ(0U, left_->GetLength());
        EXPECT_EQ(withText, tree_->BufferQueryB());
    }
    EXPECT_LT(tree_->BufferQueryB(), withText) << "they go with the object that took them";
}

TEST_F(StringTest, AnAssignmentByMoveTakesTheTextOutOfTheSource) {
    left_->Set(kLongText);
    *right_ = std::move(*left_);
    EXPECT_EQ(WString(kLongText), Text(*right_));
    EXPECT_EQ(0U, left_->GetLength());

    String onHeap(*right_);
    *left_ = std::move(onHeap);
    EXPECT_EQ(WString(kLongText), Text(*left_)) << "from the heap into the forest";
    EXPECT_EQ(0U, onHeap.GetLength());
}

TEST_F(StringTest, AMoveTakesAShortTextToo) {
    left_->Set(u"short");
    String moved(std::move(*left_));
    EXPECT_EQ(WString(u"short"), Text(moved));
    EXPECT_EQ(0U, left_->GetLength());
    *right_ = std::move(moved);
    EXPECT_EQ(WString(u"short"), Text(*right_));
    EXPECT_EQ(0U, moved.GetLength());
}

TEST_F(StringTest, CopyingKeepsEmbeddedNuls) {
    left_->Set(kWithNul);
    EXPECT_EQ(kWithNul, Text(String(*left_)));
    *right_ = *left_;
    EXPECT_EQ(kWithNul, Text(*right_));
    const String& same = *left_;
    *left_ = same;
    EXPECT_EQ(kWithNul, Text(*left_)) << "assigned to itself";
}

TEST_F(StringTest, AMillionReplacementsByLongerAndShorterTextsHardlyGrowTheForest) {
    const WString texts[] = {WString(20, u'a'), WString(300, u'b'), WString(40, u'c'), WString(1200, u'd')};
    for (const WString& text : texts) {
        left_->Set(text);
    }
    const std::size_t before = tree_->BufferQueryA();
    for (int i = 0; i < 250000; ++i) {
        for (const WString& text : texts) {
            left_->Set(text);
        }
        if (i % 1000 == 0) {
            left_->Clear();
        }
    }
    EXPECT_LE(tree_->BufferQueryA() - before, 65536U);
}

}  // namespace
}  // namespace KivGenerics::Testing
