// What holds for every leaf, run over the ten kinds that hold a value.

#include <type_traits>

#include <KivGenerics/IterateFlags.h>

#include "core/NodeAccess.h"
#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

template <class T>
class LeafContractTest : public ::testing::Test {
protected:
    Node* Other() { return other_; }

    ValueTree tree_;
    T* leaf_ = tree_.Add<T>(3);
    ValueTree otherTree_;
    T* other_ = otherTree_.Add<T>(5);
};
TYPED_TEST_SUITE(LeafContractTest, LeafKinds, KindNames);

TYPED_TEST(LeafContractTest, HoldsTheDefaultWhenNewAndAfterClear) {
    using Kind = Facts<TypeParam>;
    EXPECT_EQ(Kind::kNew, Show(*this->leaf_));
    Kind::SetGreat(*this->leaf_);
    EXPECT_EQ(Kind::kGreat, Show(*this->leaf_));
    this->leaf_->Clear();
    EXPECT_EQ(Kind::kNew, Show(*this->leaf_));
    this->leaf_->Clear();
    EXPECT_EQ(Kind::kNew, Show(*this->leaf_));
}

TYPED_TEST(LeafContractTest, HoldsTheDefaultAgainWhenItIsHandedOutForReuse) {
    using Kind = Facts<TypeParam>;
    Kind::SetGreat(*this->leaf_);
    this->tree_.Root()->Remove(3);
    TypeParam* const again = this->tree_.template Add<TypeParam>(6);
    EXPECT_EQ(this->leaf_, again);
    EXPECT_EQ(Kind::kNew, Show(*again));
}

TYPED_TEST(LeafContractTest, SettingAValueReplacesItAndLeavesTheTemporalitiesAlone) {
    using Kind = Facts<TypeParam>;
    this->leaf_->SetTemporality(TemporalityTransient);
    this->leaf_->CalculateDerivedTemporality();
    EXPECT_EQ(Kind::kSetChanges, this->tree_.ChangesOf([&] { Kind::SetGreat(*this->leaf_); }));
    EXPECT_EQ(Kind::kGreat, Show(*this->leaf_));
    EXPECT_EQ(Kind::kSetChanges, this->tree_.ChangesOf([&] { Kind::SetSmall(*this->leaf_); }));
    EXPECT_EQ(Kind::kSmall, Show(*this->leaf_));
    EXPECT_EQ(TemporalityTransient, this->leaf_->GetTemporality());
    EXPECT_EQ(TemporalityTransient, NodeAccess::GetStoredDerived(*this->leaf_));
}

TYPED_TEST(LeafContractTest, ReadingCountsNothing) {
    EXPECT_EQ(0, this->tree_.ChangesOf([&] { EXPECT_EQ(Facts<TypeParam>::kNew, Show(*this->leaf_)); }));
}

TYPED_TEST(LeafContractTest, PopulateCopiesTheValueByEitherForm) {
    using Kind = Facts<TypeParam>;
    Kind::SetGreat(*this->other_);
    EXPECT_EQ(1, this->tree_.ChangesOf([&] { this->leaf_->Populate(this->Other()); }));
    EXPECT_EQ(Kind::kGreat, Show(*this->leaf_));
    Kind::SetSmall(*this->other_);
    EXPECT_EQ(Kind::kGreat, Show(*this->leaf_)) << "a copy of its own";
    this->other_->SetTemporality(TemporalityTemporary);
    this->leaf_->CalculateDerivedTemporality();
    EXPECT_EQ(1, this->tree_.ChangesOf([&] { this->leaf_->Populate(this->other_); }));
    EXPECT_EQ(Kind::kSmall, Show(*this->leaf_));
    EXPECT_EQ(TemporalityTemporary, this->leaf_->GetTemporality());
    EXPECT_EQ(TemporalityDefault, NodeAccess::GetStoredDerived(*this->leaf_));
    EXPECT_EQ(Kind::kSmall, Show(*this->other_));
}

TYPED_TEST(LeafContractTest, PopulateFromNullOfItsOwnKindThrowsAndKeepsTheValue) {
    using Kind = Facts<TypeParam>;
    Kind::SetGreat(*this->leaf_);
    EXPECT_EQ("Can't copy NULL node!", TextOf([&] { this->leaf_->Populate(static_cast<TypeParam*>(nullptr)); }));
    EXPECT_EQ("Can't copy nodes of different type!",
              TextOf([&] { this->leaf_->Populate(static_cast<Node*>(this->otherTree_.Root())); }));
    EXPECT_EQ(Kind::kGreat, Show(*this->leaf_));
}

