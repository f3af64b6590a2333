// What the temporality bits show to a visitor and where they let a walk go.

#include <string>

#include "traversal/Recorder.h"

namespace KivGenerics::Testing {
namespace {

EnumOrvGenericsTemporality T(int value) {
    return EnumOrvGenericsTemporality(value);
}

constexpr int kTemporalities[] = {0, 1, 2, 3, 4, 5, -1, 127};

struct Row {
    int flags;
    const char* shown;  ///< the own temporalities that are shown
};

constexpr Row kSeeRows[] = {
    {0, "1 2 3 4"},
    {IterateSeeDefault, "1"},
    {IterateSeePersistent, "2"},
    {IterateSeeTransient, "3"},
    {IterateSeeTemporary, "4"},
    {IterateSeeDefault | IterateSeeTemporary, "1 4"},
    {IterateSeePersistent | IterateSeeTransient, "2 3"},
    {IterateSeeDefault | IterateSeePersistent | IterateSeeTransient | IterateSeeTemporary, "1 2 3 4"},
};

constexpr Row kUpToRows[] = {
    {IterateUpToPersistent, "1 2"},
    {IterateUpToTransient, "1 2 3"},
    {IterateUpToTemporary, "1 2 3 4"},
    {IterateUpToPersistent | IterateUpToTransient, "1 2 3"},
};

class WalkTemporalityTest : public ContainerTest {
protected:
    static void Join(std::string& text, int number) {
        text += text.empty() ? "" : " ";
        text += std::to_string(number);
    }

    /// The own temporalities with which `node` is shown as start node; its derived temporality stays as it is stored.
    static std::string ShownAs(Node* node, int flags, int derived) {
        std::string shown;
        for (const int own : kTemporalities) {
            node->SetTemporality(T(own));
            NodeAccess::SetDerived(*node, T(derived));
            if (!Walk(node, flags | IterateSelf).empty()) {
                Join(shown, own);
            }
        }
        return shown;
    }

    /// The derived temporalities with which a walk enters `composite`, which holds a leaf of every temporality.
    static std::string EnteredWith(Composite* composite, int flags) {
        std::string entered;
        for (const int derived : kTemporalities) {
            NodeAccess::SetDerived(*composite, T(derived));
            if (!Walk(composite, flags | 0x1).empty()) {
                Join(entered, derived);
            }
        }
        return entered;
    }

