#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

TEST(BooleanTest, GetAnswersWhatWasSet) {
    const ValueTree tree;
    Boolean* const leaf = tree.Add<Boolean>(0);
    EXPECT_FALSE(leaf->Get());
    leaf->Set(true);
    EXPECT_TRUE(leaf->Get());
    leaf->Set(false);
    EXPECT_FALSE(leaf->Get());
}

TEST(BooleanTest, SettingTheSameValueCountsAsAChange) {
    const ValueTree tree;
    Boolean* const leaf = tree.Add<Boolean>(0);
    EXPECT_EQ(2, tree.ChangesOf([&] {
        leaf->Set(true);
        leaf->Set(true);
    }));
}

TEST(BooleanTest, ComparesAsZeroAndOne) {
    const ValueTree tree;
    Boolean* const left = tree.Add<Boolean>(0);
    Boolean* const right = tree.Add<Boolean>(1);
    EXPECT_EQ(0, left->Compare(right, TemporalityTemporary, false));
    right->Set(true);
    EXPECT_EQ(-1, left->Compare(right, TemporalityTemporary, false));
    EXPECT_EQ(1, right->Compare(left, TemporalityTemporary, false));
    left->Set(true);
    EXPECT_EQ(0, left->Compare(right, TemporalityTemporary, false));
}

TEST(BooleanTest, MergesWithItsEqualAlone) {
    const ValueTree tree;
    Boolean* const left = tree.Add<Boolean>(0);
    Boolean* const right = tree.Add<Boolean>(1);
    EXPECT_TRUE(left->MergeWith(right, false));
    right->Set(true);
    EXPECT_FALSE(left->MergeWith(right, false));
    EXPECT_FALSE(left->Get());
    left->Set(true);
    EXPECT_TRUE(left->MergeWith(right, false));
}

}  // namespace
}  // namespace KivGenerics::Testing
