#include <cmath>
#include <limits>

#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class DoubleSetTest : public ::testing::Test {
protected:
    ValueTree tree_;
    DoubleSet* set_ = tree_.Add<DoubleSet>(0);
    DoubleSet* other_ = tree_.Add<DoubleSet>(1);
};

TEST_F(DoubleSetTest, ANaNIsOneElementAfterEveryNumber) {
    for (const double element : {kNaN, 1.0, kInfinity, kNaN, -kInfinity, -kNaN, std::nan("7")}) {
        set_->Add(element);
    }
    EXPECT_EQ(4, set_->Count());
    double element = 0.0;
    set_->Item(0, element);
    EXPECT_EQ(-kInfinity, element);
    set_->Item(2, element);
    EXPECT_EQ(kInfinity, element);
    set_->Item(3, element);
    EXPECT_TRUE(std::isnan(element));
    EXPECT_TRUE(set_->Exists(kNaN));
    EXPECT_TRUE(set_->Exists(1.0));
    EXPECT_FALSE(set_->Exists(2.0));
    set_->Remove(std::nan("9"));
    EXPECT_FALSE(set_->Exists(kNaN));
    EXPECT_EQ(3, set_->Count());
}

TEST_F(DoubleSetTest, SetsWithNaNsAreOrderedAndMergeLikeAnyOther) {
    set_->Set({1.0, kNaN});
    other_->Set({kNaN, 1.0});
    EXPECT_EQ(0, set_->Compare(other_, TemporalityTemporary, false));
    EXPECT_TRUE(set_->MergeWith(other_, false));
    other_->Set({1.0, kInfinity});
    EXPECT_EQ(1, set_->Compare(other_, TemporalityTemporary, false));
    EXPECT_EQ(-1, other_->Compare(set_, TemporalityTemporary, false));
    EXPECT_FALSE(set_->MergeWith(other_, false));
    set_->Populate(other_);
    EXPECT_EQ("{1,inf}", Show(*set_));
}

TEST_F(DoubleSetTest, BothZerosAreOneElementThatKeepsItsSign) {
    set_->Add(-0.0);
    set_->Add(0.0);
    EXPECT_EQ(1, set_->Count());
    EXPECT_TRUE(set_->Exists(0.0));
    double element = 1.0;
    set_->Item(0, element);
    EXPECT_TRUE(std::signbit(element)) << "the one that was there first";
    other_->Add(0.0);
    EXPECT_EQ(0, set_->Compare(other_, TemporalityTemporary, false));
    EXPECT_TRUE(set_->MergeWith(other_, false));
    set_->Remove(0.0);
    EXPECT_EQ(0, set_->Count());
}

TEST_F(DoubleSetTest, TellsNeighbouringNumbersApart) {
    const double next = std::nextafter(1.0, 2.0);
    set_->Set({next, 1.0});
    EXPECT_EQ(2, set_->Count());
    double element = 0.0;
    set_->Item(0, element);
    EXPECT_EQ(1.0, element);
    set_->Item(1, element);
    EXPECT_EQ(next, element);
}

}  // namespace
}  // namespace KivGenerics::Testing
