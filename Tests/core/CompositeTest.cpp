#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::ChangesOf;
using KivTests::NewTree;
using KivTests::TextOf;

namespace {

constexpr const char* kNull = "Move::Node can't be NULL!";
constexpr const char* kAncestor = "Can't perform this operation on an ancestor";
constexpr const char* kOtherTree = "Move::Can't move a node from a different tree!";

// A map that holds a vector at 1, which holds a map.
class CompositeTest : public ::testing::Test {
protected:
    KivBase::ReturnPtrI<Tree> tree = NewTree();
    KivBase::ReturnPtrI<Tree> other = NewTree();
    Map* root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Vector* vector = static_cast<Vector*>(root->NewNode(1, NodeTypeVector));
    Map* inner = static_cast<Map*>(vector->Add(NodeTypeMap));
    Integer* foreign = static_cast<Integer*>(other->NewRoot(NodeTypeInteger));
};

}  // namespace

// kept-on-purpose: move-null-text
TEST_F(CompositeTest, EveryOperationThatTakesANodeSaysMoveOfNull) {
    EXPECT_EQ(TextOf([&] { root->Move(0, nullptr); }), kNull);
    EXPECT_EQ(TextOf([&] { vector->Move(0, nullptr); }), kNull);
    EXPECT_EQ(TextOf([&] { root->ReplaceWithCopy(0, nullptr); }), kNull);
    EXPECT_EQ(TextOf([&] { vector->ReplaceWithCopy(0, nullptr); }), kNull);
    EXPECT_EQ(TextOf([&] { vector->AddCopy(nullptr); }), kNull);
    EXPECT_EQ(TextOf([&] { vector->InsertCopy(0, nullptr); }), kNull);
    EXPECT_EQ(TextOf([&] { vector->InsertNode(0, nullptr); }), kNull);
    EXPECT_EQ(vector->GetSize(TemporalityTemporary), 1);
}

TEST_F(CompositeTest, ItselfAndEveryAncestorAreRefused) {
    for (Node* const above : {static_cast<Node*>(inner), static_cast<Node*>(vector), static_cast<Node*>(root)}) {
        EXPECT_EQ(TextOf([&] { inner->Move(0, above); }), kAncestor);
        EXPECT_EQ(TextOf([&] { inner->ReplaceWithCopy(0, above); }), kAncestor);
    }
    EXPECT_EQ(TextOf([&] { vector->Move(0, vector); }), kAncestor);
    EXPECT_EQ(TextOf([&] { vector->AddCopy(root); }), kAncestor);
    EXPECT_EQ(TextOf([&] { vector->InsertCopy(0, root); }), kAncestor);
    EXPECT_EQ(TextOf([&] { vector->InsertNode(0, root); }), kAncestor);
    EXPECT_TRUE(inner->IsEmpty());
    EXPECT_EQ(vector->GetSize(TemporalityTemporary), 1);
}

TEST_F(CompositeTest, ARefusedNodeCountsNothing) {
    EXPECT_EQ(ChangesOf(*tree, [&] { root->Move(0, nullptr); }), 0);
    EXPECT_EQ(ChangesOf(*tree, [&] { inner->Move(0, root); }), 0);
    EXPECT_EQ(ChangesOf(*tree, [&] { inner->ReplaceWithCopy(0, root); }), 0);
    EXPECT_EQ(ChangesOf(*tree, [&] { inner->Move(0, foreign); }), 0);
}

TEST_F(CompositeTest, MoveRefusesANodeOfAnotherTree) {
    EXPECT_EQ(TextOf([&] { root->Move(0, foreign); }), kOtherTree);
    EXPECT_EQ(TextOf([&] { vector->Move(0, foreign); }), kOtherTree);
    EXPECT_EQ(other->GetRoot(), foreign);
    EXPECT_EQ(root->Get(0), nullptr);
}

TEST_F(CompositeTest, MoveRefusesANodeOfAnotherTreeOfTheSameForest) {
    const auto sibling = tree->CreateTreeInForest();
    Node* const node = sibling->NewRoot(NodeTypeInteger);
    EXPECT_EQ(TextOf([&] { root->Move(0, node); }), kOtherTree);
}

