#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

TEST(IntegerSetTest, OrdersItsElementsAsSignedNumbers) {
    const ValueTree tree;
    IntegerSet* const set = tree.Add<IntegerSet>(0);
    for (const std::int32_t element : {0, 2147483647, -1, -2147483647 - 1, 1}) {
        set->Add(element);
    }
    EXPECT_EQ("{-2147483648,-1,0,1,2147483647}", Show(*set));
}

TEST(IntegerSetTest, HoldsManyElementsInAscendingOrder) {
    const ValueTree tree;
    IntegerSet* const set = tree.Add<IntegerSet>(0);
    for (std::int32_t i = 999; i >= 0; --i) {
        set->Add(i * 7 % 1000);
    }
    ASSERT_EQ(1000, set->Count());
    for (std::int32_t i = 0; i < 1000; ++i) {
        std::int32_t element = -1;
        set->Item(i, element);
        EXPECT_EQ(i, element);
    }
}

TEST(IntegerSetTest, ManyElementsCompareAlikeHoweverTheyCame) {
    const ValueTree tree;
    IntegerSet* const ascending = tree.Add<IntegerSet>(0);
    IntegerSet* const scattered = tree.Add<IntegerSet>(1);
    for (std::int32_t i = 0; i < 5000; ++i) {
        ascending->Add(i * 2);
        scattered->Add(i * 1237 % 5000 * 2);
    }
    EXPECT_EQ(0, ascending->Compare(scattered, TemporalityTemporary, false));
    EXPECT_TRUE(ascending->MergeWith(scattered, false));
    scattered->Remove(9000);
    EXPECT_EQ(-1, ascending->Compare(scattered, TemporalityTemporary, false)) << "9000 is smaller than 9002";
    EXPECT_EQ(1, scattered->Compare(ascending, TemporalityTemporary, false));
    scattered->Add(8999);
    EXPECT_EQ(1, ascending->Compare(scattered, TemporalityTemporary, false));
    EXPECT_FALSE(ascending->MergeWith(scattered, false));
    scattered->Populate(ascending);
    EXPECT_EQ(0, scattered->Compare(ascending, TemporalityTemporary, false));
    scattered->Remove(9998);
    EXPECT_EQ(1, ascending->Compare(scattered, TemporalityTemporary, false)) << "the longer one";
    EXPECT_EQ(-1, scattered->Compare(ascending, TemporalityTemporary, false));
}

TEST(IntegerSetTest, OneAndFiveIsSmallerThanTwo) {
    const ValueTree tree;
    IntegerSet* const left = tree.Add<IntegerSet>(0);
    IntegerSet* const right = tree.Add<IntegerSet>(1);
    left->Set({1, 5});
    right->Set({2});
    EXPECT_EQ(-1, left->Compare(right, TemporalityTemporary, false));
    left->Set({1, 2});
    right->Set({1});
    EXPECT_EQ(1, left->Compare(right, TemporalityTemporary, false));
}

TEST(IntegerSetTest, MergingOneWithOneAndTwoIsAConflictAndLeavesOne) {
    const ValueTree tree;
    IntegerSet* const left = tree.Add<IntegerSet>(0);
    IntegerSet* const right = tree.Add<IntegerSet>(1);
    left->Set({1});
    right->Set({1, 2});
    EXPECT_FALSE(left->MergeWith(right, false));
    EXPECT_EQ("{1}", Show(*left));
}

}  // namespace
}  // namespace KivGenerics::Testing
