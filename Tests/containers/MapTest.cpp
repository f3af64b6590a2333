// What a map holds and finds, with every number of fixed slots: the same indexes, divided otherwise between the slots and
// the overflow store, give the same results.

#include <cstdint>
#include <limits>

#include "containers/MapImpl.h"
#include "containers/TestNodes.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();

class MapTest : public ContainerTest, public ::testing::WithParamInterface<SlotCase> {
protected:
    /// Children at 0, 3, 7, 8, 15, 16, 40 and 536870911, each with its index as value.
    void Fill() {
        for (const int index : {40, 0, 16, 536870911, 8, 3, 15, 7}) {
            Put(map_, index, index);
        }
    }

    Map* map_ = NewMap(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Slots, MapTest, ::testing::ValuesIn(kEverySlotCount), NameOfSlotCase);

template <int N>
void ExpectMapSizesUpTo() {
    static_assert(sizeof(MapImpl<N>) == sizeof(Map) + (N + 1) * sizeof(void*));
    EXPECT_EQ(sizeof(Map) + (N + 1) * sizeof(void*), sizeof(MapImpl<N>));
    if constexpr (N > 1) {
        ExpectMapSizesUpTo<N - 1>();
    }
}

TEST(MapLayoutTest, ASlotTakesAPointerAndTheOverflowStoreOneMore) {
    ExpectMapSizesUpTo<16>();
    EXPECT_EQ(2 * sizeof(void*) + sizeof(Map), sizeof(MapImpl<1>));
    EXPECT_EQ(17 * sizeof(void*) + sizeof(Map), sizeof(MapImpl<16>));
}

TEST_P(MapTest, ANewMapIsEmptyAndHasItsSlotsAndNoOverflowStore) {
    EXPECT_EQ(7, map_->GetType());
    EXPECT_EQ(GetParam().slots, map_->GetSlotCount());
    EXPECT_FALSE(map_->HasOverflow());
    EXPECT_TRUE(map_->IsEmpty());
    EXPECT_EQ(0, map_->GetSize(TemporalityTemporary));
    EXPECT_EQ(0, map_->GetSize(TemporalityPersistent));
    EXPECT_EQ(nullptr, map_->GetNext(-1));
    EXPECT_EQ(nullptr, map_->GetNth(0));
    EXPECT_EQ(nullptr, map_->Get(0));
}

// kept-on-purpose: map-hash-zero
TEST_P(MapTest, TheHashIsAlwaysZero) {
    EXPECT_EQ(0, map_->GetHash(false));
    Fill();
    EXPECT_EQ(0, map_->GetHash(false));
    EXPECT_EQ(0, map_->GetHash(true));
}

TEST_P(MapTest, TheOverflowStoreIsMadeForTheFirstIndexBeyondTheSlots) {
    const int slots = GetParam().slots;
    for (int i = 0; i < slots; ++i) {
        Put(map_, i, i);
        EXPECT_FALSE(map_->HasOverflow()) << i;
    }
    Put(map_, slots, slots);
    EXPECT_TRUE(map_->HasOverflow());
    EXPECT_EQ(slots + 1, map_->GetSize(TemporalityTemporary));
}

TEST_P(MapTest, TheGreatestIndexMakesTheOverflowStoreOfAFreshMap) {
    Node* const node = map_->NewNode(536870911, NodeTypeInteger);
    EXPECT_TRUE(map_->HasOverflow());
    EXPECT_EQ(node, map_->Get(536870911));
    EXPECT_EQ("{536870911:0}", Show(map_));
}

TEST_P(MapTest, ChildrenStandInIndexOrderWhateverTheOrderOfTheirMaking) {
    Fill();
    EXPECT_EQ("{0:0 3:3 7:7 8:8 15:15 16:16 40:40 536870911:536870911}", Show(map_));
    EXPECT_EQ(8, map_->GetSize(TemporalityTemporary));
    EXPECT_FALSE(map_->IsEmpty());
}

TEST_P(MapTest, AskingForAnIndexWithoutChildAnswersNull) {
    for (const int index : {0, 1, -1, -5, 8, 16, kLeast, kGreatest}) {
        EXPECT_EQ(nullptr, map_->Get(index)) << "empty map, " << index;
    }
    Fill();
    for (const int index : {1, 2, 4, 6, 9, 14, 17, 39, 41, -1, -5, 536870910, 536870912, kLeast, kGreatest}) {
        EXPECT_EQ(nullptr, map_->Get(index)) << index;
    }
}

TEST_P(MapTest, GetNextGivesTheChildWithTheSmallestGreaterIndex) {
    Fill();
    constexpr int kNone = -1;
    const int rows[][2] = {
        {-1, 0},
        {0, 3},
        {1, 3},
        {2, 3},
        {3, 7},
        {6, 7},
        {7, 8},
        {8, 15},
        {9, 15},
        {14, 15},
        {15, 16},
        {16, 40},
        {39, 40},
        {40, 536870911},
        {41, 536870911},
        {536870910, 536870911},
        {536870911, kNone},
        {kGreatest, kNone},
    };
    for (const auto& row : rows) {
        Node* const next = map_->GetNext(row[0]);
        EXPECT_EQ(row[1], next != nullptr ? next->GetIndex() : kNone) << "after " << row[0];
    }
}

TEST_P(MapTest, GetNextAfterTheLastSlotIsTheFirstOverflowChild) {
    const int slots = GetParam().slots;
    EXPECT_EQ(nullptr, map_->GetNext(slots - 1)) << "no overflow store";
    Node* const far = map_->NewNode(slots + 5, NodeTypeInteger);
    EXPECT_EQ(far, map_->GetNext(slots - 1));
    EXPECT_EQ(far, map_->GetNext(-1));
    EXPECT_EQ(far, map_->GetNext(slots));
    EXPECT_EQ(far, map_->GetNext(slots + 4));
    EXPECT_EQ(nullptr, map_->GetNext(slots + 5));
    map_->Remove(slots + 5);
    EXPECT_EQ(nullptr, map_->GetNext(-1)) << "empty overflow store";
    EXPECT_EQ(nullptr, map_->GetNext(slots - 1));
    EXPECT_EQ(nullptr, map_->GetNext(slots));
}

// kept-on-purpose: get-next-below-minus-one
TEST_P(MapTest, GetNextBelowMinusOneLooksOnlyAtTheOverflowStore) {
    Node* const first = map_->NewNode(0, NodeTypeInteger);
    EXPECT_EQ(nullptr, map_->GetNext(-2));
    EXPECT_EQ(nullptr, map_->GetNext(kLeast));
    EXPECT_EQ(first, map_->GetNext(-1));
    Node* const far = map_->NewNode(40, NodeTypeInteger);
    EXPECT_EQ(far, map_->GetNext(-2));
    EXPECT_EQ(far, map_->GetNext(kLeast));
    EXPECT_EQ(first, map_->GetNext(-1));
}

TEST_P(MapTest, GetNthCountsTheChildrenFromZeroAndSkipsEmptySlots) {
    Fill();
    const int indexes[] = {0, 3, 7, 8, 15, 16, 40, 536870911};
    for (int n = 0; n < 8; ++n) {
        ASSERT_NE(nullptr, map_->GetNth(n));
        EXPECT_EQ(indexes[n], map_->GetNth(n)->GetIndex()) << n;
    }
    for (const int n : {8, 9, -1, -2, kLeast, kGreatest}) {
        EXPECT_EQ(nullptr, map_->GetNth(n)) << n;
    }
}

TEST_P(MapTest, AGapBetweenTwoChildrenIsSteppedOver) {
    Put(map_, 0, 1);
    Node* const far = Put(map_, 7, 2);
    EXPECT_EQ(far, map_->GetNth(1));
    EXPECT_EQ(far, map_->GetNext(0));
    EXPECT_EQ(nullptr, map_->GetNext(7));
    EXPECT_EQ(nullptr, map_->GetNth(2));
}

TEST_P(MapTest, ASizeCountsTheChildrenWhoseDerivedTemporalityIsNotAboveTheLevel) {
    Fill();
    map_->Get(0)->SetTemporality(TemporalityDefault);
    map_->Get(3)->SetTemporality(TemporalityTransient);
    map_->Get(7)->SetTemporality(TemporalityTemporary);
    map_->Get(15)->SetTemporality(TemporalityTransient);
    map_->Get(16)->SetTemporality(TemporalityTemporary);
    map_->Get(40)->SetTemporality(TemporalityReserved);
    EXPECT_EQ(8, map_->GetSize(TemporalityTemporary));
    EXPECT_EQ(6, map_->GetSize(TemporalityTransient));
    EXPECT_EQ(4, map_->GetSize(TemporalityPersistent));
    EXPECT_EQ(1, map_->GetSize(TemporalityDefault));
    EXPECT_EQ(1, map_->GetSize(TemporalityReserved));
}

TEST_P(MapTest, ASizeOfTheGreatestTemporalityCountsChildrenBeyondTheScaleToo) {
    Put(map_, 0, 1)->SetTemporality(EnumOrvGenericsTemporality(5));
    Put(map_, 40, 1)->SetTemporality(EnumOrvGenericsTemporality(100));
    EXPECT_EQ(2, map_->GetSize(TemporalityTemporary));
    EXPECT_EQ(0, map_->GetSize(TemporalityTransient));
    EXPECT_EQ(1, map_->GetSize(EnumOrvGenericsTemporality(5)));
}

TEST_P(MapTest, ASizeCalculatesWhatHasNotBeenAndTakesTheRestAsStored) {
    Node* const slot = Put(map_, 0, 1);
    Node* const far = Put(map_, 40, 2);
    far->SetTemporality(TemporalityTransient);
    ASSERT_EQ(1, Stored(slot));
    EXPECT_EQ(1, map_->GetSize(TemporalityPersistent));
    EXPECT_EQ(2, Stored(slot));
    EXPECT_EQ(3, Stored(far));
    NodeAccess::SetDerived(*slot, TemporalityTemporary);
    NodeAccess::SetDerived(*far, TemporalityPersistent);
    EXPECT_EQ(1, map_->GetSize(TemporalityPersistent));
    EXPECT_EQ(2, map_->GetSize(TemporalityTemporary));
}

TEST_P(MapTest, ASizeDoesNotAskAncestorsAndCountsNoChange) {
    Fill();
    map_->SetTemporality(TemporalityTemporary);
    root_->SetTemporality(TemporalityTemporary);
    tree_->SetReadOnly();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { EXPECT_EQ(8, map_->GetSize(TemporalityPersistent)); }));
}