TYPED_TEST(LeafContractTest, PopulateFromItselfKeepsTheValue) {
    using Kind = Facts<TypeParam>;
    Kind::SetSmall(*this->leaf_);
    this->leaf_->CalculateDerivedTemporality();
    this->leaf_->Populate(this->leaf_);
    EXPECT_EQ(Kind::kSmall, Show(*this->leaf_));
    EXPECT_EQ(TemporalityPersistent, this->leaf_->GetTemporality());
    EXPECT_EQ(TemporalityDefault, NodeAccess::GetStoredDerived(*this->leaf_));
}

TYPED_TEST(LeafContractTest, ComparesByValue) {
    using Kind = Facts<TypeParam>;
    Kind::SetSmall(*this->leaf_);
    Kind::SetGreat(*this->other_);
    EXPECT_EQ(-1, this->leaf_->Compare(this->other_, TemporalityTemporary, false));
    EXPECT_EQ(1, this->other_->Compare(this->leaf_, TemporalityTemporary, false));
    Kind::SetGreat(*this->leaf_);
    EXPECT_EQ(0, this->leaf_->Compare(this->other_, TemporalityTemporary, false));
    EXPECT_EQ(Kind::kGreat, Show(*this->leaf_));
    EXPECT_EQ(Kind::kGreat, Show(*this->other_));
}

struct ThresholdRow {
    int temporality;
    int threshold;
    int result;
};

// The value counts only when the derived temporality is not above the threshold; a default one derives as persistent.
constexpr ThresholdRow kThresholdRows[] = {
    {0, 0, -1}, {0, 4, -1},                                      //
    {1, 0, 0},  {1, 1, 0},  {1, 2, -1}, {1, 3, -1}, {1, 4, -1},  //
    {2, 0, 0},  {2, 1, 0},  {2, 2, -1}, {2, 3, -1}, {2, 4, -1},  //
    {3, 0, 0},  {3, 1, 0},  {3, 2, 0},  {3, 3, -1}, {3, 4, -1},  //
    {4, 0, 0},  {4, 1, 0},  {4, 2, 0},  {4, 3, 0},  {4, 4, -1},
};

TYPED_TEST(LeafContractTest, ALeafMoreTransientThanTheComparisonEqualsEveryValue) {
    using Kind = Facts<TypeParam>;
    Kind::SetSmall(*this->leaf_);
    Kind::SetGreat(*this->other_);
    for (const ThresholdRow& row : kThresholdRows) {
        this->leaf_->SetTemporality(EnumOrvGenericsTemporality(row.temporality));
        EXPECT_EQ(row.result, this->leaf_->Compare(this->other_, EnumOrvGenericsTemporality(row.threshold), false))
            << row.temporality << " at " << row.threshold;
    }
}

TYPED_TEST(LeafContractTest, TheOthersTemporalityHasNoSayInAComparison) {
    using Kind = Facts<TypeParam>;
    Kind::SetSmall(*this->leaf_);
    Kind::SetGreat(*this->other_);
    this->other_->SetTemporality(TemporalityTemporary);
    EXPECT_EQ(-1, this->leaf_->Compare(this->other_, TemporalityPersistent, true));
}

TYPED_TEST(LeafContractTest, TheParentsTemporalityHasNoSayInAComparison) {
    using Kind = Facts<TypeParam>;
    Kind::SetSmall(*this->leaf_);
    Kind::SetGreat(*this->other_);
    this->tree_.Root()->SetTemporality(TemporalityTemporary);
    EXPECT_EQ(4, this->leaf_->GetDerivedTemporality());
    EXPECT_EQ(-1, this->leaf_->Compare(this->other_, TemporalityPersistent, true));
}

TYPED_TEST(LeafContractTest, MergingNeverChangesTheValue) {
    using Kind = Facts<TypeParam>;
    Kind::SetSmall(*this->leaf_);
    Kind::SetGreat(*this->other_);
    for (const bool flag : {false, true}) {
        EXPECT_EQ(1, this->tree_.ChangesOf([&] { static_cast<void>(this->leaf_->MergeWith(this->other_, flag)); }));
        EXPECT_EQ(Kind::kSmall, Show(*this->leaf_));
        EXPECT_EQ(Kind::kGreat, Show(*this->other_));
    }
}

