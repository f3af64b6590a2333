#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Vector.h>

#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::ChangesOf;
using KivTests::NewTree;
using KivTests::TextOf;

namespace {

constexpr const char* kInvalidRoot = "New root is either NULL or from a different tree!";
constexpr const char* kInvalidTree = "Original tree is either NULL or the same tree!";
constexpr const char* kInvalidNode = "Original node is either NULL or from the same tree!";
constexpr const char* kCannotKeep = "NewRoot:Invalid node type for keeping old root";

class TreeTest : public ::testing::Test {
protected:
    KivBase::ReturnPtrI<Tree> tree = NewTree();
    KivBase::ReturnPtrI<Tree> other = NewTree();
    Map* root = static_cast<Map*>(tree->NewRoot(NodeTypeMap, false, SemanticTag(4100)));
    Vector* vector = static_cast<Vector*>(root->NewNode(1, NodeTypeVector));
    Integer* leaf = static_cast<Integer*>(vector->Add(NodeTypeInteger));

    void SetUp() override { leaf->Set(5); }
};

}  // namespace

TEST_F(TreeTest, RemoveRootClearsTheRootAndForgetsIt) {
    tree->RemoveRoot();
    EXPECT_EQ(tree->GetRoot(), nullptr);
    EXPECT_TRUE(tree->IsEmpty());
    EXPECT_TRUE(root->IsEmpty());
    EXPECT_EQ(root->GetSemanticTag(), 4100);
    EXPECT_EQ(leaf->Get(), 0);
    tree->RemoveRoot();
    EXPECT_TRUE(tree->IsEmpty());
}

TEST_F(TreeTest, NewRootClearsTheOldOneAndDropsIt) {
    Node* const node = tree->NewRoot(NodeTypeString);
    EXPECT_EQ(tree->GetRoot(), node);
    EXPECT_NE(node, root);
    EXPECT_TRUE(root->IsEmpty());
    EXPECT_EQ(root->GetParent(), nullptr);
}

// kept-on-purpose: abandoned-new-node
TEST_F(TreeTest, ALeafCannotKeepTheOldRoot) {
    EXPECT_EQ(TextOf([&] { tree->NewRoot(NodeTypeInteger, true); }), kCannotKeep);
    EXPECT_EQ(tree->GetRoot(), root);
    EXPECT_EQ(root->Get(1), vector);
    EXPECT_EQ(ChangesOf(*tree, [&] { tree->NewRoot(NodeTypeInteger, true); }), 1);
    EXPECT_NE(other->NewRoot(NodeTypeInteger, true), nullptr);
    EXPECT_EQ(other->GetRoot()->GetType(), NodeTypeInteger);
}

TEST_F(TreeTest, AVectorKeepsTheOldRootAsChildZero) {
    auto* const node = static_cast<Vector*>(tree->NewRoot(NodeTypeVector, true));
    EXPECT_EQ(tree->GetRoot(), node);
    EXPECT_EQ(node->Get(0), root);
    EXPECT_EQ(node->GetSize(TemporalityTemporary), 1);
    EXPECT_EQ(root->GetParent(), node);
    EXPECT_EQ(root->GetIndex(), 0);
    EXPECT_EQ(root->Get(1), vector);
    EXPECT_EQ(leaf->Get(), 5);
}

TEST_F(TreeTest, AMapKeepsTheOldRootAsChildZero) {
    auto* const node = static_cast<Map*>(tree->NewRoot(NodeTypeMap, true, SemanticTag(107)));
    EXPECT_EQ(tree->GetRoot(), node);
    EXPECT_EQ(node->Get(0), root);
    EXPECT_EQ(node->GetSemanticTag(), 107);
    EXPECT_EQ(root->GetTemporality(), TemporalityDefault);
    EXPECT_EQ(leaf->Get(), 5);
}

TEST_F(TreeTest, SetRootRefusesNullAndNodesOfOtherTrees) {
    EXPECT_EQ(TextOf([&] { tree->SetRoot(nullptr); }), kInvalidRoot);
    EXPECT_EQ(TextOf([&] { tree->SetRoot(other->NewRoot(NodeTypeInteger)); }), kInvalidRoot);
    const auto sibling = tree->CreateTreeInForest();
    EXPECT_EQ(TextOf([&] { tree->SetRoot(sibling->NewRoot(NodeTypeMap)); }), kInvalidRoot);
    EXPECT_EQ(tree->GetRoot(), root);
    EXPECT_EQ(leaf->Get(), 5);
    EXPECT_EQ(ChangesOf(*tree, [&] { tree->SetRoot(nullptr); }), 1);
}

TEST_F(TreeTest, SetRootWithTheRootClearsItAndKeepsItAsTheRoot) {
    tree->SetRoot(root);
    EXPECT_EQ(tree->GetRoot(), root);
    EXPECT_TRUE(root->IsEmpty());
    EXPECT_EQ(root->GetSemanticTag(), 4100);
}

TEST_F(TreeTest, SetRootWithADescendantKeepsThatAndClearsTheRest) {
    Node* const rest = root->NewNode(5, NodeTypeString);
    static_cast<String*>(rest)->Set(u"rest");
    tree->SetRoot(vector);
    EXPECT_EQ(tree->GetRoot(), vector);
    EXPECT_TRUE(vector->IsRoot());
    EXPECT_EQ(vector->GetIndex(), -1);
    EXPECT_EQ(vector->Get(0), leaf);
    EXPECT_EQ(leaf->Get(), 5);
    EXPECT_TRUE(root->IsEmpty());
    EXPECT_EQ(static_cast<String*>(rest)->GetLength(), 0U);
}

