// The temporality of a vector, which its children share, and the sizes that hang on it.

#include "containers/TestNodes.h"

namespace KivGenerics::Testing {
namespace {

EnumOrvGenericsTemporality T(int value) {
    return EnumOrvGenericsTemporality(value);
}

/// Node::SetDerivedTemporality, which the library keeps for itself: naming it in an explicit instantiation is allowed.
using SetDerived = void (Node::*)(EnumOrvGenericsTemporality);
SetDerived GetSetDerived();
template <SetDerived Operation>
struct OpenSetDerived {
    friend SetDerived GetSetDerived() { return Operation; }
};
template struct OpenSetDerived<&Node::SetDerivedTemporality>;

void Push(Node* node, EnumOrvGenericsTemporality t) {
    (node->*GetSetDerived())(t);
}

class VectorTemporalityTest : public ContainerTest {
protected:
    VectorTemporalityTest() { vector_->SetTemporality(TemporalityDefault); }

    /// A child of this own temporality.
    Integer* Add(int temporality) {
        Integer* const node = Append(vector_, temporality);
        node->SetTemporality(T(temporality));
        return node;
    }

    Vector* vector_ = NewVector();
};

// kept-on-purpose: vector-pushes-temporality
TEST_F(VectorTemporalityTest, TheLeastOfTheChildrenIsPushedIntoAllOfThem) {
    Integer* const persistent = Add(2);
    Integer* const transient = Add(3);
    EXPECT_EQ(TemporalityPersistent, vector_->CalculateDerivedTemporality());
    EXPECT_EQ(2, Stored(vector_));
    EXPECT_EQ(2, Stored(persistent));
    EXPECT_EQ(2, Stored(transient));
    EXPECT_EQ(TemporalityTransient, transient->GetTemporality()) << "its own stays";
    EXPECT_EQ(2, vector_->GetSize(TemporalityPersistent));
}

TEST_F(VectorTemporalityTest, ADerivedTemporalityComesFromTheChildrenOrIsItsOwn) {
    Integer* const one = Add(2);
    Integer* const two = Add(2);
    const int rows[][4] = {
        {1, 3, 4, 3}, {1, 4, 4, 4}, {1, 1, 4, 2}, {1, 4, 2, 2}, {1, 0, 4, 0},
        {2, 3, 4, 2}, {3, 2, 2, 3}, {4, 2, 1, 4}, {0, 2, 3, 0}, {5, 2, 2, 5},
    };
    for (const auto& row : rows) {
        vector_->SetTemporality(T(row[0]));
        one->SetTemporality(T(row[1]));
        two->SetTemporality(T(row[2]));
        EXPECT_EQ(row[3], vector_->CalculateDerivedTemporality()) << row[0] << " over " << row[1] << " " << row[2];
        EXPECT_EQ(row[3], Stored(vector_));
        EXPECT_EQ(row[3], Stored(one));
        EXPECT_EQ(row[3], Stored(two));
    }
}

// kept-on-purpose: empty-composite-is-temporary
TEST_F(VectorTemporalityTest, AnEmptyVectorOfDefaultTemporalityIsTemporary) {
    EXPECT_EQ(TemporalityTemporary, vector_->CalculateDerivedTemporality());
    EXPECT_EQ(4, Stored(vector_));
    vector_->SetTemporality(TemporalityTransient);
    EXPECT_EQ(TemporalityTransient, vector_->CalculateDerivedTemporality());
}

TEST_F(VectorTemporalityTest, NestedVectorsShareTheValueOfTheOutermost) {
    Vector* const persistent = PutVector(vector_, 0);
    Vector* const transient = PutVector(vector_, 1);
    Vector* const deep = PutVector(transient, 0);
    transient->SetTemporality(TemporalityTransient);
    deep->SetTemporality(TemporalityTemporary);
    Integer* const leaf = Append(deep, 5);
    EXPECT_EQ(TemporalityPersistent, vector_->CalculateDerivedTemporality());
    for (const Node* const node : {static_cast<Node*>(vector_), static_cast<Node*>(persistent),
                                   static_cast<Node*>(transient), static_cast<Node*>(deep), static_cast<Node*>(leaf)}) {
        EXPECT_EQ(2, Stored(node));
    }
}

TEST_F(VectorTemporalityTest, NestedVectorsThatTheOuterOneDoesNotReachShareTheirOwn) {
    Map* const map = PutMap(vector_, 0);
    map->SetTemporality(TemporalityDefault);
    Vector* const inner = PutVector(map, 0);
    inner->SetTemporality(TemporalityTransient);
    Integer* const leaf = Append(inner, 5);
    Integer* const own = Put(map, 40, 6);
    own->SetTemporality(TemporalityTemporary);
    PutVector(vector_, 1)->SetTemporality(TemporalityPersistent);
    EXPECT_EQ(TemporalityPersistent, vector_->CalculateDerivedTemporality());
    EXPECT_EQ(2, Stored(map)) << "pushed into the map itself";
    EXPECT_EQ(3, Stored(inner)) << "and no further";
    EXPECT_EQ(3, Stored(leaf));
    EXPECT_EQ(4, Stored(own));
}

TEST_F(VectorTemporalityTest, CalculatingAnInnerVectorAlonePushesItsOwnValue) {
    Vector* const inner = PutVector(vector_, 0);
    inner->SetTemporality(TemporalityTransient);
    Integer* const leaf = Append(inner, 5);
    PutVector(vector_, 1)->SetTemporality(TemporalityPersistent);
    vector_->CalculateDerivedTemporality();
    ASSERT_EQ(2, Stored(leaf));
    EXPECT_EQ(TemporalityTransient, inner->CalculateDerivedTemporality());
    EXPECT_EQ(3, Stored(inner));
    EXPECT_EQ(3, Stored(leaf));
    EXPECT_EQ(2, Stored(vector_));
}

TEST_F(VectorTemporalityTest, AChildsEffectiveTemporalityFollowsWhatItsVectorPushes) {
    Integer* const transient = Add(3);
    Add(2);
    EXPECT_EQ(TemporalityPersistent, transient->GetDerivedTemporality()) << "asking the parent has changed the child";
    EXPECT_EQ(2, Stored(transient));
    vector_->SetTemporality(TemporalityTransient);
    EXPECT_EQ(TemporalityTransient, transient->GetDerivedTemporality());
}

TEST_F(VectorTemporalityTest, ASizeCountsTheChildrenWhoseDerivedTemporalityIsNotAboveTheLevel) {
    for (const int temporality : {1, 2, 3, 3, 4, 4, 0, 2}) {
        Add(temporality);
    }
    EXPECT_EQ(8, vector_->GetSize(TemporalityTemporary));
    EXPECT_EQ(6, vector_->GetSize(TemporalityTransient));
    EXPECT_EQ(4, vector_->GetSize(TemporalityPersistent));
    EXPECT_EQ(1, vector_->GetSize(TemporalityDefault));
    EXPECT_EQ(1, vector_->GetSize(TemporalityReserved));
    vector_->CalculateDerivedTemporality();
    EXPECT_EQ(8, vector_->GetSize(TemporalityReserved)) << "they share the least of them now";
}

TEST_F(VectorTemporalityTest, ASizeCalculatesWhatHasNotBeenAndDoesNotAskAncestors) {
    Integer* const leaf = Add(1);
    vector_->SetTemporality(TemporalityTemporary);
    root_->SetTemporality(TemporalityTemporary);
    ASSERT_EQ(1, Stored(leaf));
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { EXPECT_EQ(1, vector_->GetSize(TemporalityPersistent)); }));
    EXPECT_EQ(2, Stored(leaf));
    NodeAccess::SetDerived(*leaf, TemporalityTransient);
    EXPECT_EQ(0, vector_->GetSize(TemporalityPersistent)) << "taken as it is stored";
    EXPECT_EQ(1, vector_->GetSize(TemporalityTransient));
}