TYPED_TEST(LeafContractTest, MergingDifferentValuesIsAConflictExceptFor64BitNumbers) {
    using Kind = Facts<TypeParam>;
    constexpr bool kAgree = std::is_same_v<TypeParam, Integer64>;
    Kind::SetSmall(*this->leaf_);
    Kind::SetGreat(*this->other_);
    for (const bool flag : {false, true}) {
        EXPECT_EQ(kAgree, this->leaf_->MergeWith(this->other_, flag));
        EXPECT_EQ(kAgree, this->other_->MergeWith(this->leaf_, flag));
    }
    Kind::SetSmall(*this->other_);
    EXPECT_TRUE(this->leaf_->MergeWith(this->other_, false));
    this->other_->SetTemporality(TemporalityTransient);
    EXPECT_FALSE(this->leaf_->MergeWith(this->other_, false)) << "equal values of conflicting temporalities";
}

TYPED_TEST(LeafContractTest, AConflictOfValuesStillTakesTheTemporalityOver) {
    using Kind = Facts<TypeParam>;
    Kind::SetSmall(*this->leaf_);
    Kind::SetGreat(*this->other_);
    this->leaf_->SetTemporality(TemporalityDefault);
    this->other_->SetTemporality(TemporalityTransient);
    EXPECT_EQ((std::is_same_v<TypeParam, Integer64>), this->leaf_->MergeWith(this->other_, false));
    EXPECT_EQ(TemporalityTransient, this->leaf_->GetTemporality());
}

// kept-on-purpose: integer64-visit
TYPED_TEST(LeafContractTest, ItsVisitIsTheVisitorsAnswerExceptFor64BitNumbersWhichAreNotShown) {
    constexpr bool kShown = !std::is_same_v<TypeParam, Integer64>;
    for (const int answer : {1, 2, 3, 4, 77}) {
        NotingVisitor visitor{VisitCode(answer)};
        EXPECT_EQ(kShown ? answer : 1, this->leaf_->Visit(&visitor, false));
        EXPECT_EQ(kShown ? std::vector<std::string>{Facts<TypeParam>::kVisit} : std::vector<std::string>{},
                  visitor.calls);
        EXPECT_EQ(kShown ? std::vector<const Node*>{this->leaf_} : std::vector<const Node*>{}, visitor.nodes);
    }
}

TYPED_TEST(LeafContractTest, ItsVisitAfterTheChildrenDoesNotCallTheVisitor) {
    NotingVisitor visitor(VisitStop);
    EXPECT_EQ(VisitContinue, this->leaf_->Visit(&visitor, true));
    EXPECT_TRUE(visitor.calls.empty());
}

TYPED_TEST(LeafContractTest, ItsVisitAsksForNoTemporality) {
    this->leaf_->SetTemporality(TemporalityReserved);
    NotingVisitor visitor;
    EXPECT_EQ(VisitContinue, this->leaf_->Visit(&visitor, false));
    EXPECT_EQ((std::is_same_v<TypeParam, Integer64> ? 0U : 1U), visitor.calls.size());
}

struct VisibilityRow {
    std::uint32_t flags;
    bool shown[5];  // by own temporality 0 to 4
};

// What each temporality bit of the iteration flags shows; an up-to bit includes the lower ones; no bit shows all but 0.
constexpr VisibilityRow kVisibilityRows[] = {
    {0x00000000U, {false, true, true, true, true}},    {0x01000000U, {false, true, true, false, false}},
    {0x02000000U, {false, true, true, true, false}},   {0x04000000U, {false, true, true, true, true}},
    {0x10000000U, {false, true, false, false, false}}, {0x20000000U, {false, false, true, false, false}},
    {0x40000000U, {false, false, false, true, false}}, {0x80000000U, {false, false, false, false, true}},
    {0x90000000U, {false, true, false, false, true}},  {0x41000000U, {false, true, true, true, false}},
};

TYPED_TEST(LeafContractTest, AWalkShowsItByItsOwnTemporality) {
    for (const VisibilityRow& row : kVisibilityRows) {
        for (int temporality = 0; temporality <= 4; ++temporality) {
            this->leaf_->SetTemporality(EnumOrvGenericsTemporality(temporality));
            NotingVisitor visitor;
            this->leaf_->Iterate(&visitor, SemanticTagNone, static_cast<int>(row.flags) | IterateSelf);
            EXPECT_EQ(row.shown[temporality] ? 1U : 0U, visitor.calls.size())
                << std::hex << row.flags << " for " << temporality;
        }
    }
}