TEST_F(CompositeTest, MoveTakesANodeFromItsOldPlace) {
    auto* const leaf = static_cast<Integer*>(inner->NewNode(5, NodeTypeInteger));
    leaf->Set(9);
    root->Move(3, leaf);
    EXPECT_EQ(inner->Get(5), nullptr);
    EXPECT_EQ(root->Get(3), leaf);
    EXPECT_EQ(leaf->GetParent(), root);
    EXPECT_EQ(leaf->GetIndex(), 3);
    EXPECT_EQ(leaf->Get(), 9);
    EXPECT_EQ(leaf->GetTemporality(), TemporalityPersistent);
}

TEST_F(CompositeTest, MoveComparesTreesWithoutKeepingThem) {
    Node* const leaf = inner->NewNode(5, NodeTypeInteger);
    root->Move(3, leaf);
    EXPECT_EQ(TextOf([&] { root->Move(4, foreign); }), kOtherTree);
    EXPECT_EQ(tree->AddRef(), 2);
    EXPECT_EQ(tree->Release(), 1);
    EXPECT_EQ(other->AddRef(), 2);
    EXPECT_EQ(other->Release(), 1);
}

TEST_F(CompositeTest, ReplaceWithCopyTakesValueKindAndTemporalityFromAnotherTree) {
    foreign->Set(77);
    foreign->SetTemporality(TemporalityTransient);
    Node* const old = root->NewNode(4, NodeTypeString);
    Node* const copy = root->ReplaceWithCopy(4, foreign);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(root->Get(4), copy);
    EXPECT_NE(copy, old);
    EXPECT_EQ(copy->GetType(), NodeTypeInteger);
    EXPECT_EQ(static_cast<Integer*>(copy)->Get(), 77);
    EXPECT_EQ(copy->GetTemporality(), TemporalityTransient);
    EXPECT_EQ(copy->GetIndex(), 4);
    EXPECT_EQ(copy->GetTree().Get(), tree.Get());
    EXPECT_EQ(old->GetParent(), nullptr);
    EXPECT_EQ(old->GetIndex(), -1);
    EXPECT_EQ(other->GetRoot(), foreign);
}

TEST_F(CompositeTest, ReplaceWithCopyMakesAMapOfTheSourcesTagWithAllBelow) {
    auto* const source = static_cast<Map*>(other->NewRoot(NodeTypeMap, false, SemanticTag(4107)));
    static_cast<Integer*>(source->NewNode(2, NodeTypeInteger))->Set(5);
    auto* const copy = static_cast<Map*>(vector->ReplaceWithCopy(1, source));
    EXPECT_EQ(vector->Get(1), copy);
    EXPECT_EQ(copy->GetSemanticTag(), 4107);
    EXPECT_EQ(copy->GetSlotCount(), 16);
    EXPECT_EQ(static_cast<Integer*>(copy->Get(2))->Get(), 5);
}

TEST_F(CompositeTest, ReplaceWithCopyOfWhatStandsThereReleasesItFirst) {
    auto* const leaf = static_cast<Integer*>(root->NewNode(0, NodeTypeInteger));
    leaf->Set(5);
    auto* const copy = static_cast<Integer*>(root->ReplaceWithCopy(0, leaf));
    EXPECT_NE(copy, leaf);
    EXPECT_EQ(copy->Get(), 0);
    EXPECT_EQ(copy->GetTemporality(), TemporalityDefault);
    EXPECT_EQ(root->Get(0), copy);
}

TEST_F(CompositeTest, DetachByIndexReturnsTheChildFree) {
    Node* const leaf = root->NewNode(9, NodeTypeInteger);
    EXPECT_EQ(root->Detach(9), leaf);
    EXPECT_EQ(leaf->GetParent(), nullptr);
    EXPECT_EQ(leaf->GetIndex(), -1);
    EXPECT_EQ(root->Get(9), nullptr);
    EXPECT_EQ(vector->Detach(0), inner);
    EXPECT_TRUE(vector->IsEmpty());
    EXPECT_EQ(TextOf([&] { root->Detach(9); }), "Remove::Index out of range");
    EXPECT_EQ(TextOf([&] { vector->Detach(0); }), "Remove::Index out of range");
}

TEST_F(CompositeTest, TheSourceOfACopyIsNeverChanged) {
    foreign->Set(3);
    EXPECT_EQ(ChangesOf(*other, [&] { root->ReplaceWithCopy(0, foreign); }), 0);
    EXPECT_EQ(ChangesOf(*other, [&] { root->Get(0)->Populate(foreign); }), 0);
    EXPECT_EQ(ChangesOf(*other, [&] { root->Get(0)->MergeWith(foreign, false); }), 0);
}
