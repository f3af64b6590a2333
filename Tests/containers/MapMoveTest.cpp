// How children come into a map from elsewhere and leave it, with every number of fixed slots.

#include <limits>

#include "containers/TestNodes.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();

constexpr const char* kInUse = "Move::Index already in use!";
constexpr const char* kOutOfRange = "Index out of range";
constexpr const char* kNull = "Move::Node can't be NULL!";
constexpr const char* kAncestor = "Can't perform this operation on an ancestor";
constexpr const char* kOtherTree = "Move::Can't move a node from a different tree!";
constexpr const char* kNothing = "Remove::Index out of range";

/// The operations that a map keeps for the library.
struct InnerOperations : Map {
    static void Insert(Map* map, int index, Node* node) { (map->*&InnerOperations::hInsertNode)(index, node); }
    static void PopulateChildren(Map* map, Node* other, bool keepExisting) {
        (map->*&InnerOperations::hPopulateChildren)(other, keepExisting);
    }
};

class MapMoveTest : public ContainerTest, public ::testing::WithParamInterface<SlotCase> {
protected:
    Map* map_ = NewMap(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Slots, MapMoveTest, ::testing::ValuesIn(kEverySlotCount), NameOfSlotCase);

TEST_P(MapMoveTest, AChildMovesToAnyFreeIndexOfItsOwnMapAndLeavesItsOldOneEmpty) {
    Node* const node = Put(map_, 0, 5);
    int from = 0;
    for (const int index : {1, 7, 8, 40, 16, 15, 3, 536870911, 0}) {
        EXPECT_EQ(1, ChangesOf(*tree_, [&] { map_->Move(index, node); }));
        EXPECT_EQ(node, map_->Get(index));
        EXPECT_EQ(nullptr, map_->Get(from));
        EXPECT_EQ(index, node->GetIndex());
        EXPECT_EQ(map_, node->GetParent());
        EXPECT_EQ(1, map_->GetSize(TemporalityTemporary));
        from = index;
    }
    EXPECT_EQ("{0:5}", Show(map_));
}

TEST_P(MapMoveTest, AChildOfAnotherCompositeComesWithItsContentAndTemporality) {
    Map* const other = NewMap(4107);
    Map* const inner = PutMap(other, 2, 4100);
    Put(inner, 40, 5);
    inner->SetTemporality(TemporalityTransient);
    Vector* const list = NewVector();
    Integer* const first = Append(list, 1);
    Append(list, 2);
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { map_->Move(8, inner); }));
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { map_->Move(0, first); }));
    EXPECT_EQ("{0:1 8:4100{40:5}}", Show(map_));
    EXPECT_EQ("4107{}", Show(other));
    EXPECT_EQ("[2]", Show(list));
    EXPECT_EQ(TemporalityTransient, inner->GetTemporality());
    EXPECT_EQ(TemporalityDefault, first->GetTemporality());
}

TEST_P(MapMoveTest, AFreeNodeIsPlacedAndCountsOnce) {
    for (const int index : {0, 40}) {
        Node* const node = NewLeaf()->Detach();
        EXPECT_EQ(1, ChangesOf(*tree_, [&] { map_->Move(index, node); }));
        EXPECT_EQ(node, map_->Get(index));
    }
    EXPECT_EQ("{0:0 40:0}", Show(map_));
}

TEST_P(MapMoveTest, AnOccupiedIndexIsRefusedBeforeEverythingElse) {
    for (const int index : {0, 2, 8, 40}) {
        Node* const node = Put(map_, index, index);
        EXPECT_EQ(kInUse, TextOf([&] { map_->Move(index, NewLeaf()); }));
        EXPECT_EQ(kInUse, TextOf([&] { map_->Move(index, node); })) << "onto itself";
        EXPECT_EQ(kInUse, TextOf([&] { map_->Move(index, nullptr); }));
        EXPECT_EQ(kInUse, TextOf([&] { map_->Move(index, root_); }));
    }
    tree_->SetReadOnly();
    EXPECT_EQ(kInUse, TextOf([&] { map_->Move(40, nullptr); }));
    EXPECT_EQ("{0:0 2:2 8:8 40:40}", Show(map_));
}

