#include <cstdint>
#include <type_traits>

#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/Visitor.h>

#include "core/NodeAccess.h"
#include "core/TreeImpl.h"
#include "support/Kinds.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::kAllKinds;
using KivTests::NewTree;
using KivTests::TextOf;

namespace {

// Opens the protected table, without ever making such a node.
struct OpenNode : Node {
    using Node::gcSeeTemporalityBits;
};

}  // namespace

TEST(NodeTest, KindsAndTemporalitiesHaveTheirNumbers) {
    const int kinds[] = {NodeTypeInteger, NodeTypeGlobalID,  NodeTypeString,    NodeTypeDouble,
                         NodeTypeBoolean, NodeTypeVector,    NodeTypeMap,       NodeTypeIntegerSet,
                         NodeTypeIdSet,   NodeTypeStringSet, NodeTypeDoubleSet, NodeTypeInteger64};
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(kinds[i], i + 1);
        EXPECT_EQ(kAllKinds[i], i + 1);
    }
    EXPECT_EQ(TemporalityReserved, 0);
    EXPECT_EQ(TemporalityDefault, 1);
    EXPECT_EQ(TemporalityPersistent, 2);
    EXPECT_EQ(TemporalityTransient, 3);
    EXPECT_EQ(TemporalityTemporary, 4);
}

TEST(NodeTest, VectorsAndMapsAloneAreComposite) {
    for (int kind = -1; kind <= 14; ++kind) {
        EXPECT_EQ(IsCompositeType(NodeType(kind)), kind == 6 || kind == 7) << kind;
    }
}

TEST(NodeTest, TheTableOfVisibilityBitsIsFixed) {
    EXPECT_EQ(OpenNode::gcSeeTemporalityBits[0], 0x00000000U);
    EXPECT_EQ(OpenNode::gcSeeTemporalityBits[1], 0x11000000U);
    EXPECT_EQ(OpenNode::gcSeeTemporalityBits[2], 0x21000000U);
    EXPECT_EQ(OpenNode::gcSeeTemporalityBits[3], 0x42000000U);
    EXPECT_EQ(OpenNode::gcSeeTemporalityBits[4], 0x84000000U);
    EXPECT_EQ(sizeof(OpenNode::gcSeeTemporalityBits), 20U);
    EXPECT_TRUE((std::is_same_v<decltype(OpenNode::gcSeeTemporalityBits), const std::uint32_t[5]>));
}

TEST(NodeTest, ANewRootOfEveryKindStartsWithTheInitialFields) {
    for (const NodeType kind : kAllKinds) {
        const auto tree = NewTree();
        Node* const node = tree->NewRoot(kind);
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->GetType(), kind);
        EXPECT_EQ(node->GetTemporality(), TemporalityDefault);
        EXPECT_EQ(NodeAccess::GetStoredDerived(*node), TemporalityDefault);
        EXPECT_EQ(node->GetIndex(), -1);
        EXPECT_EQ(node->GetParent(), nullptr);
        EXPECT_TRUE(node->IsRoot());
        EXPECT_EQ(node->GetSemanticTag(), 1);
        EXPECT_EQ(node->GetTree().Get(), tree.Get());
        EXPECT_EQ(tree->GetRoot(), node);
    }
}

TEST(NodeTest, AChildOfEveryKindKnowsItsParentAndIndex) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    for (const NodeType kind : kAllKinds) {
        Node* const node = map->NewNode(kind * 3, kind);
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->GetType(), kind);
        EXPECT_EQ(node->GetIndex(), kind * 3);
        EXPECT_EQ(node->GetParent(), map);
        EXPECT_FALSE(node->IsRoot());
        EXPECT_EQ(node->GetTemporality(), TemporalityPersistent);
    }
}

TEST(NodeTest, OnlyAMapReportsATagOfItsOwn) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap, false, SemanticTag(4100)));
    EXPECT_EQ(map->GetSemanticTag(), 4100);
    for (const NodeType kind : kAllKinds) {
        EXPECT_EQ(map->NewNode(kind, kind, false, SemanticTag(4107))->GetSemanticTag(), kind == NodeTypeMap ? 4107 : 1);
    }
}

TEST(NodeTest, GetTreeTakesAReferenceThatTheHandleReleases) {
    const auto tree = NewTree();
    Node* const root = tree->NewRoot(NodeTypeInteger);
    {
        const auto handle = root->GetTree();
        EXPECT_EQ(handle.Get(), tree.Get());
        EXPECT_EQ(tree->AddRef(), 3);
        EXPECT_EQ(tree->Release(), 2);
    }
    EXPECT_EQ(tree->AddRef(), 2);
    EXPECT_EQ(tree->Release(), 1);
}

TEST(NodeTest, WritingAsARootIsRefusedByEveryKindButMap) {
    const auto tree = NewTree();
    for (const NodeType kind : kAllKinds) {
        if (kind != NodeTypeMap) {
            const std::int32_t result = tree->NewRoot(kind)->WriteToArchive(nullptr, true, 255);
            EXPECT_EQ(static_cast<std::uint32_t>(result), 0x80004001U) << kind;
        }
    }
}

