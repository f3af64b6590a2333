#include <vector>

#include <KivGenerics/Children.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Vector.h>
#include <gtest/gtest.h>

#include "support/TestTree.h"

namespace KivGenerics {
namespace {

std::vector<int> IndexesOf(const Node* node) {
    std::vector<int> indexes;
    for (const Node* const child : Children(node)) {
        indexes.push_back(child->GetIndex());
    }
    return indexes;
}

class ChildrenTest : public testing::Test {
protected:
    KivBase::ReturnPtrI<Tree> tree_ = KivTests::NewTree();
    Map* map_ = static_cast<Map*>(tree_->NewRoot(NodeTypeMap));
};

TEST_F(ChildrenTest, AreThoseOfAMapInIndexOrder) {
    for (const int index : {300, 2, 0, 8}) {
        map_->NewNode(index, NodeTypeInteger);
    }
    EXPECT_EQ(IndexesOf(map_), (std::vector<int>{0, 2, 8, 300}));
}

TEST_F(ChildrenTest, AreThoseOfAVector) {
    auto* const vector = static_cast<Vector*>(map_->NewNode(0, NodeTypeVector));
    vector->Add(NodeTypeInteger);
    vector->Add(NodeTypeInteger);
    EXPECT_EQ(IndexesOf(vector), (std::vector<int>{0, 1}));
}

TEST_F(ChildrenTest, AreNoneOfALeafAndOfNull) {
    EXPECT_EQ(IndexesOf(map_->NewNode(0, NodeTypeInteger)), std::vector<int>{});
    EXPECT_EQ(IndexesOf(nullptr), std::vector<int>{});
}

TEST_F(ChildrenTest, GoOnAfterTheCurrentOneWasReplacedOrRemoved) {
    for (const int index : {0, 1, 9, 10}) {
        map_->NewNode(index, NodeTypeInteger);
    }
    std::vector<int> seen;
    for (Node* const child : Children(map_)) {
        const int index = child->GetIndex();
        seen.push_back(index);
        if (index % 2 == 0) {
            map_->Remove(index);
        } else {
            map_->NewNode(index, NodeTypeString);
        }
    }
    EXPECT_EQ(seen, (std::vector<int>{0, 1, 9, 10}));
    EXPECT_EQ(IndexesOf(map_), (std::vector<int>{1, 9}));
}

TEST_F(ChildrenTest, AnIteratorStepsBeforeAndAfter) {
    map_->NewNode(3, NodeTypeInteger);
    map_->NewNode(5, NodeTypeInteger);
    const Children children(map_);
    auto child = children.begin();
    EXPECT_EQ((*child++)->GetIndex(), 3);
    EXPECT_EQ((*child)->GetIndex(), 5);
    EXPECT_NE(child, children.end());
    EXPECT_EQ(++child, children.end());
}

TEST_F(ChildrenTest, NodeCastAnswersNullForAnotherKind) {
    Node* const integer = map_->NewNode(0, NodeTypeInteger);
    EXPECT_EQ(node_cast<Integer>(integer), integer);
    EXPECT_EQ(node_cast<String>(integer), nullptr);
    EXPECT_EQ(node_cast<Composite>(integer), nullptr);
    EXPECT_EQ(node_cast<Integer>(static_cast<Node*>(nullptr)), nullptr);
    const Node* const constant = map_;
    EXPECT_EQ(node_cast<Map>(constant), map_);
    EXPECT_EQ(node_cast<Composite>(constant), map_);
    EXPECT_EQ(node_cast<Vector>(constant), nullptr);
}

}  // namespace
}  // namespace KivGenerics
