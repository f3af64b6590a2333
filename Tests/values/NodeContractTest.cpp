// What holds for every node, run over all twelve kinds. Composites are empty here.

#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/NodeCast.h>

#include "core/NodeAccess.h"
#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

template <class T>
class NodeContractTest : public ::testing::Test {
protected:
    Node* Other() { return other_; }

    ValueTree tree_;
    T* node_ = tree_.Add<T>(3);
    ValueTree otherTree_;
    T* other_ = otherTree_.Add<T>(5);
};
TYPED_TEST_SUITE(NodeContractTest, AllKinds, KindNames);

/// A node of every kind but `type`, in the fixed slots and the overflow store of the root of `tree`.
std::vector<Node*> MakeOtherKinds(const ValueTree& tree, NodeType type) {
    std::vector<Node*> others;
    for (int kind = 1; kind <= 12; ++kind) {
        if (kind != type) {
            others.push_back(tree.Root()->NewNode(20 + kind, NodeType(kind)));
        }
    }
    return others;
}

TYPED_TEST(NodeContractTest, ANewChildNamesItsKindPlaceAndTree) {
    EXPECT_EQ(Facts<TypeParam>::kNumber, this->node_->GetType());
    EXPECT_EQ(Facts<TypeParam>::kNumber, TypeParam::StaticType);
    EXPECT_EQ(3, this->node_->GetIndex());
    EXPECT_EQ(this->tree_.Root(), this->node_->GetParent());
    EXPECT_FALSE(this->node_->IsRoot());
    EXPECT_EQ(this->tree_.operator->(), this->node_->GetTree().Get());
    EXPECT_EQ(1, this->node_->GetSemanticTag());
    EXPECT_EQ(TemporalityPersistent, this->node_->GetTemporality());
    EXPECT_EQ(TemporalityDefault, NodeAccess::GetStoredDerived(*this->node_));
    EXPECT_EQ(this->node_, this->tree_.Root()->Get(3));
}

TYPED_TEST(NodeContractTest, ANewRootHasNoPlaceAndDefaultTemporality) {
    Node* const root = this->tree_->NewRoot(TypeParam::StaticType);
    EXPECT_EQ(Facts<TypeParam>::kNumber, root->GetType());
    EXPECT_EQ(-1, root->GetIndex());
    EXPECT_EQ(nullptr, root->GetParent());
    EXPECT_TRUE(root->IsRoot());
    EXPECT_EQ(TemporalityDefault, root->GetTemporality());
    EXPECT_EQ(TemporalityDefault, NodeAccess::GetStoredDerived(*root));
    EXPECT_EQ(Facts<TypeParam>::kDerivedWhenNew, root->GetDerivedTemporality());
    EXPECT_EQ(Facts<TypeParam>::kDerivedWhenNew, NodeAccess::GetStoredDerived(*root));
}

TYPED_TEST(NodeContractTest, OnlyItsOwnClassIsTheResultOfACast) {
    Node* const node = this->node_;
    EXPECT_EQ(this->node_, node_cast<TypeParam>(node));
    for (Node* const other : MakeOtherKinds(this->tree_, TypeParam::StaticType)) {
        EXPECT_EQ(nullptr, node_cast<TypeParam>(other)) << other->GetType();
    }
}

TYPED_TEST(NodeContractTest, SettingTheTemporalityStoresItForgetsTheDerivedOneAndCountsOnce) {
    this->node_->GetDerivedTemporality();
    ASSERT_EQ(TemporalityPersistent, NodeAccess::GetStoredDerived(*this->node_));
    EXPECT_EQ(1, this->tree_.ChangesOf([&] { this->node_->SetTemporality(TemporalityTemporary); }));
    EXPECT_EQ(TemporalityTemporary, this->node_->GetTemporality());
    EXPECT_EQ(TemporalityDefault, NodeAccess::GetStoredDerived(*this->node_));
    EXPECT_EQ(TemporalityTemporary, this->node_->GetDerivedTemporality());
}

