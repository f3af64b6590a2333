// An update of a tree in which everything is persistent touches no node: what each node answers must be what it would answer
// had it been touched.

#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "core/NodeAccess.h"
#include "core/TreeImpl.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::NewTree;

namespace {

EnumOrvGenericsTemporality Stored(const Node* node) {
    return NodeAccess::GetStoredDerived(*node);
}

/// A map with a vector of two numbers in slot 0, updated.
class TemporalityRoundsTest : public ::testing::Test {
protected:
    TemporalityRoundsTest()
        : root_(static_cast<Map*>(tree_->NewRoot(NodeTypeMap))), vector_(root_->NewNode<Vector>(0)) {
        first_ = vector_->Add<Integer>();
        second_ = vector_->Add<Integer>();
        tree_->UpdateDerivedTemporality();
    }

    bool IsAllPersistent() const { return static_cast<TreeImpl*>(tree_.Get())->IsAllPersistent(); }

    KivBase::ReturnPtrI<Tree> tree_ = NewTree();
    Map* root_;
    Vector* vector_;
    Integer* first_ = nullptr;
    Integer* second_ = nullptr;
};

}  // namespace

TEST_F(TemporalityRoundsTest, AnUpdateMakesEveryNodePersistent) {
    EXPECT_TRUE(IsAllPersistent());
    for (const Node* const node :
         {static_cast<Node*>(root_), static_cast<Node*>(vector_), static_cast<Node*>(first_)}) {
        EXPECT_EQ(TemporalityPersistent, Stored(node));
        EXPECT_TRUE(node->ShouldVisit(TemporalityPersistent));
        EXPECT_FALSE(node->ShouldVisit(TemporalityDefault));
    }
}

TEST_F(TemporalityRoundsTest, ANewNodeIsNotCalculatedUntilTheNextUpdate) {
    Integer* const third = vector_->Add<Integer>();
    EXPECT_EQ(TemporalityDefault, Stored(third));
    EXPECT_TRUE(third->ShouldVisit(TemporalityDefault));
    EXPECT_EQ(TemporalityPersistent, Stored(first_));
    EXPECT_FALSE(IsAllPersistent());
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityPersistent, Stored(third));
    EXPECT_TRUE(IsAllPersistent());
}

TEST_F(TemporalityRoundsTest, AnyNumberOfUpdatesLeavesOldValuesOld) {
    for (int i = 0; i < 1000; ++i) {
        second_->Set(i);
        tree_->UpdateDerivedTemporality();
        Integer* const added = vector_->Add<Integer>();
        ASSERT_EQ(TemporalityDefault, Stored(added)) << i;
        ASSERT_EQ(TemporalityPersistent, Stored(first_)) << i;
        ASSERT_EQ(TemporalityPersistent, Stored(root_)) << i;
        vector_->Remove(2);
        ASSERT_TRUE(second_->ShouldVisit(TemporalityPersistent)) << i;
    }
}

TEST_F(TemporalityRoundsTest, ATransientElementMakesItsVectorPersistentAndTakesItsValue) {
    second_->SetTemporality(TemporalityTransient);
    EXPECT_EQ(TemporalityDefault, Stored(second_));
    tree_->UpdateDerivedTemporality();
    EXPECT_FALSE(IsAllPersistent());
    EXPECT_EQ(TemporalityPersistent, Stored(vector_));
    EXPECT_EQ(TemporalityPersistent, Stored(second_));
    root_->NewNode<Integer>(1)->SetTemporality(TemporalityTemporary);
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTemporary, Stored(root_->Get(1)));
    EXPECT_EQ(TemporalityPersistent, Stored(first_));
}

TEST_F(TemporalityRoundsTest, TransientSiblingsStaySoInWhicheverRoundTheyBecomeIt) {
    constexpr int kIndexes[] = {1, 2, 3, 70, 71, 72};
    for (const int index : kIndexes) {
        root_->NewNode<Integer>(index);
    }
    const auto setAll = [&](EnumOrvGenericsTemporality t) {
        for (const int index : kIndexes) {
            root_->Get(index)->SetTemporality(t);
        }
        tree_->UpdateDerivedTemporality();
    };
    for (int round = 0; round < 300; ++round) {
        setAll(TemporalityPersistent);
        first_->Set(round);
        tree_->UpdateDerivedTemporality();
        setAll(TemporalityTransient);
        for (const int index : kIndexes) {
            ASSERT_EQ(TemporalityTransient, Stored(root_->Get(index))) << index << " in round " << round;
        }
    }
}

TEST_F(TemporalityRoundsTest, TransientLeavesOfACopyAreFoundByItsFirstUpdate) {
    Vector* const numbers = root_->NewNode<Vector>(1);
    numbers->SetTemporality(TemporalityDefault);
    for (int i = 0; i < 20; ++i) {
        numbers->Add<Integer>()->SetTemporality(TemporalityTransient);
    }
    const auto copy = NewTree();
    copy->CopyFromTree(tree_.Get());
    copy->UpdateDerivedTemporality();
    const auto* const copied = static_cast<Vector*>(static_cast<Map*>(copy->GetRoot())->Get(1));
    EXPECT_EQ(TemporalityTransient, Stored(copied));
    EXPECT_EQ(TemporalityTransient, Stored(copied->Get(19)));
}

TEST_F(TemporalityRoundsTest, AfterTheLastTransientNodeIsGoneUpdatesAreQuickAgain) {
    root_->NewNode<Integer>(1)->SetTemporality(TemporalityTransient);
    tree_->UpdateDerivedTemporality();
    EXPECT_FALSE(IsAllPersistent());
    root_->Remove(1);
    tree_->UpdateDerivedTemporality();
    EXPECT_TRUE(IsAllPersistent());
    EXPECT_EQ(TemporalityPersistent, Stored(first_));
}

