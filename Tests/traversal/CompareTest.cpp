// How comparing goes from a composite into its children.

#include <initializer_list>
#include <utility>

#include "containers/TestNodes.h"
#include "support/TestTree.h"

namespace KivGenerics::Testing {
namespace {

EnumOrvGenericsTemporality T(int value) {
    return EnumOrvGenericsTemporality(value);
}

int CompareAt(Node* left, Node* right, EnumOrvGenericsTemporality t = TemporalityTemporary) {
    return left->Compare(right, t, false);
}

/// A pair of maps for each number of slots: this one has it, the other has eight.
class MapCompareTest : public ContainerTest, public ::testing::WithParamInterface<SlotCase> {
protected:
    Map* mine_ = NewMap(GetParam());
    Map* theirs_ = NewMap();
};

INSTANTIATE_TEST_SUITE_P(Slots, MapCompareTest, ::testing::ValuesIn(kEverySlotCount), NameOfSlotCase);

TEST_P(MapCompareTest, MapsOfEqualChildrenAreEqualWhateverTheirSlots) {
    for (Map* const map : {mine_, theirs_}) {
        for (const int index : {0, 3, 8, 16, 40}) {
            Put(map, index, index);
        }
        Append(PutVector(map, 41), 5);
    }
    for (const auto t : {TemporalityPersistent, TemporalityTransient, TemporalityTemporary}) {
        EXPECT_EQ(0, CompareAt(mine_, theirs_, t));
        EXPECT_EQ(0, CompareAt(theirs_, mine_, t));
        EXPECT_EQ(0, CompareAt(mine_, mine_, t));
    }
    EXPECT_EQ(0, CompareAt(NewMap(GetParam()), NewMap()));
}

TEST_P(MapCompareTest, TheNumberOfChildrenDecidesFirst) {
    Put(mine_, 40, 9);
    EXPECT_EQ(1, CompareAt(mine_, theirs_));
    EXPECT_EQ(-1, CompareAt(theirs_, mine_));
    for (const int index : {0, 1, 2, 3}) {
        Put(theirs_, index, 0);
    }
    EXPECT_EQ(-3, CompareAt(mine_, theirs_));
    EXPECT_EQ(3, CompareAt(theirs_, mine_));
}

TEST_P(MapCompareTest, ThenTheFirstDifferingIndexDecidesWithItsDifference) {
    Put(mine_, 0, 1);
    Put(theirs_, 0, 1);
    Put(mine_, 40, 1);
    Put(theirs_, 7, 9);
    EXPECT_EQ(33, CompareAt(mine_, theirs_));
    EXPECT_EQ(-33, CompareAt(theirs_, mine_));
    static_cast<Integer*>(mine_->Get(0))->Set(-5);
    EXPECT_EQ(-1, CompareAt(mine_, theirs_)) << "a pair before it decides earlier";
}

TEST_P(MapCompareTest, ThenTheFirstDifferingPairDecides) {
    for (Map* const map : {mine_, theirs_}) {
        for (const int index : {0, 3, 8, 40}) {
            Put(map, index, 5);
        }
    }
    static_cast<Integer*>(mine_->Get(40))->Set(9);
    EXPECT_EQ(1, CompareAt(mine_, theirs_));
    static_cast<Integer*>(mine_->Get(3))->Set(-9);
    EXPECT_EQ(-1, CompareAt(mine_, theirs_));
    EXPECT_EQ(1, CompareAt(theirs_, mine_));
    mine_->NewNode(0, NodeTypeString);
    EXPECT_EQ(2, CompareAt(mine_, theirs_)) << "kinds, too, by their numbers";
}

TEST_P(MapCompareTest, ChildrenAboveTheTemporalityAreLeftOutOnBothSides) {
    for (Map* const map : {mine_, theirs_}) {
        for (const int index : {2, 9, 41}) {
            Put(map, index, 5);
        }
    }
    Put(mine_, 0, 1)->SetTemporality(TemporalityTransient);
    Put(mine_, 40, 2)->SetTemporality(TemporalityTemporary);
    Put(theirs_, 1, 3)->SetTemporality(TemporalityTemporary);
    Put(theirs_, 8, 4)->SetTemporality(TemporalityTransient);
    Put(theirs_, 42, 6)->SetTemporality(TemporalityTransient);
    EXPECT_EQ(0, CompareAt(mine_, theirs_, TemporalityPersistent));
    EXPECT_EQ(-1, CompareAt(mine_, theirs_, TemporalityTransient)) << "four against five";
    theirs_->Remove(42);
    EXPECT_EQ(-2, CompareAt(mine_, theirs_, TemporalityTransient)) << "index 0 against 2";
    EXPECT_EQ(-1, CompareAt(mine_, theirs_, TemporalityTemporary)) << "index 0 against 1";
}

TEST_P(MapCompareTest, AMapAboveTheTemporalityEqualsAnyOther) {
    Put(mine_, 0, 1);
    mine_->SetTemporality(TemporalityTransient);
    EXPECT_EQ(0, CompareAt(mine_, theirs_, TemporalityPersistent));
    EXPECT_EQ(1, CompareAt(mine_, theirs_, TemporalityTransient));
    EXPECT_EQ(-1, CompareAt(theirs_, mine_, TemporalityPersistent));
}

TEST_P(MapCompareTest, WhenThisSideRunsOutFirstItIsSmaller) {
    Put(mine_, 0, 1)->SetTemporality(T(5));
    Put(theirs_, 0, 1);
    EXPECT_EQ(1, mine_->GetSize(TemporalityTemporary)) << "counted, and yet above the temporality";
    EXPECT_EQ(-1, CompareAt(mine_, theirs_));
    Put(mine_, 40, 2)->SetTemporality(T(5));
    Put(theirs_, 40, 2);
    EXPECT_EQ(-1, CompareAt(mine_, theirs_));
}

TEST_P(MapCompareTest, WhenTheOtherSideRunsOutFirstTheResultSoFarStands) {
    Put(mine_, 0, 1);
    Put(theirs_, 0, 2)->SetTemporality(T(5));
    EXPECT_EQ(0, CompareAt(mine_, theirs_));
    Put(mine_, 40, 3);
    Put(theirs_, 40, 4);
    EXPECT_EQ(-40, CompareAt(mine_, theirs_)) << "its first visible child is at 40";
    theirs_->Get(40)->SetTemporality(TemporalityReserved);
    EXPECT_EQ(0, CompareAt(mine_, theirs_));
}

class CompositeCompareTest : public ContainerTest {};

TEST_F(CompositeCompareTest, ChildrenOfReservedTemporalityAreCountedAndNotCompared) {
    Map* const left = NewMap();
    Map* const right = NewMap();
    Put(left, 0, 1)->SetTemporality(TemporalityReserved);
    Put(right, 3, 2)->SetTemporality(TemporalityReserved);
    EXPECT_EQ(0, CompareAt(left, right));
    Put(left, 1, 5);
    Put(right, 1, 5);
    EXPECT_EQ(-1, CompareAt(left, right)) << "this side's child at 0 against the other's at 1";
}

TEST_F(CompositeCompareTest, AMapOfReservedTemporalityIsNotWalkedOver) {
    Map* const mine = NewMap();
    Map* const theirs = NewMap();
    Put(mine, 0, 1);
    Put(theirs, 0, 2);
    theirs->SetTemporality(TemporalityReserved);
    EXPECT_EQ(-1, CompareAt(mine, theirs)) << "nothing has calculated what it derives yet";
    theirs->CalculateDerivedTemporality();
    EXPECT_EQ(0, CompareAt(mine, theirs));
    EXPECT_EQ(1, CompareAt(theirs, mine));
    Put(theirs, 1, 2);
    EXPECT_EQ(-1, CompareAt(mine, theirs));
}

TEST_F(CompositeCompareTest, TemporalitiesOutsideTheScaleHideAlsoInAnUpdatedTree) {
    Map* const mine = NewMap();
    Map* const theirs = NewMap();
    Put(PutMap(mine, 0), 0, 1);
    auto* const inner = PutMap(theirs, 0);
    Integer* const leaf = Put(inner, 0, 2);
    EXPECT_EQ(-1, mine->Compare(theirs, TemporalityTemporary, true));
    for (Node* const node : {static_cast<Node*>(leaf), static_cast<Node*>(inner)}) {
        for (const auto t : {T(-1), TemporalityReserved, T(5)}) {
            node->SetTemporality(t);
            EXPECT_EQ(0, mine->Compare(theirs, TemporalityTemporary, true)) << t;
            EXPECT_EQ(0, mine->Compare(theirs, TemporalityTemporary, true)) << t << ", nothing has changed since";
        }
        for (const auto t : {TemporalityTemporary, TemporalityTransient, TemporalityDefault}) {
            node->SetTemporality(t);
            EXPECT_EQ(-1, mine->Compare(theirs, TemporalityTemporary, true)) << t;
        }
    }
}

TEST_F(CompositeCompareTest, TagsDecideBeforeChildren) {
    Map* const left = NewMap(4100);
    Map* const right = NewMap(4099);
    Put(right, 0, 1);
    EXPECT_EQ(1, CompareAt(left, right));
    EXPECT_EQ(-1, CompareAt(right, left));
}

TEST_F(CompositeCompareTest, TheOtherSidesChildrenAreShownByTheirOwnTemporalityUpToTheCompared) {
    const int rows[][3] = {
        // the compared temporality, the children's own, and the result for 1 against 2
        {2, 2, -1}, {2, 3, 0}, {2, 4, 0},  {3, 2, -1}, {3, 3, -1}, {3, 4, 0},
        {4, 4, -1}, {4, 5, 0}, {1, 4, -1}, {0, 4, -1}, {5, 4, -1}, {5, 5, 0},
    };
    Map* const left = NewMap();
    Map* const right = NewMap();
    NodeAccess::SetDerived(*left, TemporalityReserved);
    NodeAccess::SetDerived(*right, TemporalityPersistent);
    for (const int index : {0, 40}) {
        left->Clear();
        right->Clear();
        for (const auto& row : rows) {
            for (Map* const map : {left, right}) {
                Node* const child = Put(map, index, map == left ? 1 : 2);
                child->SetTemporality(T(row[1]));
                NodeAccess::SetDerived(*child, TemporalityReserved);
            }
            EXPECT_EQ(row[2], CompareAt(left, right, T(row[0]))) << row[0] << " with children of " << row[1];
        }
    }
}

TEST_F(CompositeCompareTest, AVectorThatIsNotSeenButEnteredStandsForItsElements) {
    for (const int index : {0, 40}) {
        Map* const mine = NewMap();
        Map* const theirs = NewMap();
        Put(mine, index, 5);
        Vector* const vector = PutVector(theirs, index);
        Append(vector, 5);
        vector->SetTemporality(TemporalityTemporary);
        NodeAccess::SetDerived(*vector, TemporalityPersistent);
        EXPECT_EQ(index, CompareAt(mine, theirs, TemporalityPersistent))
            << "this side's index against the element's, 0";
    }
}

TEST_F(CompositeCompareTest, TheElementsOfSuchAVectorDecideAndThenWhatFollows) {
    Map* const mine = NewMap();
    Map* const theirs = NewMap();
    Map* const left = PutMap(mine, 0);
    Map* const right = PutMap(theirs, 0);
    Put(left, 0, 5);
    Vector* const vector = PutVector(right, 7);
    Append(vector, 5);
    const auto compare = [&] {
        vector->SetTemporality(TemporalityTemporary);
        for (Composite* const each : {static_cast<Composite*>(mine), static_cast<Composite*>(theirs)}) {
            each->CalculateDerivedTemporality();
        }
        for (Node* const each : {static_cast<Node*>(right), static_cast<Node*>(vector)}) {
            NodeAccess::SetDerived(*each, TemporalityPersistent);
        }
        return CompareAt(mine, theirs, TemporalityPersistent);
    };
    EXPECT_EQ(0, compare());
    Put(mine, 1, 3);
    Put(theirs, 1, 4);
    EXPECT_EQ(-1, compare());
    Put(theirs, 1, 2);
    EXPECT_EQ(1, compare());
    Append(vector, 6);
    EXPECT_EQ(-1, compare()) << "this side has no child for the second element";
    static_cast<Integer*>(vector->Get(0))->Set(4);
    EXPECT_EQ(1, compare()) << "the first element decides";
}

TEST_F(CompositeCompareTest, NestedCompositesAreComparedInsideTheirPair) {
    Map* const left = NewMap();
    Map* const right = NewMap();
    for (Map* const map : {left, right}) {
        Map* const inner = PutMap(map, 40, 4100);
        Append(PutVector(inner, 12), 1);
        Put(map, 41, 1);
    }
    EXPECT_EQ(0, CompareAt(left, right));
    auto* const list = static_cast<Vector*>(static_cast<Map*>(right->Get(40))->Get(12));
    static_cast<Integer*>(list->Get(0))->Set(7);
    EXPECT_EQ(-1, CompareAt(left, right));
    static_cast<Integer*>(list->Get(0))->Set(1);
    static_cast<Map*>(right->Get(40))->Move(13, list);
    EXPECT_EQ(-1, CompareAt(left, right));
    EXPECT_EQ(1, CompareAt(right, left));
}

TEST_F(CompositeCompareTest, RecalculationAtTheTopServesTheWholeTree) {
    Map* const left = NewMap();
    Map* const right = NewMap();
    Vector* const list = PutVector(left, 0);
    Vector* const otherList = PutVector(right, 0);
    tree_->UpdateDerivedTemporality();
    Append(list, 1);
    Append(list, 2)->SetTemporality(TemporalityTransient);
    Append(otherList, 1);
    Append(otherList, 2);
    EXPECT_EQ(-1, CompareAt(left, right, TemporalityPersistent)) << "one element counts against two";
    EXPECT_EQ(0, left->Compare(right, TemporalityPersistent, true)) << "the vector has made both persistent";
}

TEST_F(CompositeCompareTest, ComparingCountsNothingAndWorksOnReadOnlyTrees) {
    Map* const left = NewMap();
    Put(left, 40, 1);
    Map* const right = NewMap();
    Put(right, 40, 1);
    tree_->SetReadOnly();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { EXPECT_EQ(0, left->Compare(right, TemporalityPersistent, true)); }));
}