TYPED_TEST(NodeContractTest, ShouldVisitAnswersFromTheStoredDerivedTemporality) {
    this->node_->SetTemporality(TemporalityTransient);
    EXPECT_FALSE(this->node_->ShouldVisit(TemporalityReserved));
    EXPECT_TRUE(this->node_->ShouldVisit(TemporalityDefault)) << "not calculated yet";
    EXPECT_EQ(TemporalityTransient, this->node_->CalculateDerivedTemporality());
    EXPECT_FALSE(this->node_->ShouldVisit(TemporalityPersistent));
    EXPECT_TRUE(this->node_->ShouldVisit(TemporalityTransient));
}

TYPED_TEST(NodeContractTest, ClearKeepsPlaceAndTemporalitiesAndCountsOnce) {
    this->node_->SetTemporality(TemporalityTransient);
    this->node_->CalculateDerivedTemporality();
    EXPECT_EQ(1, this->tree_.ChangesOf([&] { this->node_->Clear(); }));
    EXPECT_EQ(TemporalityTransient, this->node_->GetTemporality());
    EXPECT_EQ(TemporalityTransient, NodeAccess::GetStoredDerived(*this->node_));
    EXPECT_EQ(3, this->node_->GetIndex());
    EXPECT_EQ(this->tree_.Root(), this->node_->GetParent());
}

TYPED_TEST(NodeContractTest, PopulateTakesTheOwnTemporalityForgetsTheDerivedOneAndKeepsThePlace) {
    this->node_->CalculateDerivedTemporality();
    this->other_->SetTemporality(TemporalityTemporary);
    EXPECT_EQ(Facts<TypeParam>::kPopulateChanges, this->tree_.ChangesOf([&] { this->node_->Populate(this->Other()); }));
    EXPECT_EQ(TemporalityTemporary, this->node_->GetTemporality());
    EXPECT_EQ(TemporalityDefault, NodeAccess::GetStoredDerived(*this->node_));
    EXPECT_EQ(3, this->node_->GetIndex());
    EXPECT_EQ(this->tree_.Root(), this->node_->GetParent());
    EXPECT_EQ(this->tree_.operator->(), this->node_->GetTree().Get());
}

TYPED_TEST(NodeContractTest, PopulateLeavesItsSourceAndItsSourcesTreeAlone) {
    this->other_->CalculateDerivedTemporality();
    EXPECT_EQ(0, this->otherTree_.ChangesOf([&] { this->node_->Populate(this->Other()); }));
    EXPECT_EQ(TemporalityPersistent, this->other_->GetTemporality());
    EXPECT_EQ(TemporalityPersistent, NodeAccess::GetStoredDerived(*this->other_));
    EXPECT_EQ(5, this->other_->GetIndex());
}

TYPED_TEST(NodeContractTest, PopulateFromNullThrowsAfterTheGuardHasCounted) {
    EXPECT_EQ(1, this->tree_.ChangesOf([&] {
        EXPECT_EQ("Can't copy NULL node!", TextOf([&] { this->node_->Populate(static_cast<Node*>(nullptr)); }));
    }));
    EXPECT_EQ(TemporalityPersistent, this->node_->GetTemporality());
}

TYPED_TEST(NodeContractTest, PopulateFromEveryOtherKindThrowsAndKeepsTheTemporality) {
    for (Node* const other : MakeOtherKinds(this->otherTree_, TypeParam::StaticType)) {
        other->SetTemporality(TemporalityTransient);
        EXPECT_EQ(1, this->tree_.ChangesOf([&] {
            EXPECT_EQ("Can't copy nodes of different type!", TextOf([&] { this->node_->Populate(other); }));
        })) << other->GetType();
        EXPECT_EQ(TemporalityPersistent, this->node_->GetTemporality());
    }
}

TYPED_TEST(NodeContractTest, MergingWithNullThrowsAfterTheGuardHasCounted) {
    EXPECT_EQ(1, this->tree_.ChangesOf([&] {
        EXPECT_EQ("Cannot merge with NULL node!",
                  TextOf([&] { static_cast<void>(this->node_->MergeWith(nullptr, false)); }));
    }));
}

