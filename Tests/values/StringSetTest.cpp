#include <string>
#include <utility>

#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

using KivBase::WString;

const WString kWithNul(u"ab\0cd", 5);
constexpr char16_t kLongText[] = u"a text that is too long to fit into a string object itself";

class StringSetTest : public ::testing::Test {
protected:
    ValueTree tree_;
    StringSet* set_ = tree_.Add<StringSet>(0);
    StringSet* other_ = tree_.Add<StringSet>(1);
};

TEST_F(StringSetTest, GetRefersToItsOwnElements) {
    const StringSet::Elements& elements = set_->Get();
    EXPECT_TRUE(elements.empty());
    set_->Add(u"x");
    EXPECT_EQ("{x}", TextOfElements(elements));
    EXPECT_EQ(&elements, &set_->Get());
}

TEST_F(StringSetTest, AddStoresATextUpToItsFirstNul) {
    set_->Add(kWithNul);
    EXPECT_EQ("{ab}", Show(*set_));
    EXPECT_TRUE(set_->Exists(u"ab"));
    EXPECT_FALSE(set_->Exists(kWithNul)) << "the whole text is not there";
    set_->Remove(kWithNul);
    EXPECT_EQ(1, set_->Count());
    set_->Add(WString(u"ab\0ef", 5));
    EXPECT_EQ(1, set_->Count());
    set_->Remove(u"ab");
    EXPECT_EQ(0, set_->Count());
}

TEST_F(StringSetTest, SetStoresTextsUpToTheirFirstNulAndJoinsWhatBecomesEqual) {
    set_->Set({WString(u"ab\0x", 4), WString(u"ab\0y", 4), WString(u"ab"), WString(u"b\0a", 3), WString(1, u'\0')});
    EXPECT_EQ("{,ab,b}", Show(*set_));
    EXPECT_EQ(3, set_->Count());
}

TEST_F(StringSetTest, OrdersByUnsignedUnitsThenLength) {
    const WString high(1, char16_t(0xFFFF));
    const WString low(1, char16_t(0x0001));
    const WString middle(1, char16_t(0x8000));
    set_->Set({high, low, middle, low + low, u"", u"Z", u"a"});
    const WString expected[] = {u"", low, low + low, u"Z", u"a", middle, high};
    ASSERT_EQ(7, set_->Count());
    for (int i = 0; i < 7; ++i) {
        WString element;
        set_->Item(i, element);
        EXPECT_EQ(expected[i], element) << i;
    }
}

TEST_F(StringSetTest, ComparesByUnsignedUnits) {
    set_->Set({WString(1, char16_t(0xFFFF))});
    other_->Set({WString(1, char16_t(0x0001))});
    EXPECT_EQ(1, set_->Compare(other_, TemporalityTemporary, false));
    EXPECT_EQ(-1, other_->Compare(set_, TemporalityTemporary, false));
    set_->Set({u"ab"});
    other_->Set({u"abc"});
    EXPECT_EQ(-1, set_->Compare(other_, TemporalityTemporary, false));
    EXPECT_EQ(1, other_->Compare(set_, TemporalityTemporary, false));
}

TEST_F(StringSetTest, SettingItsOwnElementsKeepsThem) {
    set_->Set({u"x", kLongText, u"y"});
    EXPECT_EQ(0, tree_.ChangesOf([&] { set_->Set(set_->Get()); }));
    EXPECT_EQ(3, set_->Count());
    EXPECT_TRUE(set_->Exists(u"x"));
    EXPECT_TRUE(set_->Exists(kLongText));
    EXPECT_TRUE(set_->Exists(u"y"));
}

TEST_F(StringSetTest, AddsAndRemovesElementsOfItsOwn) {
    set_->Set({u"x", kLongText});
    set_->Add(*set_->Get().begin());
    EXPECT_EQ(2, set_->Count());
    set_->Remove(*set_->Get().begin());
    EXPECT_EQ("{x}", Show(*set_));
    set_->Remove(*set_->Get().begin());
    EXPECT_EQ("{}", Show(*set_));
}

TEST_F(StringSetTest, KeepsTheTextsInTheForest) {
    const std::size_t before = tree_->BufferQueryB();
    set_->Add(WString(1000, u'x'));
    EXPECT_GE(tree_->BufferQueryB(), before + 2000);
    const std::size_t one = tree_->BufferQueryB();
    other_->Populate(set_);
    EXPECT_GE(tree_->BufferQueryB(), one + 2000);
    set_->Clear();
    other_->Clear();
    EXPECT_EQ(before, tree_->BufferQueryB());
}

TEST_F(StringSetTest, AnItemIsACopy) {
    set_->Add(kLongText);
    WString element = u"old";
    set_->Item(0, element);
    set_->Clear();
    EXPECT_EQ(WString(kLongText), element);
}

TEST_F(StringSetTest, ACopiedNodeKeepsItsTextsOnTheHeap) {
    set_->Add(WString(1000, u'x'));
    const std::size_t before = tree_->BufferQueryB();
    const StringSet copy(*set_);
    EXPECT_EQ(before, tree_->BufferQueryB());
    EXPECT_TRUE(copy.Exists(WString(1000, u'x')));
}

TEST_F(StringSetTest, AnAssignmentBringsTheTextsIntoTheForestOfItsTarget) {
    const ValueTree other;
    StringSet* const target = other.Add<StringSet>(0);
    const std::size_t before = other->BufferQueryB();
    set_->Add(WString(1000, u'x'));
    *target = *set_;
    EXPECT_GE(other->BufferQueryB(), before + 2000);
    EXPECT_TRUE(target->Exists(WString(1000, u'x')));
    *target = StringSet(*set_);
    EXPECT_TRUE(target->Exists(WString(1000, u'x')));
    EXPECT_GE(other->BufferQueryB(), before + 2000);
    target->Set({});
    EXPECT_EQ(before, other->BufferQueryB());
}

TEST_F(StringSetTest, WhatWasAssignedOutlivesTheForestItCameFrom) {
    {
        const ValueTree passing;
        StringSet* const copied = passing.Add<StringSet>(0);
        copied->Add(WString(1000, u'x'));
        *set_ = *copied;
        StringSet* const moved = passing.Add<StringSet>(1);
        moved->Add(WString(1000, u'y'));
        *other_ = std::move(*moved);
    }
    EXPECT_TRUE(set_->Exists(WString(1000, u'x')));
    EXPECT_TRUE(other_->Exists(WString(1000, u'y')));
}

}  // namespace
}  // namespace KivGenerics::Testing
