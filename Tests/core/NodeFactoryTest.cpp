#include <gtest/gtest.h>

#include <KivGenerics/Map.h>
#include <KivGenerics/Vector.h>

#include "containers/MapImpl.h"
#include "core/TreeImpl.h"
#include "support/Kinds.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::ChangesOf;
using KivTests::kAllKinds;
using KivTests::NewTree;
using KivTests::TextOf;

namespace {

constexpr const char* kInvalid = "Invalid node type!";

int SlotsOfNewRoot(int tag) {
    const auto tree = NewTree();
    return static_cast<Map*>(tree->NewRoot(NodeTypeMap, false, SemanticTag(tag)))->GetSlotCount();
}

}  // namespace

TEST(NodeFactoryTest, EveryKindIsMadeWithTheGivenParentAndIndex) {
    const auto handle = NewTree();
    auto* const tree = static_cast<TreeImpl*>(handle.Get());
    auto* const map = static_cast<Map*>(handle->NewRoot(NodeTypeMap));
    for (const NodeType kind : kAllKinds) {
        Node* const node = tree->CreateNode(kind, *map, 7, SemanticTagNone);
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->GetType(), kind);
        EXPECT_EQ(node->GetParent(), map);
        EXPECT_EQ(node->GetIndex(), 7);
        EXPECT_EQ(node->GetTemporality(), TemporalityDefault);
        EXPECT_EQ(node->GetTree().Get(), tree);
        EXPECT_EQ(map->Get(7), nullptr);
    }
}

TEST(NodeFactoryTest, AKindOutsideOneToTwelveIsRefusedHoweverItLooksInEightBits) {
    for (const int kind : {0, 13, -1, 14, 127, 128, 255, 256, 257, 263, -249, 2147483647, -2147483647 - 1}) {
        SCOPED_TRACE(kind);
        const auto tree = NewTree();
        EXPECT_EQ(TextOf([&] { tree->NewRoot(NodeType(kind)); }), kInvalid);
        EXPECT_TRUE(tree->IsEmpty());
        EXPECT_EQ(tree->GetChangeCount(), 1);

        auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
        EXPECT_EQ(TextOf([&] { tree->NewRoot(NodeType(kind), true); }), kInvalid);
        EXPECT_EQ(tree->GetRoot(), map);
        EXPECT_EQ(TextOf([&] { map->NewNode(0, NodeType(kind)); }), kInvalid);
        EXPECT_EQ(TextOf([&] { map->NewNode(100, NodeType(kind)); }), kInvalid);
        EXPECT_TRUE(map->IsEmpty());
        EXPECT_FALSE(map->HasOverflow());

        auto* const vector = static_cast<Vector*>(map->NewNode(1, NodeTypeVector));
        EXPECT_EQ(TextOf([&] { vector->NewNode(0, NodeType(kind)); }), kInvalid);
        EXPECT_EQ(TextOf([&] { vector->Add(NodeType(kind)); }), kInvalid);
        EXPECT_EQ(TextOf([&] { vector->Insert(0, NodeType(kind)); }), kInvalid);
        EXPECT_TRUE(vector->IsEmpty());
    }
}

TEST(NodeFactoryTest, AnInvalidKindIsRefusedAlsoWhileNodesWaitForReuse) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    for (const NodeType kind : kAllKinds) {
        map->NewNode(0, kind);
        map->Remove(0);
    }
    for (const int kind : {0, 13, -1, 257, 263}) {
        EXPECT_EQ(TextOf([&] { map->NewNode(0, NodeType(kind)); }), kInvalid);
    }
}

TEST(NodeFactoryTest, AReplacedChildStaysWhenTheNewKindIsInvalid) {
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Node* const child = map->NewNode(0, NodeTypeInteger);
    EXPECT_EQ(TextOf([&] { map->NewNode(0, NodeType(13)); }), kInvalid);
    EXPECT_EQ(map->Get(0), child);
    EXPECT_EQ(child->GetParent(), map);
}

TEST(NodeFactoryTest, TheTagChoosesTheNumberOfSlots) {
    const struct {
        int tag, slots;
    } rows[] = {{0, 8},      {1, 8},      {2, 4},      {107, 1},   {4099, 4},  {4100, 10}, {4107, 16},
                {4114, 12},  {4152, 9},   {4163, 7},   {4264, 15}, {4262, 5},  {4360, 6},  {4122, 8},
                {28674, 13}, {28675, 11}, {28694, 14}, {28673, 2}, {28736, 3}, {-1, 8}};
    for (const auto& row : rows) {
        EXPECT_EQ(SlotsOfNewRoot(row.tag), row.slots) << row.tag;
    }
}

// kept-on-purpose: slot-counts-above-16
TEST(NodeFactoryTest, ATagThatAsksForMoreThanSixteenSlotsGetsEight) {
    EXPECT_EQ(SlotsOfNewRoot(4213), 8);
    EXPECT_EQ(SlotsOfNewRoot(28687), 8);
    EXPECT_EQ(SlotsOfNewRoot(28727), 8);
}

TEST(NodeFactoryTest, ATagOfZeroIsNotGivenToTheMap) {
    const auto tree = NewTree();
    EXPECT_EQ(tree->NewRoot(NodeTypeMap, false, SemanticTagNone)->GetSemanticTag(), 1);
    EXPECT_EQ(tree->NewRoot(NodeTypeMap, false, SemanticTag(1))->GetSemanticTag(), 1);
    EXPECT_EQ(tree->NewRoot(NodeTypeMap, false, SemanticTag(-7))->GetSemanticTag(), -7);
    EXPECT_EQ(tree->NewRoot(NodeTypeVector, false, SemanticTag(9))->GetSemanticTag(), 1);
}

TEST(NodeFactoryTest, MakingANodeCountsOnceAndATaggedMapTwice) {
    const auto handle = NewTree();
    auto* const tree = static_cast<TreeImpl*>(handle.Get());
    EXPECT_EQ(ChangesOf(*tree, [&] { tree->CreateNode(NodeTypeInteger, *tree, -1, SemanticTag(9)); }), 1);
    EXPECT_EQ(ChangesOf(*tree, [&] { tree->CreateNode(NodeTypeMap, *tree, -1, SemanticTagNone); }), 1);
    EXPECT_EQ(ChangesOf(*tree, [&] { tree->CreateNode(NodeTypeMap, *tree, -1, SemanticTag(9)); }), 2);
}

TEST(NodeFactoryTest, AMapIsItsPublicPartAndOnePointerMoreThanItsSlots) {
    EXPECT_EQ(sizeof(MapImpl<1>), sizeof(Map) + 2 * sizeof(void*));
    EXPECT_EQ(sizeof(MapImpl<8>), sizeof(Map) + 9 * sizeof(void*));
    EXPECT_EQ(sizeof(MapImpl<16>), sizeof(Map) + 17 * sizeof(void*));
}
