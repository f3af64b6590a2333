#include <cstdint>
#include <limits>

#include <KivGenerics/IterateFlags.h>

#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kGreatest = std::numeric_limits<std::int64_t>::max();

class Integer64Test : public ::testing::Test {
protected:
    ValueTree tree_;
    Integer64* left_ = tree_.Add<Integer64>(0);
    Integer64* right_ = tree_.Add<Integer64>(1);
};

TEST_F(Integer64Test, HoldsEvery64BitNumber) {
    for (const std::int64_t value : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{0x80000000},
                                     std::int64_t{-0x80000001LL}, kLeast, kGreatest}) {
        left_->Set(value);
        EXPECT_EQ(value, left_->Get());
    }
}

TEST_F(Integer64Test, ComparesAllBitsAsSignedNumbers) {
    left_->Set(kLeast);
    right_->Set(kGreatest);
    EXPECT_EQ(-1, left_->Compare(right_, TemporalityTemporary, false));
    EXPECT_EQ(1, right_->Compare(left_, TemporalityTemporary, false));
    left_->Set(0x100000000);
    right_->Set(0x1FFFFFFFF);
    EXPECT_EQ(-1, left_->Compare(right_, TemporalityTemporary, false));
    right_->Set(0);
    EXPECT_EQ(1, left_->Compare(right_, TemporalityTemporary, false)) << "the low halves are equal";
    left_->Set(0);
    EXPECT_EQ(0, left_->Compare(right_, TemporalityTemporary, false));
}

// kept-on-purpose: integer64-merge
TEST_F(Integer64Test, AMergeNeverComparesTheNumbers) {
    left_->Set(5);
    right_->Set(7);
    EXPECT_TRUE(left_->MergeWith(right_, false));
    EXPECT_TRUE(left_->MergeWith(right_, true));
    EXPECT_EQ(5, left_->Get());
    right_->SetTemporality(TemporalityTransient);
    EXPECT_FALSE(left_->MergeWith(right_, false));
    EXPECT_EQ(TemporalityTransient, left_->GetTemporality());
}

TEST_F(Integer64Test, OnlyAWalkShowsIt) {
    NotingVisitor visitor(VisitStop);
    EXPECT_EQ(VisitContinue, left_->Visit(&visitor, false));
    EXPECT_EQ(VisitContinue, left_->Visit(&visitor, true));
    EXPECT_EQ(VisitContinue, left_->Visit(nullptr, false));
    EXPECT_TRUE(visitor.calls.empty());
    left_->Iterate(&visitor, SemanticTagNone, IterateSelf);
    EXPECT_EQ((std::vector<std::string>{"VisitInteger64"}), visitor.calls);
    EXPECT_EQ((std::vector<const Node*>{left_}), visitor.nodes);
}

}  // namespace
}  // namespace KivGenerics::Testing