TEST_P(MapTest, TheDerivedTemporalityIsTheLeastOfTheChildrensUnlessTheMapHasItsOwn) {
    map_->SetTemporality(TemporalityDefault);
    Node* const slot = Put(map_, 0, 1);
    Node* const far = Put(map_, 40, 2);
    const int rows[][3] = {{2, 3, 2}, {3, 2, 2}, {3, 4, 3}, {4, 3, 3}, {4, 4, 4}, {1, 3, 2}, {4, 1, 2}, {0, 4, 0}};
    for (const auto& row : rows) {
        slot->SetTemporality(EnumOrvGenericsTemporality(row[0]));
        far->SetTemporality(EnumOrvGenericsTemporality(row[1]));
        EXPECT_EQ(row[2], map_->CalculateDerivedTemporality()) << row[0] << " " << row[1];
        EXPECT_EQ(row[2], Stored(map_));
    }
    slot->SetTemporality(TemporalityPersistent);
    far->SetTemporality(TemporalityTransient);
    for (const int own : {0, 2, 3, 4, 5}) {
        map_->SetTemporality(EnumOrvGenericsTemporality(own));
        EXPECT_EQ(own, map_->CalculateDerivedTemporality());
        EXPECT_EQ(own, Stored(map_));
        EXPECT_EQ(2, Stored(slot)) << "nothing is pushed down";
        EXPECT_EQ(3, Stored(far));
    }
}