TYPED_TEST(LeafContractTest, AStepOfAWalkIsTheVisitorsAnswerWhateverTagAndOrder) {
    constexpr int kSeen = IterateSelf | IterateSeePersistent | Facts<TypeParam>::kTypeBit;
    for (const int answer : {1, 2, 3, 4, 77}) {
        for (const int order : {0, IteratePreOrder, IteratePostOrder}) {
            NotingVisitor visitor{VisitCode(answer)};
            EXPECT_EQ(answer, NodeAccess::IterateInner(*this->leaf_, &visitor, SemanticTag(4100), kSeen | order));
            EXPECT_EQ((std::vector<std::string>{Facts<TypeParam>::kVisit}), visitor.calls);
            EXPECT_EQ((std::vector<const Node*>{this->leaf_}), visitor.nodes);
        }
    }
}

TYPED_TEST(LeafContractTest, AStepOfAWalkNeedsSelfTypeAndTemporality) {
    constexpr int kType = Facts<TypeParam>::kTypeBit;
    NotingVisitor visitor(VisitStop);
    const auto step = [&](int flags) {
        return NodeAccess::IterateInner(*this->leaf_, &visitor, SemanticTagNone, flags);
    };
    EXPECT_EQ(VisitContinue, step(IterateSeePersistent | kType | IterateChildren | IterateDeeper));
    EXPECT_EQ(VisitContinue, step(IterateSelf | IterateSeePersistent | (IterateTypeBits & ~kType)));
    EXPECT_EQ(VisitContinue, step(IterateSelf | kType));
    EXPECT_EQ(VisitContinue, step(IterateSelf | kType | IterateSeeTransient));
    EXPECT_EQ(VisitContinue, step(0));
    EXPECT_TRUE(visitor.calls.empty());
    EXPECT_EQ(VisitStop, step(IterateSelf | kType | IterateUpToPersistent));
}

TYPED_TEST(LeafContractTest, AskingForItsRemovalInAWalkRemovesIt) {
    NotingVisitor visitor(VisitRemove);
    this->tree_.Root()->Iterate(&visitor, SemanticTagNone, 0);
    EXPECT_EQ((std::vector<std::string>{Facts<TypeParam>::kVisit}), visitor.calls);
    EXPECT_EQ(nullptr, this->tree_.Root()->Get(3));
}

TYPED_TEST(LeafContractTest, AReadOnlyTreeRefusesChangesAndKeepsTheValue) {
    using Kind = Facts<TypeParam>;
    Kind::SetSmall(*this->leaf_);
    Kind::SetGreat(*this->other_);
    this->tree_->SetReadOnly();
    EXPECT_EQ(0, this->tree_.ChangesOf([&] {
        EXPECT_EQ(kReadOnlyText, TextOf([&] { this->leaf_->Clear(); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { this->leaf_->Populate(this->other_); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { this->leaf_->Populate(this->Other()); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { this->leaf_->Populate(static_cast<TypeParam*>(nullptr)); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { static_cast<void>(this->leaf_->MergeWith(this->other_, true)); }));
        if constexpr (Kind::kSetChanges == 1) {
            EXPECT_EQ(kReadOnlyText, TextOf([&] { Kind::SetGreat(*this->leaf_); }));
            EXPECT_THROW(Kind::SetGreat(*this->leaf_), ReadOnlyException);
        }
    }));
    EXPECT_EQ(Kind::kSmall, Show(*this->leaf_));
    EXPECT_EQ(-1, this->leaf_->Compare(this->other_, TemporalityTemporary, true));
}

TYPED_TEST(LeafContractTest, AReadOnlySourceCanBeCopiedMergedAndCompared) {
    using Kind = Facts<TypeParam>;
    Kind::SetGreat(*this->other_);
    this->otherTree_->SetReadOnly();
    this->leaf_->Populate(this->other_);
    EXPECT_EQ(Kind::kGreat, Show(*this->leaf_));
    EXPECT_TRUE(this->leaf_->MergeWith(this->other_, false));
    EXPECT_EQ(0, this->leaf_->Compare(this->other_, TemporalityTemporary, true));
}

}  // namespace
}  // namespace KivGenerics::Testing