TEST_F(VectorTemporalityTest, ASizeOfTheGreatestTemporalityCountsChildrenBeyondTheScaleToo) {
    Add(5);
    Add(2);
    EXPECT_EQ(2, vector_->GetSize(TemporalityTemporary));
    EXPECT_EQ(1, vector_->GetSize(TemporalityTransient));
    EXPECT_EQ(2, vector_->GetSize(T(5)));
}

TEST_F(VectorTemporalityTest, APushedValueReachesNestedVectorsAndTheMapsInThemButNotWhatTheMapsHold) {
    Vector* const inner = PutVector(vector_, 0);
    Integer* const leaf = Append(inner, 5);
    Map* const map = PutMap(vector_, 1);
    Integer* const held = Put(map, 0, 6);
    vector_->CalculateDerivedTemporality();
    Push(vector_, TemporalityTransient);
    EXPECT_EQ(3, Stored(vector_));
    EXPECT_EQ(3, Stored(inner));
    EXPECT_EQ(3, Stored(leaf));
    EXPECT_EQ(3, Stored(map));
    EXPECT_EQ(2, Stored(held));
    Push(held, TemporalityTemporary);
    EXPECT_EQ(4, Stored(held));
}

TEST_F(VectorTemporalityTest, APushedValueStopsAtAVectorThatHasItAlready) {
    Vector* const inner = PutVector(vector_, 0);
    Integer* const leaf = Append(inner, 5);
    vector_->CalculateDerivedTemporality();
    NodeAccess::SetDerived(*leaf, TemporalityTemporary);
    Push(vector_, TemporalityPersistent);
    EXPECT_EQ(4, Stored(leaf));
    NodeAccess::SetDerived(*inner, TemporalityTransient);
    Push(vector_, TemporalityTransient);
    EXPECT_EQ(3, Stored(vector_));
    EXPECT_EQ(4, Stored(leaf));
    Push(vector_, TemporalityPersistent);
    EXPECT_EQ(2, Stored(leaf));
}

}  // namespace
}  // namespace KivGenerics::Testing