TYPED_TEST(NodeContractTest, MergingWithEveryOtherKindThrowsAndKeepsTheTemporality) {
    for (Node* const other : MakeOtherKinds(this->otherTree_, TypeParam::StaticType)) {
        other->SetTemporality(TemporalityTransient);
        EXPECT_EQ(1, this->tree_.ChangesOf([&] {
            EXPECT_EQ("Cannot merge with node of different type!",
                      TextOf([&] { static_cast<void>(this->node_->MergeWith(other, true)); }));
        })) << other->GetType();
        EXPECT_EQ(TemporalityPersistent, this->node_->GetTemporality());
    }
}

struct MergeRow {
    int mine;
    int theirs;
    bool agreed;
    int result;
};

// Every pair of own temporalities: equal ones and a default of the other's agree; else the other's is taken over,
// without conflict only where this node had none.
constexpr MergeRow kMergeRows[] = {
    {0, 0, true, 0},  {0, 1, true, 0}, {0, 2, false, 2}, {0, 3, false, 3}, {0, 4, false, 4},
    {1, 0, true, 0},  {1, 1, true, 1}, {1, 2, true, 2},  {1, 3, true, 3},  {1, 4, true, 4},
    {2, 0, false, 0}, {2, 1, true, 2}, {2, 2, true, 2},  {2, 3, false, 3}, {2, 4, false, 4},
    {3, 0, false, 0}, {3, 1, true, 3}, {3, 2, false, 2}, {3, 3, true, 3},  {3, 4, false, 4},
    {4, 0, false, 0}, {4, 1, true, 4}, {4, 2, false, 2}, {4, 3, false, 3}, {4, 4, true, 4},
};

TYPED_TEST(NodeContractTest, MergingEqualNodesAnswersTheVerdictOnTheirTemporalities) {
    for (const MergeRow& row : kMergeRows) {
        for (const bool flag : {false, true}) {
            this->node_->SetTemporality(EnumOrvGenericsTemporality(row.mine));
            this->other_->SetTemporality(EnumOrvGenericsTemporality(row.theirs));
            EXPECT_EQ(1, this->tree_.ChangesOf([&] {
                EXPECT_EQ(row.agreed, this->node_->MergeWith(this->other_, flag)) << row.mine << " with " << row.theirs;
            }));
            EXPECT_EQ(row.result, this->node_->GetTemporality()) << row.mine << " with " << row.theirs;
            EXPECT_EQ(row.theirs, this->other_->GetTemporality());
        }
    }
}

TYPED_TEST(NodeContractTest, MergingStoresTheOwnTemporalityAlone) {
    this->node_->CalculateDerivedTemporality();
    this->other_->SetTemporality(TemporalityTemporary);
    EXPECT_FALSE(this->node_->MergeWith(this->other_, false));
    EXPECT_EQ(TemporalityTemporary, this->node_->GetTemporality());
    EXPECT_EQ(TemporalityPersistent, NodeAccess::GetStoredDerived(*this->node_));
}

TYPED_TEST(NodeContractTest, ComparingCountsNothingAndFindsNewNodesOfOneKindEqual) {
    EXPECT_EQ(0, this->tree_.ChangesOf([&] {
        EXPECT_EQ(0, this->node_->Compare(this->other_, TemporalityTemporary, true));
        EXPECT_EQ(0, this->node_->Compare(this->node_, TemporalityTemporary, false));
    }));
}

TYPED_TEST(NodeContractTest, ComparingWithNullThrows) {
    for (const bool recalc : {false, true}) {
        EXPECT_EQ("Can't compare NULL node!",
                  TextOf([&] { static_cast<void>(this->node_->Compare(nullptr, TemporalityTemporary, recalc)); }));
    }
    EXPECT_EQ(TemporalityDefault, NodeAccess::GetStoredDerived(*this->node_)) << "nothing is calculated before";
}