TEST_P(MapMoveTest, ThenTheIndexThenNullThenAncestorsThenTheTreeAreTested) {
    const KivBase::ReturnPtrI<Tree> otherTree = tree_->CreateTreeInForest();
    Node* const stranger = otherTree->NewRoot(NodeTypeMap);
    Node* const leaf = NewLeaf();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] {
                  for (const int index : {-1, -5, 536870912, kLeast, kGreatest}) {
                      EXPECT_EQ(kOutOfRange, TextOf([&] { map_->Move(index, nullptr); })) << index;
                      EXPECT_EQ(kOutOfRange, TextOf([&] { map_->Move(index, root_); })) << index;
                      EXPECT_EQ(kOutOfRange, TextOf([&] { map_->Move(index, stranger); })) << index;
                      EXPECT_EQ(kOutOfRange, TextOf([&] { map_->Move(index, leaf); })) << index;
                  }
                  for (const int index : {0, 40}) {
                      EXPECT_EQ(kNull, TextOf([&] { map_->Move(index, nullptr); }));
                      EXPECT_EQ(kAncestor, TextOf([&] { map_->Move(index, map_); })) << "itself";
                      EXPECT_EQ(kAncestor, TextOf([&] { map_->Move(index, root_); }));
                      EXPECT_EQ(kOtherTree, TextOf([&] { map_->Move(index, stranger); }));
                  }
              }));
    EXPECT_EQ(stranger, otherTree->GetRoot());
    EXPECT_TRUE(map_->IsEmpty());
    tree_->SetReadOnly();
    EXPECT_EQ(kAncestor, TextOf([&] { map_->Move(40, map_); }));
    EXPECT_EQ(kOtherTree, TextOf([&] { map_->Move(40, stranger); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map_->Move(40, leaf); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map_->Move(0, leaf); }));
    EXPECT_EQ(root_, leaf->GetParent());
    EXPECT_TRUE(map_->IsEmpty());
}

TEST_P(MapMoveTest, ADescendantMovesUpwards) {
    Map* const inner = PutMap(map_, 0);
    Map* const deep = PutMap(inner, 40);
    Put(deep, 3, 5);
    map_->Move(8, deep);
    EXPECT_EQ("{0:{} 8:{3:5}}", Show(map_));
    inner->Move(1, deep);
    EXPECT_EQ("{0:{1:{3:5}}}", Show(map_));
    EXPECT_EQ(kAncestor, TextOf([&] { deep->Move(0, inner); }));
    EXPECT_EQ(kAncestor, TextOf([&] { deep->Move(0, map_); }));
}

TEST_P(MapMoveTest, InsertingOverwritesAnOccupantWithoutReleasingIt) {
    for (const int index : {0, 40}) {
        Integer* const old = Put(map_, index, 5);
        Integer* const node = static_cast<Integer*>(NewLeaf()->Detach());
        node->Set(6);
        InnerOperations::Insert(map_, index, node);
        EXPECT_EQ(node, map_->Get(index));
        EXPECT_EQ(5, old->Get());
        EXPECT_EQ(map_, old->GetParent());
        EXPECT_EQ(index, old->GetIndex());
    }
    EXPECT_EQ("{0:6 40:6}", Show(map_));
    EXPECT_EQ(kOutOfRange, TextOf([&] { InnerOperations::Insert(map_, -1, nullptr); }));
    EXPECT_EQ(kNull, TextOf([&] { InnerOperations::Insert(map_, 1, nullptr); }));
}

TEST_P(MapMoveTest, RemovingReleasesTheChildAndEverythingBelow) {
    for (const int index : {0, 2, 8, 40}) {
        Map* const child = PutMap(map_, index, 4100);
        Integer* const leaf = Put(child, 0, 5);
        EXPECT_EQ(1 + 2, ChangesOf(*tree_, [&] { map_->Remove(index); }));
        EXPECT_EQ(nullptr, map_->Get(index));
        EXPECT_EQ(nullptr, child->GetParent());
        EXPECT_EQ(-1, child->GetIndex());
        EXPECT_EQ(1, child->GetSemanticTag());
        EXPECT_EQ(TemporalityDefault, child->GetTemporality());
        EXPECT_TRUE(child->IsEmpty());
        EXPECT_EQ(0, leaf->Get());
        EXPECT_EQ(nullptr, leaf->GetParent());
    }
    EXPECT_TRUE(map_->IsEmpty());
    EXPECT_TRUE(map_->HasOverflow()) << "once made, the overflow store stays";
}

TEST_P(MapMoveTest, RemovingOneLeavesTheOthersWhereTheyAre) {
    for (const int index : {0, 1, 2, 8, 40, 41, 42}) {
        Put(map_, index, index);
    }
    map_->Remove(1);
    map_->Remove(41);
    EXPECT_EQ("{0:0 2:2 8:8 40:40 42:42}", Show(map_));
    map_->Get(0)->Remove();
    map_->Get(42)->Remove();
    EXPECT_EQ("{2:2 8:8 40:40}", Show(map_));
}