// kept-on-purpose: copies-name-the-source
TEST(NodeTest, ACopiedNodeObjectNamesTheSourcesPlaceAndIsNobodysChild) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const source = static_cast<Integer*>(map->NewNode(3, NodeTypeInteger));
    source->Set(42);
    source->SetTemporality(TemporalityTransient);
    source->GetDerivedTemporality();
    const int count = tree->GetChangeCount();

    Integer copy(*source);
    EXPECT_EQ(copy.GetType(), NodeTypeInteger);
    EXPECT_EQ(copy.Get(), 42);
    EXPECT_EQ(copy.GetTemporality(), TemporalityTransient);
    EXPECT_EQ(NodeAccess::GetStoredDerived(copy), TemporalityTransient);
    EXPECT_EQ(copy.GetIndex(), 3);
    EXPECT_EQ(copy.GetParent(), map);
    EXPECT_EQ(copy.GetTree().Get(), tree.Get());
    EXPECT_EQ(map->Get(3), source);
    EXPECT_EQ(tree->GetChangeCount(), count);
}

TEST(NodeTest, AssigningANodeObjectTakesOverEveryField) {
    const auto tree = NewTree();
    const auto other = NewTree();
    auto* const source = static_cast<Map*>(tree->NewRoot(NodeTypeMap))->NewNode(3, NodeTypeInteger);
    source->SetTemporality(TemporalityTemporary);
    auto* const root = static_cast<Integer*>(other->NewRoot(NodeTypeInteger));
    Integer target(*root);
    target = *static_cast<Integer*>(source);
    EXPECT_EQ(target.GetTree().Get(), tree.Get());
    EXPECT_EQ(target.GetParent(), tree->GetRoot());
    EXPECT_EQ(target.GetIndex(), 3);
    EXPECT_EQ(target.GetTemporality(), TemporalityTemporary);
    Integer moved(std::move(target));
    EXPECT_EQ(moved.GetIndex(), 3);
    EXPECT_EQ(moved.GetParent(), tree->GetRoot());
    EXPECT_EQ(other->GetRoot(), root);
    EXPECT_EQ(root->GetTree().Get(), other.Get());
}

TEST(NodeTest, NodesAreNeitherMadeNorDestroyedThroughTheirBases) {
    EXPECT_FALSE(std::has_virtual_destructor_v<Node>);
    EXPECT_FALSE(std::is_destructible_v<Node>);
    EXPECT_FALSE(std::is_destructible_v<Composite>);
    EXPECT_FALSE(std::is_destructible_v<Map>);
    EXPECT_FALSE(std::is_destructible_v<Visitor>);
    EXPECT_FALSE((std::is_constructible_v<Integer, TreeImpl*>));
    EXPECT_FALSE((std::is_constructible_v<Vector, TreeImpl*>));
    EXPECT_FALSE(std::is_default_constructible_v<Integer>);
}

TEST(NodeTest, TheClassTreeIsAsDeclared) {
    EXPECT_TRUE((std::is_base_of_v<Node, Composite>));
    EXPECT_TRUE((std::is_base_of_v<Composite, Map>));
    EXPECT_TRUE((std::is_base_of_v<Composite, Vector>));
    EXPECT_TRUE((std::is_base_of_v<Node, Integer>));
    EXPECT_TRUE((std::is_base_of_v<Tree, TreeImpl>));
    EXPECT_TRUE((std::is_base_of_v<KivBase::ReferenceCounted, Tree>));
    EXPECT_TRUE((std::is_base_of_v<KivBase::ReferenceCounted, ForestImpl>));
    EXPECT_TRUE(std::is_abstract_v<Tree>);
    EXPECT_FALSE(std::is_destructible_v<Tree>);
}

TEST(NodeTest, ANodeHasOneWordForItsParentAndItsTree) {
    EXPECT_EQ(sizeof(Node), 2 * sizeof(void*) + sizeof(NodeState) + sizeof(std::int32_t));
    EXPECT_EQ(sizeof(Composite), sizeof(Node) + sizeof(void*));
    EXPECT_EQ(sizeof(Integer), sizeof(Node) + sizeof(void*));
}

TEST(NodeTest, EveryNodeNamesItsTreeWhereverItStands) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const vector = map->NewNode<Vector>(40);
    Integer* const leaf = vector->Add<Integer>();
    for (const Node* const node :
         {static_cast<const Node*>(map), static_cast<const Node*>(vector), static_cast<const Node*>(leaf)}) {
        EXPECT_EQ(node->GetTree().Get(), tree.Get());
    }
    EXPECT_EQ(vector->Detach(0), leaf);
    EXPECT_EQ(leaf->GetParent(), nullptr);
    EXPECT_TRUE(leaf->IsRoot());
    EXPECT_EQ(leaf->GetTree().Get(), tree.Get());
    map->Move(3, leaf);
    EXPECT_EQ(leaf->GetParent(), map);
    EXPECT_EQ(leaf->GetTree().Get(), tree.Get());
    const Integer copy(*leaf);
    EXPECT_EQ(copy.GetParent(), map);
    EXPECT_EQ(copy.GetTree().Get(), tree.Get());
    tree->SetRoot(leaf);
    EXPECT_EQ(leaf->GetParent(), nullptr);
    EXPECT_EQ(leaf->GetTree().Get(), tree.Get());
    EXPECT_EQ(map->GetTree().Get(), tree.Get());
}