TYPED_TEST(NodeContractTest, NodesOfOtherKindsAreOrderedByTheirNumbers) {
    const std::vector<Node*> others = MakeOtherKinds(this->otherTree_, TypeParam::StaticType);
    ASSERT_EQ(11U, others.size());
    for (Node* const other : others) {
        EXPECT_EQ(Facts<TypeParam>::kNumber - static_cast<int>(other->GetType()),
                  this->node_->Compare(other, TemporalityPersistent, false));
    }
}

TYPED_TEST(NodeContractTest, ANodeMoreTransientThanTheComparisonEqualsAnything) {
    this->node_->SetTemporality(TemporalityTransient);
    for (Node* const other : MakeOtherKinds(this->otherTree_, TypeParam::StaticType)) {
        EXPECT_EQ(0, this->node_->Compare(other, TemporalityPersistent, false)) << other->GetType();
        EXPECT_NE(0, this->node_->Compare(other, TemporalityTransient, false)) << other->GetType();
    }
}

TEST(NodeTest, EveryKindButAMapRefusesToBeWrittenAsARoot) {
    const ValueTree tree;
    const std::vector<Node*> nodes = MakeOtherKinds(tree, NodeTypeMap);
    ASSERT_EQ(11U, nodes.size());
    for (Node* const node : nodes) {
        EXPECT_EQ(static_cast<std::int32_t>(0x80004001U), node->WriteToArchive(nullptr, true, 0)) << node->GetType();
        EXPECT_EQ(static_cast<std::int32_t>(0x80004001U), node->WriteToArchive(nullptr, false, 0x11));
    }
}

TYPED_TEST(NodeContractTest, AWalkShowsItByItsTypeBitAlone) {
    for (int bit = 0x1; bit <= 0x8000; bit <<= 1) {
        NotingVisitor visitor;
        this->node_->Iterate(&visitor, SemanticTagNone, IterateSelf | bit);
        if (bit == Facts<TypeParam>::kTypeBit) {
            EXPECT_EQ((std::vector<std::string>{Facts<TypeParam>::kVisit}), visitor.calls) << bit;
            EXPECT_EQ((std::vector<const Node*>{this->node_}), visitor.nodes) << bit;
        } else {
            EXPECT_TRUE(visitor.calls.empty()) << bit;
        }
    }
}

TYPED_TEST(NodeContractTest, AWalkThatLeavesOutTheStartNodeDoesNotShowIt) {
    NotingVisitor visitor;
    this->node_->Iterate(&visitor, SemanticTagNone, 0);
    this->node_->Iterate(&visitor, SemanticTagNone, IterateChildren);
    this->node_->Iterate(nullptr, SemanticTagNone, IterateSelf);
    EXPECT_TRUE(visitor.calls.empty());
}

TYPED_TEST(NodeContractTest, AWalkForAnotherTagThanOneShowsMapsOfThatTagAlone) {
    NotingVisitor forTagOne;
    this->node_->Iterate(&forTagOne, SemanticTag(1), IterateSelf);
    EXPECT_EQ((std::vector<std::string>{Facts<TypeParam>::kVisit}), forTagOne.calls);
    NotingVisitor forTagFive;
    this->node_->Iterate(&forTagFive, SemanticTag(5), IterateSelf);
    EXPECT_TRUE(forTagFive.calls.empty());
}

TYPED_TEST(NodeContractTest, ANodeOfReservedTemporalityIsNeverShown) {
    this->node_->SetTemporality(TemporalityReserved);
    NotingVisitor visitor;
    this->node_->Iterate(&visitor, SemanticTagNone, IterateSelf);
    EXPECT_TRUE(visitor.calls.empty());
}

// kept-on-purpose: temporality-out-of-range
TYPED_TEST(NodeContractTest, ATemporalityOutsideTheScaleIsStoredAndHidesTheNode) {
    for (const int temporality : {-1, 5, 127}) {
        this->node_->SetTemporality(EnumOrvGenericsTemporality(temporality));
        EXPECT_EQ(temporality, this->node_->GetTemporality());
        NotingVisitor visitor;
        this->node_->Iterate(&visitor, SemanticTagNone, IterateSelf);
        EXPECT_TRUE(visitor.calls.empty()) << temporality;
    }
}