TEST_P(MapMoveTest, RemovingOrDetachingWhereNothingIsThrowsAfterTheGuardHasCounted) {
    for (const bool withOverflow : {false, true}) {
        if (withOverflow) {
            Put(map_, 39, 1);
        }
        for (const int index : {0, 3, 8, 40, -1, -5, 536870912, kLeast, kGreatest}) {
            EXPECT_EQ(1,
                      ChangesOf(*tree_, [&] { EXPECT_EQ(kNothing, TextOf([&] { map_->Remove(index); })) << index; }));
            EXPECT_EQ(1,
                      ChangesOf(*tree_, [&] { EXPECT_EQ(kNothing, TextOf([&] { map_->Detach(index); })) << index; }));
        }
        EXPECT_EQ(withOverflow, map_->HasOverflow());
    }
    tree_->SetReadOnly();
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map_->Remove(-5); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map_->Detach(39); }));
    EXPECT_EQ("{39:1}", Show(map_));
}

TEST_P(MapMoveTest, DetachingTakesTheChildOutWholeAndItCanBePlacedAgain) {
    for (const int index : {0, 2, 8, 40}) {
        Map* const child = PutMap(map_, index, 4100);
        Put(child, 40, 5);
        child->SetTemporality(TemporalityTransient);
        Node* taken = nullptr;
        EXPECT_EQ(1, ChangesOf(*tree_, [&] { taken = map_->Detach(index); }));
        EXPECT_EQ(child, taken);
        EXPECT_EQ(nullptr, map_->Get(index));
        EXPECT_EQ(nullptr, child->GetParent());
        EXPECT_EQ(-1, child->GetIndex());
        EXPECT_EQ(TemporalityTransient, child->GetTemporality());
        EXPECT_EQ("4100{40:5}", Show(child));
        map_->Move(index, child);
        EXPECT_EQ(2, ChangesOf(*tree_, [&] { EXPECT_EQ(child, child->Detach()); }));
        EXPECT_TRUE(map_->IsEmpty());
        EXPECT_EQ("4100{40:5}", Show(child));
    }
}

TEST_P(MapMoveTest, ClearingReleasesAllChildrenAndKeepsTheOverflowStoreTagAndTemporality) {
    Map* const inner = PutMap(map_, 0);
    Put(inner, 40, 1);
    Integer* const far = Put(map_, 40, 2);
    map_->SetSemanticTag(SemanticTag(4100));
    map_->SetTemporality(TemporalityTransient);
    EXPECT_EQ(4, ChangesOf(*tree_, [&] { map_->Clear(); }));
    EXPECT_TRUE(map_->IsEmpty());
    EXPECT_TRUE(map_->HasOverflow());
    EXPECT_EQ("4100{}", Show(map_));
    EXPECT_EQ(TemporalityTransient, map_->GetTemporality());
    EXPECT_EQ(nullptr, inner->GetParent());
    EXPECT_TRUE(inner->IsEmpty());
    EXPECT_EQ(nullptr, far->GetParent());
    EXPECT_EQ(-1, far->GetIndex());
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { map_->Clear(); }));
    Put(map_, 40, 3);
    tree_->SetReadOnly();
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map_->Clear(); }));
    EXPECT_EQ("4100{40:3}", Show(map_));
}

TEST_P(MapMoveTest, ClearingReleasesSlotsFirstAndThenTheOverflowChildrenInOrder) {
    Put(map_, 41, 1);
    Put(map_, 0, 2);
    Integer* const last = Put(map_, 42, 3);
    Put(map_, 40, 4);
    map_->Clear();
    EXPECT_EQ(last, NewLeaf()) << "the one released last is handed out";
    Node* const first = Put(map_, 0, 1);
    Node* const lastSlot = GetParam().slots > 1 ? Put(map_, GetParam().slots - 1, 2) : first;
    map_->Clear();
    EXPECT_EQ(lastSlot, NewLeaf());
}

TEST_P(MapMoveTest, PopulatingTheChildrenMayKeepThoseThatStand) {
    Map* const source = NewMap(4100);
    Put(source, 0, 1);
    Put(source, 40, 2);
    Put(map_, 0, 5);
    Put(map_, 1, 6);
    Put(map_, 41, 7);
    InnerOperations::PopulateChildren(map_, source, true);
    EXPECT_EQ("4100{0:1 1:6 40:2 41:7}", Show(map_));
    InnerOperations::PopulateChildren(map_, source, false);
    EXPECT_EQ("4100{0:1 40:2}", Show(map_));
}

// A node that stands in two vectors has the index of the one that numbered it last.
TEST_P(MapMoveTest, ANodeThatCannotBeTakenOutLeavesNoTraceInTheMap) {
    Vector* const first = NewVector();
    Append(first, 1);
    Append(first, 2);
    Integer* const node = Append(first, 3);
    Vector* const second = NewVector();
    second->InsertNode(0, node);
    first->Remove(0);
    ASSERT_EQ(1, node->GetIndex());
    EXPECT_EQ(kNothing, TextOf([&] { map_->Move(40, node); }));
    EXPECT_EQ("{}", Show(map_));
    EXPECT_TRUE(map_->IsEmpty());
    EXPECT_EQ(nullptr, map_->GetNext(-1));
}

}  // namespace
}  // namespace KivGenerics::Testing