TEST_F(CompositeCompareTest, AMapAgainstAnotherKindOrNull) {
    EXPECT_EQ(1, CompareAt(NewMap(), NewVector()));
    EXPECT_EQ(-1, CompareAt(NewVector(), NewMap()));
    EXPECT_EQ("Can't compare NULL node!", TextOf([&] { static_cast<void>(CompareAt(NewMap(), nullptr)); }));
    EXPECT_EQ("Can't compare NULL node!", TextOf([&] { static_cast<void>(CompareAt(NewVector(), nullptr)); }));
}

class VectorCompareTest : public ContainerTest {
protected:
    /// Elements of these values and own temporalities, added after the vector's own was calculated and pushed: so each
    /// counts by its own until the next calculation.
    static void Fill(Vector* vector, std::initializer_list<std::pair<int, int>> elements) {
        vector->Clear();
        vector->CalculateDerivedTemporality();
        for (const auto& [value, temporality] : elements) {
            Append(vector, value)->SetTemporality(T(temporality));
        }
    }

    Vector* mine_ = NewVector();
    Vector* theirs_ = NewVector();
};

TEST(TreeCompareTest, TheNumberOfChildrenDecidesWhicheverOfThemIsMissing) {
    for (const int missing : {0, 1, 7, 8, 40}) {
        const auto mine = KivTests::NewTree();
        const auto theirs = KivTests::NewTree();
        for (Tree* const tree : {mine.Get(), theirs.Get()}) {
            auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
            for (const int index : {0, 1, 7, 8, 40}) {
                Put(root, index, 5);
            }
        }
        EXPECT_EQ(0, mine->GetRoot()->Compare(theirs->GetRoot(), TemporalityTemporary, true));
        static_cast<Map*>(theirs->GetRoot())->Remove(missing);
        EXPECT_EQ(1, mine->GetRoot()->Compare(theirs->GetRoot(), TemporalityTemporary, true)) << missing;
        EXPECT_EQ(-1, theirs->GetRoot()->Compare(mine->GetRoot(), TemporalityTemporary, true)) << missing;
    }
}