TEST_F(TreeTest, CopyFromNodeRefusesNullAndItsOwnNodes) {
    EXPECT_EQ(TextOf([&] { tree->CopyFromNode(nullptr); }), kInvalidNode);
    EXPECT_EQ(TextOf([&] { tree->CopyFromNode(root); }), kInvalidNode);
    EXPECT_EQ(TextOf([&] { tree->CopyFromNode(leaf); }), kInvalidNode);
    EXPECT_EQ(tree->GetRoot(), root);
    EXPECT_EQ(root->Get(1), vector);
    EXPECT_EQ(ChangesOf(*tree, [&] { tree->CopyFromNode(root); }), 1);
}

TEST_F(TreeTest, CopyFromNodeMakesACopyWithTagAndTemporalityTheNewRoot) {
    root->SetTemporality(TemporalityTransient);
    Node* const old = other->NewRoot(NodeTypeInteger);
    auto* const copy = static_cast<Map*>(other->CopyFromNode(root));
    EXPECT_EQ(other->GetRoot(), copy);
    EXPECT_NE(copy, old);
    EXPECT_EQ(copy->GetSemanticTag(), 4100);
    EXPECT_EQ(copy->GetSlotCount(), 10);
    EXPECT_EQ(copy->GetTemporality(), TemporalityTransient);
    EXPECT_EQ(copy->GetTree().Get(), other.Get());
    auto* const list = static_cast<Vector*>(copy->Get(1));
    EXPECT_NE(list, vector);
    EXPECT_EQ(static_cast<Integer*>(list->Get(0))->Get(), 5);
    EXPECT_EQ(root->Get(1), vector);
}

TEST_F(TreeTest, CopyFromNodeTakesAPartOfTheOtherTree) {
    other->CopyFromNode(leaf);
    ASSERT_EQ(other->GetRoot()->GetType(), NodeTypeInteger);
    EXPECT_EQ(static_cast<Integer*>(other->GetRoot())->Get(), 5);
    EXPECT_TRUE(other->GetRoot()->IsRoot());
}

TEST_F(TreeTest, CopyFromTreeRefusesNullAndItself) {
    EXPECT_EQ(TextOf([&] { tree->CopyFromTree(nullptr); }), kInvalidTree);
    EXPECT_EQ(TextOf([&] { tree->CopyFromTree(tree.Get()); }), kInvalidTree);
    EXPECT_EQ(tree->GetRoot(), root);
    EXPECT_EQ(ChangesOf(*tree, [&] { tree->CopyFromTree(nullptr); }), 1);
}

TEST_F(TreeTest, CopyFromTreeCopiesTheOtherRoot) {
    Node* const copy = other->CopyFromTree(tree.Get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy, other->GetRoot());
    EXPECT_NE(copy, root);
    EXPECT_EQ(copy->Compare(root, TemporalityTemporary, true), 0);
    EXPECT_EQ(tree->GetRoot(), root);
}

TEST_F(TreeTest, CopyFromTreeWorksBetweenTreesOfOneForest) {
    const auto sibling = tree->CreateTreeInForest();
    Node* const copy = sibling->CopyFromTree(tree.Get());
    EXPECT_EQ(copy->GetTree().Get(), sibling.Get());
    EXPECT_EQ(copy->Compare(root, TemporalityTemporary, true), 0);
    EXPECT_EQ(leaf->Get(), 5);
}

TEST_F(TreeTest, CopyingAnEmptyTreeEmptiesThisOne) {
    EXPECT_EQ(tree->CopyFromTree(other.Get()), nullptr);
    EXPECT_TRUE(tree->IsEmpty());
    EXPECT_TRUE(root->IsEmpty());
}

TEST_F(TreeTest, SetReadOnlyCountsNothingAndHasNoWayBack) {
    EXPECT_FALSE(tree->IsReadOnly());
    EXPECT_EQ(ChangesOf(*tree, [&] { tree->SetReadOnly(); }), 0);
    EXPECT_TRUE(tree->IsReadOnly());
    tree->SetReadOnly();
    EXPECT_TRUE(tree->IsReadOnly());
    EXPECT_FALSE(tree->CreateTreeInForest()->IsReadOnly());
}

TEST_F(TreeTest, ResetChangeCountStartsFromZeroAgain) {
    EXPECT_GT(tree->GetChangeCount(), 0);
    tree->ResetChangeCount();
    EXPECT_EQ(tree->GetChangeCount(), 0);
    leaf->Set(6);
    EXPECT_EQ(tree->GetChangeCount(), 1);
}

TEST_F(TreeTest, ReadingChangesNothingAndIsAllowedOnAReadOnlyTree) {
    tree->SetReadOnly();
    KivBase::WString key;
    EXPECT_EQ(ChangesOf(*tree,
                        [&] {
                            EXPECT_EQ(tree->GetRoot(), root);
                            EXPECT_FALSE(tree->IsEmpty());
                            EXPECT_EQ(tree->FindNodeByKey(u"1:0:"), leaf);
                            leaf->GetKey(key);
                            tree->UpdateDerivedTemporality();
                            EXPECT_EQ(leaf->GetDerivedTemporality(), TemporalityPersistent);
                            EXPECT_EQ(root->GetSize(TemporalityPersistent), 1);
                            EXPECT_EQ(root->Compare(root, TemporalityTemporary, true), 0);
                        }),
              0);
    EXPECT_EQ(key, u"1:0:");
}