TEST_P(MapTest, AMapWithItsOwnTemporalityStillCalculatesEverythingBelow) {
    Map* const inner = PutMap(map_, 0);
    inner->SetTemporality(TemporalityDefault);
    Node* const leaf = Put(inner, 40, 1);
    leaf->SetTemporality(TemporalityTransient);
    Map* const far = PutMap(map_, 40);
    far->SetTemporality(TemporalityDefault);
    Node* const farLeaf = Put(far, 0, 1);
    map_->SetTemporality(TemporalityPersistent);
    EXPECT_EQ(TemporalityPersistent, map_->CalculateDerivedTemporality());
    EXPECT_EQ(3, Stored(inner));
    EXPECT_EQ(3, Stored(leaf));
    EXPECT_EQ(2, Stored(far));
    EXPECT_EQ(2, Stored(farLeaf));
}

// kept-on-purpose: empty-composite-is-temporary
TEST_P(MapTest, AnEmptyMapOfDefaultTemporalityIsTemporary) {
    map_->SetTemporality(TemporalityDefault);
    EXPECT_EQ(TemporalityTemporary, map_->CalculateDerivedTemporality());
    Put(map_, 40, 1);
    map_->Clear();
    ASSERT_TRUE(map_->HasOverflow());
    EXPECT_EQ(TemporalityTemporary, map_->CalculateDerivedTemporality());
    map_->SetTemporality(TemporalityPersistent);
    EXPECT_EQ(TemporalityPersistent, map_->CalculateDerivedTemporality());
}

// kept-on-purpose: tag-kept-slots
TEST_P(MapTest, ATagSetLaterChangesNoSlots) {
    Fill();
    const bool overflow = map_->HasOverflow();
    for (const SlotCase& other : kEverySlotCount) {
        map_->SetSemanticTag(SemanticTag(other.tag));
        EXPECT_EQ(other.tag, map_->GetSemanticTag());
        EXPECT_EQ(GetParam().slots, map_->GetSlotCount());
        EXPECT_EQ(overflow, map_->HasOverflow());
    }
    EXPECT_EQ("4107{0:0 3:3 7:7 8:8 15:15 16:16 40:40 536870911:536870911}", Show(map_));
}

TEST_P(MapTest, AssigningTakesTheNodesFieldsAndTheTagAndNoChild) {
    Map* const source = NewMap(4100);
    Put(source, 0, 1);
    Put(source, 40, 2);
    source->SetTemporality(TemporalityTransient);
    Put(map_, 3, 3);
    *map_ = *source;
    EXPECT_EQ(4100, map_->GetSemanticTag());
    EXPECT_EQ(TemporalityTransient, map_->GetTemporality());
    EXPECT_EQ(source->GetIndex(), map_->GetIndex());
    EXPECT_EQ(GetParam().slots, map_->GetSlotCount());
    EXPECT_EQ("4100{3:3}", Show(map_));
    EXPECT_EQ("4100{0:1 40:2}", Show(source));
}

}  // namespace
}  // namespace KivGenerics::Testing