TEST_F(VectorCompareTest, VectorsOfEqualElementsAreEqual) {
    EXPECT_EQ(0, CompareAt(mine_, theirs_));
    Fill(mine_, {{1, 2}, {2, 2}});
    Fill(theirs_, {{1, 2}, {2, 2}});
    for (const auto t : {TemporalityPersistent, TemporalityTransient, TemporalityTemporary}) {
        EXPECT_EQ(0, CompareAt(mine_, theirs_, t));
    }
}

TEST_F(VectorCompareTest, TheNumberOfElementsDecidesBeforeTheirValues) {
    Fill(mine_, {{1, 2}, {2, 2}, {3, 2}});
    Fill(theirs_, {{9, 2}});
    EXPECT_EQ(2, CompareAt(mine_, theirs_));
    EXPECT_EQ(-2, CompareAt(theirs_, mine_));
    Fill(theirs_, {{1, 2}, {3, 2}, {0, 2}});
    EXPECT_EQ(-1, CompareAt(mine_, theirs_)) << "the first pair that differs";
    EXPECT_EQ(1, CompareAt(theirs_, mine_));
}

TEST_F(VectorCompareTest, OnlyElementsWithinTheTemporalityCountAndTheyArePairedInOrder) {
    Fill(mine_, {{9, 3}, {1, 2}, {9, 4}, {2, 2}});
    Fill(theirs_, {{1, 2}, {2, 2}, {8, 3}});
    EXPECT_EQ(0, CompareAt(mine_, theirs_, TemporalityPersistent)) << "indexes are not compared";
    EXPECT_EQ(0, CompareAt(theirs_, mine_, TemporalityPersistent));
    EXPECT_EQ(1, CompareAt(mine_, theirs_, TemporalityTransient)) << "9 against 1";
    EXPECT_EQ(1, CompareAt(mine_, theirs_, TemporalityTemporary)) << "four against three";
    Fill(theirs_, {{7, 3}, {7, 4}, {1, 2}, {7, 3}, {3, 2}, {7, 4}});
    EXPECT_EQ(-1, CompareAt(mine_, theirs_, TemporalityPersistent)) << "2 against 3";
}

