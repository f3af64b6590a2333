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
