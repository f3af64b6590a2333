#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Iterator.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/VisitorNode.h>

#include "core/TreeImpl.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::ChangesOf;
using KivTests::NewTree;
using KivTests::TextOf;

namespace {

// Answers VisitRemove for one node and goes on otherwise.
class RemovingVisitor final : public VisitorNode {
public:
    explicit RemovingVisitor(const Node* victim) : victim_(victim) {}
    VisitCode VisitNode(Node* node, bool, NodeType) override { return node == victim_ ? VisitRemove : VisitContinue; }

private:
    const Node* victim_;
};

class RemoveTest : public ::testing::Test {
protected:
    KivBase::ReturnPtrI<Tree> tree = NewTree();
    Map* root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Map* child = static_cast<Map*>(root->NewNode(2, NodeTypeMap, false, SemanticTag(7)));
    Integer* leaf = static_cast<Integer*>(child->NewNode(0, NodeTypeInteger));

    void ExpectReset(const Node* node) {
        EXPECT_EQ(node->GetParent(), nullptr);
        EXPECT_EQ(node->GetIndex(), -1);
        EXPECT_EQ(node->GetTemporality(), TemporalityDefault);
        EXPECT_EQ(node->GetSemanticTag(), 1);
    }
};

}  // namespace

TEST_F(RemoveTest, RemovingAChildResetsItAndAllBelowIt) {
    leaf->Set(5);
    child->Remove();
    EXPECT_EQ(root->Get(2), nullptr);
    ExpectReset(child);
    ExpectReset(leaf);
    EXPECT_TRUE(child->IsEmpty());
    EXPECT_EQ(leaf->Get(), 0);
    EXPECT_EQ(root->NewNode(3, NodeTypeMap), child);
    EXPECT_EQ(root->NewNode(4, NodeTypeInteger), leaf);
}

TEST_F(RemoveTest, RemovingTheRootEmptiesTheTree) {
    root->Remove();
    EXPECT_TRUE(tree->IsEmpty());
    EXPECT_TRUE(root->IsEmpty());
    ExpectReset(leaf);
}

TEST_F(RemoveTest, RemovingALeafThatIsTheRootClearsIt) {
    auto* const number = static_cast<Integer*>(tree->NewRoot(NodeTypeInteger));
    number->Set(5);
    number->Remove();
    EXPECT_TRUE(tree->IsEmpty());
    EXPECT_EQ(number->Get(), 0);
}

TEST_F(RemoveTest, RemovingADetachedNodeReleasesItAndLeavesTheRootAlone) {
    child->Detach();
    child->Remove();
    EXPECT_EQ(tree->GetRoot(), root);
    ExpectReset(child);
    EXPECT_TRUE(child->IsEmpty());
    EXPECT_EQ(root->NewNode(3, NodeTypeMap), child);
}

TEST_F(RemoveTest, RemoveCurrentOnADetachedNodeLeavesTheRootAlone) {
    child->Detach();
    const auto iterator = child->GetIterator();
    EXPECT_EQ(iterator->Next(), child);
    iterator->RemoveCurrent();
    EXPECT_FALSE(iterator->HasNext());
    EXPECT_EQ(tree->GetRoot(), root);
    ExpectReset(child);
    EXPECT_EQ(root->NewNode(3, NodeTypeMap), child);
}

TEST_F(RemoveTest, AVisitThatRemovesADetachedNodeLeavesTheRootAlone) {
    child->Detach();
    RemovingVisitor visitor(child);
    child->Iterate(&visitor, SemanticTagNone, IterateSelf);
    EXPECT_EQ(tree->GetRoot(), root);
    ExpectReset(child);
    EXPECT_EQ(root->NewNode(3, NodeTypeMap), child);
}

TEST_F(RemoveTest, DetachingReturnsTheNodeWholeAndFree) {
    leaf->Set(5);
    EXPECT_EQ(child->Detach(), child);
    EXPECT_EQ(root->Get(2), nullptr);
    EXPECT_EQ(child->GetParent(), nullptr);
    EXPECT_EQ(child->GetIndex(), -1);
    EXPECT_TRUE(child->IsRoot());
    EXPECT_EQ(child->GetSemanticTag(), 7);
    EXPECT_EQ(child->GetTemporality(), TemporalityPersistent);
    EXPECT_EQ(child->Get(0), leaf);
    EXPECT_EQ(leaf->Get(), 5);
    EXPECT_EQ(child->GetTree().Get(), tree.Get());
    root->Move(6, child);
    EXPECT_EQ(root->Get(6), child);
    EXPECT_EQ(child->GetIndex(), 6);
}

TEST_F(RemoveTest, DetachingANodeWithoutAParentCountsOnceAndReturnsItUnchanged) {
    EXPECT_EQ(ChangesOf(*tree, [&] { EXPECT_EQ(root->Node::Detach(), root); }), 1);
    EXPECT_EQ(tree->GetRoot(), root);
    EXPECT_EQ(root->Get(2), child);
    child->Detach();
    EXPECT_EQ(ChangesOf(*tree, [&] { EXPECT_EQ(child->Node::Detach(), child); }), 1);
    EXPECT_EQ(child->Get(0), leaf);
}

TEST_F(RemoveTest, ANodeOutsideItsTreeCanBecomeTheRoot) {
    child->Detach();
    tree->SetRoot(child);
    EXPECT_EQ(tree->GetRoot(), child);
    EXPECT_EQ(child->Get(0), leaf);
    EXPECT_TRUE(root->IsEmpty());
}

TEST_F(RemoveTest, ANodeReleasedWhileItIsTheRootIsForgottenByTheTree) {
    // A vector takes a free node without asking whether it is the root.
    auto* const factory = static_cast<TreeImpl*>(tree.Get());
    auto* const vector = static_cast<Vector*>(factory->CreateNode(NodeTypeVector, *factory, -1, SemanticTagNone));
    vector->InsertNode(0, root);
    EXPECT_EQ(tree->GetRoot(), root);
    vector->Remove(0);
    EXPECT_EQ(tree->GetRoot(), nullptr);
    EXPECT_TRUE(tree->IsEmpty());
    ExpectReset(root);
}

TEST_F(RemoveTest, RemovingByIndexWhereNothingStandsIsRefused) {
    EXPECT_EQ(TextOf([&] { root->Remove(0); }), "Remove::Index out of range");
    EXPECT_EQ(TextOf([&] { root->Remove(1000); }), "Remove::Index out of range");
    EXPECT_EQ(TextOf([&] { root->Remove(-5); }), "Remove::Index out of range");
    EXPECT_EQ(root->Get(2), child);
}
