#include <cmath>
#include <limits>

#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class DoubleTest : public ::testing::Test {
protected:
    int Compare(double left, double right) {
        left_->Set(left);
        right_->Set(right);
        return left_->Compare(right_, TemporalityTemporary, false);
    }
    bool Merge(double left, double right) {
        left_->Set(left);
        right_->Set(right);
        return left_->MergeWith(right_, false);
    }

    ValueTree tree_;
    Double* left_ = tree_.Add<Double>(0);
    Double* right_ = tree_.Add<Double>(1);
};

TEST_F(DoubleTest, HoldsEveryNumberExactly) {
    for (const double value : {0.1, -1.5e300, 5e-324, kInfinity, -kInfinity}) {
        left_->Set(value);
        EXPECT_EQ(value, left_->Get());
    }
    left_->Set(-0.0);
    EXPECT_TRUE(std::signbit(left_->Get()));
    left_->Set(kNaN);
    EXPECT_TRUE(std::isnan(left_->Get()));
}

TEST_F(DoubleTest, ComparesWithoutTolerance) {
    EXPECT_EQ(-1, Compare(1.0, std::nextafter(1.0, 2.0)));
    EXPECT_EQ(1, Compare(std::nextafter(1.0, 2.0), 1.0));
    EXPECT_EQ(0, Compare(1.0, 1.0));
    EXPECT_EQ(0, Compare(-0.0, 0.0));
    EXPECT_EQ(-1, Compare(-kInfinity, -1.7e308));
    EXPECT_EQ(1, Compare(kInfinity, 1.7e308));
    EXPECT_EQ(0, Compare(kInfinity, kInfinity));
}

// kept-on-purpose: nan-compares-equal
TEST_F(DoubleTest, ANaNComparesEqualToEverythingAndMergesWithNothing) {
    for (const double other : {0.0, -1.0, 1.0, kInfinity, -kInfinity, kNaN}) {
        EXPECT_EQ(0, Compare(kNaN, other)) << other;
        EXPECT_EQ(0, Compare(other, kNaN)) << other;
        EXPECT_FALSE(Merge(kNaN, other)) << other;
        EXPECT_FALSE(Merge(other, kNaN)) << other;
    }
    left_->Set(kNaN);
    EXPECT_FALSE(left_->MergeWith(left_, false)) << "not even with itself";
}

TEST_F(DoubleTest, MergesByExactEquality) {
    EXPECT_TRUE(Merge(0.1, 0.1));
    EXPECT_TRUE(Merge(-0.0, 0.0));
    EXPECT_FALSE(Merge(0.1, std::nextafter(0.1, 1.0)));
}

TEST_F(DoubleTest, PopulateTakesANaNAndTheSignOfZero) {
    right_->Set(kNaN);
    left_->Populate(right_);
    EXPECT_TRUE(std::isnan(left_->Get()));
    right_->Set(-0.0);
    left_->Populate(right_);
    EXPECT_TRUE(std::signbit(left_->Get()));
}

}  // namespace
}  // namespace KivGenerics::Testing
