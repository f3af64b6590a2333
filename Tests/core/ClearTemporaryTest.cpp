#include <gtest/gtest.h>

#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::NewTree;

namespace {

class ClearTemporaryTest : public ::testing::Test {
protected:
    KivBase::ReturnPtrI<Tree> tree = NewTree();
    Map* root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
};

}  // namespace

TEST_F(ClearTemporaryTest, TransientAndTemporaryChildrenGoAndPersistentOnesStay) {
    Node* const persistent = root->NewNode(0, NodeTypeInteger);
    root->NewNode(1, NodeTypeInteger)->SetTemporality(TemporalityTransient);
    root->NewNode(2, NodeTypeInteger)->SetTemporality(TemporalityTemporary);
    root->NewNode(100, NodeTypeInteger)->SetTemporality(TemporalityTransient);
    Node* const far = root->NewNode(101, NodeTypeString);
    far->SetTemporality(TemporalityDefault);
    tree->ClearTemporaryNodes();
    EXPECT_EQ(root->GetSize(TemporalityTemporary), 2);
    EXPECT_EQ(root->Get(0), persistent);
    EXPECT_EQ(root->Get(101), far);
}

TEST_F(ClearTemporaryTest, ATransientCompositeGoesWithPersistentNodesBelowIt) {
    root->NewNode(0, NodeTypeInteger);
    auto* const map = static_cast<Map*>(root->NewNode(1, NodeTypeMap));
    map->SetTemporality(TemporalityTransient);
    Node* const leaf = map->NewNode(0, NodeTypeInteger);
    tree->ClearTemporaryNodes();
    EXPECT_EQ(root->Get(1), nullptr);
    EXPECT_EQ(leaf->GetParent(), nullptr);
}

TEST_F(ClearTemporaryTest, NodesDeepBelowPersistentOnesGo) {
    auto* const map = static_cast<Map*>(root->NewNode(1, NodeTypeMap));
    auto* const inner = static_cast<Map*>(map->NewNode(1, NodeTypeMap));
    Node* const kept = inner->NewNode(0, NodeTypeInteger);
    inner->NewNode(1, NodeTypeInteger)->SetTemporality(TemporalityTemporary);
    tree->ClearTemporaryNodes();
    EXPECT_EQ(inner->GetSize(TemporalityTemporary), 1);
    EXPECT_EQ(inner->Get(0), kept);
    EXPECT_EQ(map->Get(1), inner);
}

TEST_F(ClearTemporaryTest, ARootThatIsNotPersistentGoesToo) {
    root->NewNode(0, NodeTypeInteger)->SetTemporality(TemporalityTransient);
    tree->ClearTemporaryNodes();
    EXPECT_TRUE(tree->IsEmpty());
}

TEST_F(ClearTemporaryTest, AnEmptyRootOfDefaultTemporalityGoes) {
    tree->ClearTemporaryNodes();
    EXPECT_TRUE(tree->IsEmpty());
}

TEST_F(ClearTemporaryTest, AnEmptyPersistentRootStays) {
    root->SetTemporality(TemporalityPersistent);
    tree->ClearTemporaryNodes();
    EXPECT_EQ(tree->GetRoot(), root);
}

TEST_F(ClearTemporaryTest, ALeafAsRootStaysOrGoesLikeAnyOther) {
    Node* const leaf = tree->NewRoot(NodeTypeInteger);
    tree->ClearTemporaryNodes();
    EXPECT_EQ(tree->GetRoot(), leaf);
    leaf->SetTemporality(TemporalityTransient);
    tree->ClearTemporaryNodes();
    EXPECT_TRUE(tree->IsEmpty());
}

TEST_F(ClearTemporaryTest, ATreeWithoutRootIsLeftAsItIs) {
    tree->RemoveRoot();
    tree->ClearTemporaryNodes();
    EXPECT_TRUE(tree->IsEmpty());
}

TEST_F(ClearTemporaryTest, NodesOfReservedTemporalityAreNotVisitedAndStay) {
    root->NewNode(0, NodeTypeInteger);
    Node* const hidden = root->NewNode(1, NodeTypeInteger);
    hidden->SetTemporality(TemporalityReserved);
    root->SetTemporality(TemporalityPersistent);
    tree->ClearTemporaryNodes();
    EXPECT_EQ(root->Get(1), hidden);
    EXPECT_EQ(root->GetSize(TemporalityTemporary), 2);
}

TEST_F(ClearTemporaryTest, WhatStandsBelowAHiddenNodeIsStillVisited) {
    auto* const hidden = static_cast<Map*>(root->NewNode(1, NodeTypeMap));
    root->SetTemporality(TemporalityPersistent);
    hidden->SetTemporality(TemporalityReserved);
    Node* const kept = hidden->NewNode(0, NodeTypeInteger);
    hidden->NewNode(1, NodeTypeInteger)->SetTemporality(TemporalityTransient);
    tree->ClearTemporaryNodes();
    EXPECT_EQ(root->Get(1), hidden);
    EXPECT_EQ(hidden->Get(0), kept);
    EXPECT_EQ(hidden->Get(1), nullptr);
}

TEST_F(ClearTemporaryTest, ElementsOfAVectorGoWithItsDerivedValueAndNotTheirOwn) {
    auto* const vector = static_cast<Vector*>(root->NewNode(0, NodeTypeVector));
    vector->SetTemporality(TemporalityDefault);
    vector->Add(NodeTypeInteger);
    vector->Add(NodeTypeInteger)->SetTemporality(TemporalityTransient);
    tree->ClearTemporaryNodes();
    EXPECT_EQ(vector->GetSize(TemporalityTemporary), 2);
}

TEST_F(ClearTemporaryTest, TemporalitiesAreBroughtUpToDateFirst) {
    auto* const map = static_cast<Map*>(root->NewNode(0, NodeTypeMap));
    map->SetTemporality(TemporalityDefault);
    Node* const leaf = map->NewNode(0, NodeTypeInteger);
    root->NewNode(1, NodeTypeInteger);
    tree->UpdateDerivedTemporality();
    leaf->SetTemporality(TemporalityTransient);
    // The map's stored value still says persistent; calculated again it is transient.
    tree->ClearTemporaryNodes();
    EXPECT_EQ(root->Get(0), nullptr);
    EXPECT_NE(root->Get(1), nullptr);
}