    static void FillWithEveryTemporality(Composite* composite) {
        int index = 0;
        for (const int own : {1, 2, 3, 4}) {
            Put(composite, index++, own)->SetTemporality(T(own));
        }
    }
};

TEST_F(WalkTemporalityTest, ALeafIsShownByItsOwnTemporality) {
    Node* const leaf = NewLeaf();
    for (const int derived : {1, 2, 4}) {
        for (const Row& row : kSeeRows) {
            EXPECT_EQ(row.shown, ShownAs(leaf, row.flags, derived)) << std::hex << row.flags;
        }
        for (const Row& row : kUpToRows) {
            EXPECT_EQ(row.shown, ShownAs(leaf, row.flags, derived)) << std::hex << row.flags;
        }
    }
    EXPECT_EQ("1 2 4", ShownAs(leaf, IterateUpToPersistent | IterateSeeTemporary, 2));
    EXPECT_EQ("1 2 3 4", ShownAs(leaf, IterateUpToTransient | IterateSeeTemporary, 2));
}

TEST_F(WalkTemporalityTest, AVectorIsShownByItsOwnTemporality) {
    Vector* const vector = NewVector();
    for (const Row& row : kSeeRows) {
        EXPECT_EQ(row.shown, ShownAs(vector, row.flags, 0)) << std::hex << row.flags << ": no up-to bit, no entry test";
    }
    for (const Row& row : kUpToRows) {
        EXPECT_EQ(row.shown, ShownAs(vector, row.flags, 2)) << std::hex << row.flags;
    }
    EXPECT_EQ("1 2 4", ShownAs(vector, IterateUpToPersistent | IterateSeeTemporary, 2));
}

TEST_F(WalkTemporalityTest, AMapIsShownByItsOwnTemporalityWithoutUpToBits) {
    Map* const map = NewMap();
    for (const Row& row : kSeeRows) {
        EXPECT_EQ(row.shown, ShownAs(map, row.flags, 0)) << std::hex << row.flags;
    }
}

// kept-on-purpose: map-visibility
TEST_F(WalkTemporalityTest, WithUpToBitsAMapsOwnTemporalityIsNotAskedAVectorsIs) {
    Map* const map = NewMap();
    Vector* const vector = NewVector();
    for (const Row& row : kUpToRows) {
        EXPECT_EQ("0 1 2 3 4 5 -1 127", ShownAs(map, row.flags, 2)) << std::hex << row.flags;
        EXPECT_EQ(row.shown, ShownAs(vector, row.flags, 2)) << std::hex << row.flags;
    }
}

TEST_F(WalkTemporalityTest, UpToBitsLetTheWalkIntoCompositesByTheirDerivedTemporality) {
    for (Composite* const composite : {static_cast<Composite*>(NewMap()), static_cast<Composite*>(NewVector())}) {
        FillWithEveryTemporality(composite);
        EXPECT_EQ("1 2", EnteredWith(composite, IterateUpToPersistent));
        EXPECT_EQ("1 2 3", EnteredWith(composite, IterateUpToTransient));
        EXPECT_EQ("1 2 3 4", EnteredWith(composite, IterateUpToTemporary));
        EXPECT_EQ("1 2 4", EnteredWith(composite, IterateUpToPersistent | IterateSeeTemporary));
        EXPECT_EQ("1 2 3", EnteredWith(composite, IterateUpToPersistent | IterateSeeTransient));
        EXPECT_EQ("1 2", EnteredWith(composite, IterateUpToPersistent | IterateSeeDefault));
    }
}

TEST_F(WalkTemporalityTest, WithoutUpToBitsTheWalkEntersEveryComposite) {
    for (Composite* const composite : {static_cast<Composite*>(NewMap()), static_cast<Composite*>(NewVector())}) {
        FillWithEveryTemporality(composite);
        for (const Row& row : kSeeRows) {
            EXPECT_EQ("0 1 2 3 4 5 -1 127", EnteredWith(composite, row.flags)) << std::hex << row.flags;
        }
    }
}

TEST_F(WalkTemporalityTest, ACompositeThatIsNotEnteredIsSkippedWithEverythingBelow) {
    Map* const map = NewMap();
    Vector* const persistent = PutVector(map, 0);
    Append(persistent, 1);
    Vector* const transient = PutVector(map, 1);
    transient->SetTemporality(TemporalityTransient);
    Append(transient, 2);
    Put(map, 2, 3);
    Put(map, 40, 4)->SetTemporality(TemporalityDefault);
    Put(map, 41, 5)->SetTemporality(TemporalityTransient);
    Map* const temporary = PutMap(map, 42);
    temporary->SetTemporality(TemporalityTemporary);
    Put(temporary, 0, 6);
    tree_->UpdateDerivedTemporality();
    map->Detach();
    EXPECT_EQ("(0: 1 3 4", Walk(map, IterateUpToPersistent));
    EXPECT_EQ("(0: 1 (1: 2 3 4 5", Walk(map, IterateUpToTransient));
    EXPECT_EQ("(0: 1 (1: 2 3 4 5 (42: 6", Walk(map, IterateUpToTemporary));
}

TEST_F(WalkTemporalityTest, TheStoredValueIsAskedAndNothingIsCalculated) {
    Map* const map = NewMap();
    Vector* const vector = PutVector(map, 0);
    vector->SetTemporality(TemporalityTransient);
    Append(vector, 1);
    ASSERT_EQ(1, Stored(vector));
    EXPECT_EQ("1", Walk(map, IterateUpToPersistent | 0x1)) << "not calculated passes as default";
    EXPECT_EQ(1, Stored(vector));
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ("", Walk(map, IterateUpToPersistent | 0x1));
}

TEST_F(WalkTemporalityTest, AWalkThatDoesNotShowACompositePassesThroughIt) {
    Map* const map = NewMap();
    Vector* const hidden = PutVector(map, 0);
    hidden->SetTemporality(TemporalityReserved);
    Append(hidden, 1);
    Map* const hiddenMap = PutMap(map, 40);
    hiddenMap->SetTemporality(T(5));
    Put(hiddenMap, 0, 2);
    map->Detach();
    EXPECT_EQ("1 2", Walk(map));
    EXPECT_EQ("1 2", Walk(map, IteratePostOrder));
    EXPECT_EQ("", Walk(map, IterateChildren));
}

TEST_F(WalkTemporalityTest, ANodeOfReservedTemporalityIsNeverShown) {
    Map* const map = NewMap();
    Put(map, 0, 1)->SetTemporality(TemporalityReserved);
    Append(PutVector(map, 40), 2)->SetTemporality(TemporalityReserved);
    for (const int flags : {0, IterateUpToTemporary, IterateUpToTemporary | IterateSeeDefault | IterateSeeTemporary}) {
        EXPECT_EQ("", Walk(map, flags | 0x1));
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