TEST_F(VectorCompareTest, AVectorAboveTheTemporalityEqualsAnyOther) {
    Fill(mine_, {{1, 2}});
    mine_->SetTemporality(TemporalityTransient);
    EXPECT_EQ(0, CompareAt(mine_, theirs_, TemporalityPersistent));
    EXPECT_EQ(1, CompareAt(mine_, theirs_, TemporalityTransient));
}

TEST_F(VectorCompareTest, ElementsOfOtherKindsAreOrderedByTheirNumbersAndTags) {
    mine_->Insert(0, NodeTypeString);
    theirs_->Insert(0, NodeTypeInteger);
    EXPECT_EQ(2, CompareAt(mine_, theirs_));
    mine_->Clear();
    theirs_->Clear();
    PutMap(mine_, 0, 4100);
    PutMap(theirs_, 0, 4101);
    EXPECT_EQ(-1, CompareAt(mine_, theirs_));
}

TEST_F(VectorCompareTest, TheLastElementIsTakenWhereTheOtherSideHasNoCountedOneLeft) {
    Fill(mine_, {{1, 2}, {1, 5}});
    Fill(theirs_, {{3, 5}, {1, 5}});
    EXPECT_EQ(0, CompareAt(mine_, theirs_));
    Fill(theirs_, {{1, 5}, {3, 5}});
    EXPECT_EQ(-1, CompareAt(mine_, theirs_));
}

TEST_F(VectorCompareTest, NestedVectorsAreComparedElementByElement) {
    for (Vector* const vector : {mine_, theirs_}) {
        Append(PutVector(vector, 0), 1);
        Append(PutVector(vector, 1), 2);
    }
    EXPECT_EQ(0, CompareAt(mine_, theirs_));
    Append(static_cast<Vector*>(theirs_->Get(1)), 3);
    EXPECT_EQ(-1, CompareAt(mine_, theirs_));
}

}  // namespace
}  // namespace KivGenerics::Testing
