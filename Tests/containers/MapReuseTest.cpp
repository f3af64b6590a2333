// What a released map is when it comes back, and which one comes back.

#include "containers/TestNodes.h"

namespace KivGenerics::Testing {
namespace {

class MapReuseTest : public ContainerTest {};

/// For every number of slots.
class MapReuseOfSlotsTest : public ContainerTest, public ::testing::WithParamInterface<SlotCase> {};

INSTANTIATE_TEST_SUITE_P(Slots, MapReuseOfSlotsTest, ::testing::ValuesIn(kEverySlotCount), NameOfSlotCase);

TEST_P(MapReuseOfSlotsTest, AReleasedMapComesBackEmptyAndAsNewForItsTag) {
    Map* const map = NewMap(GetParam().tag);
    Put(map, 0, 1);
    map->SetTemporality(TemporalityTransient);
    map->CalculateDerivedTemporality();
    map->Remove();
    Map* const again = NewMap(GetParam().tag);
    ASSERT_EQ(map, again);
    EXPECT_EQ(GetParam().slots, again->GetSlotCount());
    EXPECT_EQ(GetParam().tag, again->GetSemanticTag());
    EXPECT_EQ(TemporalityPersistent, again->GetTemporality());
    EXPECT_EQ(1, Stored(again));
    EXPECT_EQ(root_, again->GetParent());
    EXPECT_FALSE(again->HasOverflow());
    EXPECT_TRUE(again->IsEmpty());
}

TEST_F(MapReuseTest, AMapReusedWithoutTagHasTagOne) {
    NewMap(4107)->Remove();
    Map* const map = NewMap(0);
    EXPECT_EQ(16, map->GetSlotCount());
    EXPECT_EQ(1, map->GetSemanticTag());
}

TEST_P(MapReuseOfSlotsTest, ItsOverflowStoreComesBackEmpty) {
    Map* const map = NewMap(GetParam().tag);
    Put(map, 40, 1);
    Put(map, 0, 2);
    map->Remove();
    Map* const again = NewMap(GetParam().tag);
    ASSERT_EQ(map, again);
    EXPECT_TRUE(again->HasOverflow());
    EXPECT_TRUE(again->IsEmpty());
    EXPECT_EQ(nullptr, again->GetNext(-1));
    Put(again, 41, 3);
    again->SetSemanticTag(SemanticTagDefault);
    EXPECT_EQ("{41:3}", Show(again));
}

TEST_P(MapReuseOfSlotsTest, AMapOfMoreSlotsIsReusedOneOfFewerIsNot) {
    Map* const released = NewMap(GetParam().tag);
    released->Remove();
    Map* const greater = GetParam().slots < 16 ? NewMap(4107) : nullptr;
    EXPECT_NE(released, greater);
    Map* const smaller = NewMap(102);
    EXPECT_EQ(released, smaller);
    EXPECT_EQ(GetParam().slots, smaller->GetSlotCount());
    EXPECT_EQ(102, smaller->GetSemanticTag());
}

TEST_P(MapReuseOfSlotsTest, AReusedMapOfMoreSlotsKeepsToItsOwnNumber) {
    NewMap(4107)->Remove();
    Map* const map = NewMap(GetParam().tag);
    EXPECT_EQ(16, map->GetSlotCount());
    Put(map, 15, 1);
    EXPECT_FALSE(map->HasOverflow());
    Put(map, 16, 2);
    EXPECT_TRUE(map->HasOverflow());
    map->SetSemanticTag(SemanticTagDefault);
    EXPECT_EQ("{15:1 16:2}", Show(map));
}

TEST_F(MapReuseTest, TheFewestSufficientSlotsAreTakenFirst) {
    Map* const of16 = NewMap(4107);
    Map* const of9 = NewMap(4152);
    Map* const of4 = NewMap(106);
    of16->Remove();
    of9->Remove();
    of4->Remove();
    EXPECT_EQ(of9, NewMap(0)) << "eight are asked for";
    EXPECT_EQ(of4, NewMap(101));
    EXPECT_EQ(of16, NewMap(100));
}

TEST_F(MapReuseTest, AmongMapsOfTheSameSlotsThoseWithoutOverflowStoreComeFirst) {
    Map* const plain = NewMap(0);
    Map* const far = NewMap(0);
    Put(far, 40, 1);
    plain->Remove();
    far->Remove();
    EXPECT_EQ(plain, NewMap(0));
    EXPECT_EQ(far, NewMap(0));
}

TEST_F(MapReuseTest, AMapOfFewerSlotsWithOverflowStoreComesBeforeOneOfMoreSlots) {
    Map* const far = NewMap(0);
    Put(far, 40, 1);
    Map* const of9 = NewMap(4152);
    far->Remove();
    of9->Remove();
    EXPECT_EQ(far, NewMap(0));
    EXPECT_EQ(of9, NewMap(0));
}

TEST_F(MapReuseTest, ATagThatWantsAnOverflowStoreTakesAnyMapThatHasOneFirst) {
    Map* const plain = NewMap(4099);
    Map* const far = NewMap(4107);
    Put(far, 40, 1);
    ASSERT_EQ(4, plain->GetSlotCount());
    plain->Remove();
    far->Remove();
    Map* const first = NewMap(4099);
    EXPECT_EQ(far, first);
    EXPECT_EQ(16, first->GetSlotCount());
    EXPECT_EQ(plain, NewMap(4099));
}

TEST_F(MapReuseTest, ATagThatAsksForMoreThan16SlotsReusesNone) {
    NewMap(4107)->Remove();
    EXPECT_EQ(8, NewMap(4213)->GetSlotCount());
    EXPECT_EQ(8, NewMap(28687)->GetSlotCount());
    EXPECT_EQ(16, NewMap(0)->GetSlotCount()) << "it was still waiting";
}

TEST_F(MapReuseTest, OnlyTheMapReleasedLastIsHandedOutAgain) {
    Map* const first = NewMap(0);
    Map* const second = NewMap(0);
    first->Remove();
    second->Remove();
    EXPECT_EQ(second, NewMap(0));
    Map* const third = NewMap(0);
    EXPECT_NE(first, third);
    EXPECT_NE(second, third);
}

TEST_F(MapReuseTest, AVectorComesBackEmptyToo) {
    Vector* const vector = NewVector();
    Append(vector, 1);
    Append(vector, 2);
    vector->SetTemporality(TemporalityTransient);
    vector->Remove();
    Vector* const again = NewVector();
    EXPECT_EQ(vector, again);
    EXPECT_EQ("[]", Show(again));
    EXPECT_EQ(TemporalityPersistent, again->GetTemporality());
}

TEST_F(MapReuseTest, AnotherTreeOfTheForestGetsTheMap) {
    Map* const map = NewMap(0);
    map->Remove();
    const KivBase::ReturnPtrI<Tree> other = tree_->CreateTreeInForest();
    Node* const root = other->NewRoot(NodeTypeMap);
    EXPECT_EQ(map, root);
    EXPECT_EQ(other.Get(), root->GetTree().Get());
    EXPECT_EQ(TemporalityDefault, root->GetTemporality());
    EXPECT_EQ(-1, root->GetIndex());
}

TEST_F(MapReuseTest, WhatComesBelowAReusedCompositeBelongsToItsNewTree) {
    const KivBase::ReturnPtrI<Tree> other = tree_->CreateTreeInForest();
    for (const NodeType kind : {NodeTypeMap, NodeTypeVector}) {
        KivBase::ReturnPtrI<Tree> first = tree_->CreateTreeInForest();
        auto* const old = static_cast<Composite*>(static_cast<Map*>(first->NewRoot(NodeTypeMap))->NewNode(9, kind));
        old->Remove();
        first.Reset();  // what waits names a tree that is gone
        auto* const above = static_cast<Composite*>(other->NewRoot(NodeTypeVector));
        Node* const again = kind == NodeTypeVector ? above : above->NewNode(0, kind);
        EXPECT_EQ(old, again) << kind;
        Node* const leaf = old->NewNode(0, NodeTypeInteger);
        EXPECT_EQ(other.Get(), old->GetTree().Get()) << kind;
        EXPECT_EQ(other.Get(), leaf->GetTree().Get()) << kind;
        const int changes = other->GetChangeCount();
        static_cast<Integer*>(leaf)->Set(1);
        EXPECT_EQ(changes + 1, other->GetChangeCount()) << kind;
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