TEST_F(TemporalityRoundsTest, AVectorThatLosesItsLastElementBecomesTemporary) {
    vector_->SetTemporality(TemporalityDefault);
    tree_->UpdateDerivedTemporality();
    EXPECT_TRUE(IsAllPersistent());
    vector_->Remove(0);
    vector_->Remove(0);
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTemporary, Stored(vector_));
    EXPECT_FALSE(IsAllPersistent());
    vector_->Add<Integer>();
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityPersistent, Stored(vector_));
}

TEST_F(TemporalityRoundsTest, ACompositeThatLosesItsOnlyChildBecomesTemporary) {
    Vector* const vector = root_->NewNode<Vector>(1);
    Map* const map = root_->NewNode<Map>(2);
    Map* const beyond = root_->NewNode<Map>(3);
    vector->Add<Integer>();
    map->NewNode<Integer>(0);
    beyond->NewNode<Integer>(70);
    for (Composite* const composite :
         {static_cast<Composite*>(vector), static_cast<Composite*>(map), static_cast<Composite*>(beyond)}) {
        composite->SetTemporality(TemporalityDefault);
        tree_->UpdateDerivedTemporality();
        EXPECT_EQ(TemporalityPersistent, Stored(composite));
        composite->Remove(composite == beyond ? 70 : 0);
        tree_->UpdateDerivedTemporality();
        EXPECT_EQ(TemporalityTemporary, Stored(composite)) << composite->GetIndex();
    }
}

TEST_F(TemporalityRoundsTest, AClearedMapBecomesTemporary) {
    Map* const inner = root_->NewNode<Map>(1);
    inner->NewNode<Integer>(3);
    inner->SetTemporality(TemporalityDefault);
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityPersistent, Stored(inner));
    inner->Clear();
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTemporary, Stored(inner));
}

TEST_F(TemporalityRoundsTest, AnElementThatIsAnEmptyMapIsTemporaryUntilItGetsAChild) {
    Vector* const maps = root_->NewNode<Vector>(2);
    maps->SetTemporality(TemporalityDefault);
    Map* const map = maps->Add<Map>();
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTemporary, Stored(map));
    map->NewNode<Integer>(70);
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityPersistent, Stored(map));
}

TEST_F(TemporalityRoundsTest, ADetachedNodeKeepsWhatItHad) {
    Integer* const added = vector_->Add<Integer>();
    added->Detach();
    first_->Set(1);
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityDefault, Stored(added));
    EXPECT_EQ(TemporalityPersistent, Stored(first_));
}

TEST_F(TemporalityRoundsTest, ARootThatWasReplacedKeepsWhatItHad) {
    root_->SetTemporality(TemporalityTransient);
    tree_->NewRoot(NodeTypeInteger);
    for (int i = 0; i < 3; ++i) {
        static_cast<Integer*>(tree_->GetRoot())->Set(i);
        tree_->UpdateDerivedTemporality();
    }
    EXPECT_EQ(TemporalityDefault, Stored(root_));
    tree_->SetRoot(root_);
    EXPECT_EQ(TemporalityDefault, Stored(root_));
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTransient, Stored(root_));
}

TEST_F(TemporalityRoundsTest, WhatIsPutIntoARootThatWasReplacedIsNotUpdatedWithTheTree) {
    tree_->NewRoot(NodeTypeInteger);
    Node* const late = root_->NewNode<Integer>(3);
    static_cast<Integer*>(tree_->GetRoot())->Set(1);
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityDefault, Stored(late));
}

TEST_F(TemporalityRoundsTest, ACopyOfANodeKeepsWhatTheNodeHad) {
    const Integer copy(*vector_->Add<Integer>());
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityDefault, Stored(&copy));
}

TEST_F(TemporalityRoundsTest, AMergeThatTakesATransientValueOverShowsInTheNextUpdate) {
    const auto other = NewTree();
    auto* const theirs = static_cast<Map*>(other->NewRoot(NodeTypeMap));
    theirs->NewNode<Vector>(0)->SetTemporality(TemporalityTransient);
    EXPECT_FALSE(root_->MergeWith(theirs, false));
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTransient, Stored(vector_));
    EXPECT_EQ(TemporalityTransient, Stored(first_));
}

TEST_F(TemporalityRoundsTest, ACopyOfATransientTreeIsNotTakenForPersistent) {
    second_->SetTemporality(TemporalityTransient);
    root_->NewNode<Integer>(9)->SetTemporality(TemporalityTemporary);
    const auto copy = NewTree();
    auto* const map = static_cast<Map*>(copy->CopyFromTree(tree_.Get()));
    copy->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTemporary, Stored(map->Get(9)));
    EXPECT_FALSE(static_cast<TreeImpl*>(copy.Get())->IsAllPersistent());
}

TEST_F(TemporalityRoundsTest, ATransientNodeIsOneInWhicheverRoundItIsUpdated) {
    for (int rounds = 0; rounds < 300; ++rounds) {
        const auto tree = NewTree();
        auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
        auto* const number = map->NewNode<Integer>(0);
        const auto* const other = map->NewNode<Integer>(1);
        for (int round = 0; round < rounds; ++round) {
            number->Set(round);
            tree->UpdateDerivedTemporality();
        }
        number->SetTemporality(TemporalityTransient);
        tree->UpdateDerivedTemporality();
        EXPECT_EQ(TemporalityTransient, Stored(number)) << rounds;
        EXPECT_EQ(TemporalityPersistent, Stored(other)) << rounds;
        number->SetTemporality(TemporalityPersistent);
        tree->UpdateDerivedTemporality();
        EXPECT_EQ(TemporalityPersistent, Stored(number)) << rounds;
    }
}