// kept-on-purpose: copies-name-the-source
TYPED_TEST(NodeContractTest, AssigningMakesTheNodeNameTheSourcesTreeParentIndexAndTemporalities) {
    this->other_->SetTemporality(TemporalityTransient);
    this->other_->CalculateDerivedTemporality();
    this->tree_->SetReadOnly();
    EXPECT_EQ(0, this->tree_.ChangesOf([&] { *this->node_ = *this->other_; }));
    EXPECT_EQ(5, this->node_->GetIndex());
    EXPECT_EQ(this->otherTree_.Root(), this->node_->GetParent());
    EXPECT_EQ(this->otherTree_.operator->(), this->node_->GetTree().Get());
    EXPECT_EQ(TemporalityTransient, this->node_->GetTemporality());
    EXPECT_EQ(TemporalityTransient, NodeAccess::GetStoredDerived(*this->node_));
    EXPECT_EQ(this->node_, this->tree_.Root()->Get(3)) << "no parent takes notice";
    EXPECT_EQ(this->other_, this->otherTree_.Root()->Get(5));
}

TYPED_TEST(NodeContractTest, ADetachedNodeKeepsKindTreeAndTemporality) {
    this->node_->SetTemporality(TemporalityTransient);
    EXPECT_EQ(2, this->tree_.ChangesOf([&] { EXPECT_EQ(this->node_, static_cast<Node*>(this->node_)->Detach()); }));
    EXPECT_EQ(nullptr, this->node_->GetParent());
    EXPECT_EQ(-1, this->node_->GetIndex());
    EXPECT_EQ(TemporalityTransient, this->node_->GetTemporality());
    EXPECT_EQ(this->tree_.operator->(), this->node_->GetTree().Get());
    EXPECT_EQ(nullptr, this->tree_.Root()->Get(3));
}

TYPED_TEST(NodeContractTest, ARemovedNodeComesBackAsNew) {
    this->node_->SetTemporality(TemporalityTemporary);
    this->node_->CalculateDerivedTemporality();
    EXPECT_EQ(3, this->tree_.ChangesOf([&] { static_cast<Node*>(this->node_)->Remove(); }));
    EXPECT_EQ(nullptr, this->tree_.Root()->Get(3));
    Node* const again = this->tree_->NewRoot(TypeParam::StaticType);
    EXPECT_EQ(this->node_, again) << "the released node is handed out";
    EXPECT_EQ(nullptr, again->GetParent());
    EXPECT_EQ(-1, again->GetIndex());
    EXPECT_EQ(TemporalityDefault, again->GetTemporality());
    EXPECT_EQ(TemporalityDefault, NodeAccess::GetStoredDerived(*again));
}

TYPED_TEST(NodeContractTest, AReadOnlyTreeRefusesEveryChangeBeforeItLooksAtArguments) {
    this->tree_->SetReadOnly();
    Node* const node = this->node_;
    EXPECT_EQ(0, this->tree_.ChangesOf([&] {
        EXPECT_EQ(kReadOnlyText, TextOf([&] { node->SetTemporality(TemporalityTransient); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { node->Clear(); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { node->Remove(); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { static_cast<void>(node->Detach()); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { node->Populate(nullptr); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { node->Populate(this->tree_.Root()); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { node->Populate(this->other_); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { static_cast<void>(node->MergeWith(nullptr, false)); }));
        EXPECT_EQ(kReadOnlyText, TextOf([&] { static_cast<void>(node->MergeWith(this->other_, false)); }));
        EXPECT_THROW(node->Clear(), ReadOnlyException);
    }));
    EXPECT_EQ(TemporalityPersistent, this->node_->GetTemporality());
    EXPECT_EQ(this->node_, this->tree_.Root()->Get(3));
    EXPECT_EQ(0, this->node_->Compare(this->other_, TemporalityTemporary, true)) << "reading goes on";
}

}  // namespace
}  // namespace KivGenerics::Testing
