// That broken invariants of maps and vectors are found, by their numbers.

#include "core/Invariants.h"

#include "containers/MapImpl.h"
#include "containers/TestNodes.h"

namespace KivGenerics::Testing {
namespace {

/// The array of a vector, which it keeps for itself: naming it in an explicit instantiation is allowed.
using Elements = std::vector<Node*, KivBase::Allocator<Node*>> Vector::*;
Elements GetElements();
template <Elements Member>
struct OpenElements {
    friend Elements GetElements() { return Member; }
};
template struct OpenElements<&Vector::children_>;

/// The overflow store of a map, likewise.
using Overflow = MapOverflow* MapImpl<8>::*;
Overflow GetOverflow();
template <Overflow Member>
struct OpenOverflow {
    friend Overflow GetOverflow() { return Member; }
};
template struct OpenOverflow<&MapImpl<8>::overflow_>;

class InvariantTest : public ContainerTest {
protected:
    InvariantTest() {
        for (const int value : {1, 2, 3}) {
            Append(vector_, value);
        }
        for (const int index : {0, 7, 8, 40}) {
            Put(map_, index, index);
        }
    }

    /// Makes `map`, which stays where it is, belong to another tree.
    void Estrange(Map* map) {
        Composite* const parent = map->GetParent();
        const int index = map->GetIndex();
        *map = *static_cast<Map*>(stranger_);
        NodeAccess::Place(*map, parent, index);
    }

    Vector* vector_ = NewVector();
    Map* map_ = NewMap();
    KivBase::ReturnPtrI<Tree> otherTree_ = KivTests::NewTree();
    Node* stranger_ = otherTree_->NewRoot(NodeTypeMap);
};

TEST_F(InvariantTest, WhatTheOperationsLeaveIsWhole) {
    EXPECT_EQ(0, CheckInvariants(nullptr));
    EXPECT_EQ(0, CheckInvariants(vector_->Get(0)));
    EXPECT_EQ(0, CheckInvariants(vector_));
    EXPECT_EQ(0, CheckInvariants(map_));
    EXPECT_EQ(0, CheckInvariants(root_));
    vector_->Move(0, map_->Get(40));
    map_->Move(41, vector_->Get(3));
    map_->NewNode(8, NodeTypeVector, true);
    vector_->NewNode(1, NodeTypeMap, true);
    vector_->Remove(0);
    EXPECT_EQ(0, CheckInvariants(root_));
    EXPECT_EQ(0, CheckInvariants(NewVector()));
}

TEST_F(InvariantTest, ANullElementOfAVectorIsItsFirst) {
    (vector_->*GetElements())[1] = nullptr;
    EXPECT_EQ(1, CheckInvariants(vector_));
    EXPECT_EQ(1, CheckInvariants(root_));
}

TEST_F(InvariantTest, AWrongIndexInAVectorIsItsSecond) {
    Node* const child = vector_->Get(2);
    NodeAccess::Place(*child, vector_, 1);
    EXPECT_EQ(2, CheckInvariants(vector_));
    EXPECT_EQ(2, CheckInvariants(root_));
    NodeAccess::Place(*child, vector_, 2);
    EXPECT_EQ(0, CheckInvariants(root_));
}

TEST_F(InvariantTest, AWrongParentInAVectorIsItsThird) {
    NodeAccess::Place(*vector_->Get(0), nullptr, 0);
    EXPECT_EQ(3, CheckInvariants(vector_));
    NodeAccess::Place(*vector_->Get(0), map_, 0);
    EXPECT_EQ(3, CheckInvariants(root_));
}

TEST_F(InvariantTest, AChildOfAnotherTreeInAVectorIsItsFourth) {
    Estrange(static_cast<Map*>(vector_->Insert(1, NodeTypeMap)));
    EXPECT_EQ(4, CheckInvariants(vector_));
    EXPECT_EQ(4, CheckInvariants(root_));
}

TEST_F(InvariantTest, AWrongIndexInAMapIsItsFirst) {
    for (const int index : {0, 8, 40}) {
        Node* const child = map_->Get(index);
        NodeAccess::Place(*child, map_, index + 1);
        EXPECT_EQ(1, CheckInvariants(map_)) << index;
        EXPECT_EQ(1, CheckInvariants(root_)) << index;
        NodeAccess::Place(*child, map_, index);
        EXPECT_EQ(0, CheckInvariants(root_)) << index;
    }
}

TEST_F(InvariantTest, AWrongParentInAMapIsItsSecond) {
    for (const int index : {0, 40}) {
        Node* const child = map_->Get(index);
        NodeAccess::Place(*child, vector_, index);
        EXPECT_EQ(2, CheckInvariants(map_)) << index;
        EXPECT_EQ(2, CheckInvariants(root_)) << index;
        NodeAccess::Place(*child, map_, index);
    }
}

TEST_F(InvariantTest, AChildOfAnotherTreeInAMapIsItsThird) {
    Estrange(PutMap(map_, 41));
    EXPECT_EQ(3, CheckInvariants(map_));
    EXPECT_EQ(3, CheckInvariants(root_));
}

TEST_F(InvariantTest, AnOverflowEntryThatHoldsNullIsAMapsFourth) {
    auto* const map = static_cast<MapImpl<8>*>(map_);
    ASSERT_EQ(8, map->GetSlotCount());
    (map->*GetOverflow())->Need(20) = nullptr;
    EXPECT_EQ(4, CheckInvariants(map_));
    EXPECT_EQ(4, CheckInvariants(root_));
}

TEST_F(InvariantTest, AnOverflowKeyBelowTheSlotsIsAMapsFourth) {
    auto* const map = static_cast<MapImpl<8>*>(map_);
    Node* const child = NewLeaf()->Detach();
    NodeAccess::Place(*child, map_, 3);
    (map->*GetOverflow())->Need(3) = child;
    EXPECT_EQ(4, CheckInvariants(map_));
}

TEST_F(InvariantTest, WhatIsBrokenFarBelowIsFound) {
    Vector* const deep = PutVector(PutMap(PutVector(map_, 41), 0), 50);
    Append(deep, 1);
    EXPECT_EQ(0, CheckInvariants(root_));
    NodeAccess::Place(*deep->Get(0), deep, 7);
    EXPECT_EQ(2, CheckInvariants(root_));
}

}  // namespace
}  // namespace KivGenerics::Testing
