// How a map makes children, and what becomes of those that stood at their index.

#include <limits>

#include "containers/TestNodes.h"
#include "support/Kinds.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();

/// For every number of slots, at an index that may be a slot or not; and at one that never is.
class MapNewNodeTest : public ContainerTest, public ::testing::WithParamInterface<SlotCase> {
protected:
    Map* map_ = NewMap(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Slots, MapNewNodeTest, ::testing::ValuesIn(kEverySlotCount), NameOfSlotCase);

constexpr int kPlaces[] = {0, 2, 8, 40};

TEST_P(MapNewNodeTest, EveryKindIsMadeAtItsIndexWithPersistentTemporality) {
    for (const int index : kPlaces) {
        for (const NodeType type : KivTests::kAllKinds) {
            Node* const node = map_->NewNode(index, type);
            EXPECT_EQ(type, node->GetType());
            EXPECT_EQ(map_, node->GetParent());
            EXPECT_EQ(index, node->GetIndex());
            EXPECT_EQ(1, node->GetSemanticTag());
            EXPECT_EQ(TemporalityPersistent, node->GetTemporality());
            EXPECT_EQ(1, Stored(node));
            EXPECT_EQ(tree_.Get(), node->GetTree().Get());
            EXPECT_EQ(node, map_->Get(index));
        }
    }
    EXPECT_EQ("{0:Integer64 2:Integer64 8:Integer64 40:Integer64}", Show(map_));
}

TEST_P(MapNewNodeTest, AMapIsMadeWithItsTagAndAnotherKindIgnoresIt) {
    EXPECT_EQ(4100, map_->NewNode(0, NodeTypeMap, false, SemanticTag(4100))->GetSemanticTag());
    EXPECT_EQ(4100, map_->NewNode(40, NodeTypeMap, false, SemanticTag(4100))->GetSemanticTag());
    EXPECT_EQ(1, map_->NewNode(0, NodeTypeVector, false, SemanticTag(4100))->GetSemanticTag());
}

TEST_P(MapNewNodeTest, AnIndexOutsideTheRangeIsRefusedBeforeAnythingIsMade) {
    for (const int index : {-1, -2, 536870912, kLeast, kGreatest}) {
        EXPECT_EQ(0, ChangesOf(*tree_, [&] {
                      EXPECT_EQ("Index out of range", TextOf([&] { map_->NewNode(index, NodeTypeInteger); })) << index;
                  }));
    }
    EXPECT_EQ("Index out of range", TextOf([&] { map_->NewNode(-1, NodeType(13)); }));
    EXPECT_FALSE(map_->HasOverflow());
    EXPECT_TRUE(map_->IsEmpty());
    tree_->SetReadOnly();
    EXPECT_EQ("Index out of range", TextOf([&] { map_->NewNode(-1, NodeTypeInteger); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map_->NewNode(0, NodeTypeInteger); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map_->NewNode(40, NodeTypeInteger); }));
    EXPECT_TRUE(map_->IsEmpty());
    EXPECT_FALSE(map_->HasOverflow());
}

TEST_P(MapNewNodeTest, AnUnknownKindIsRefusedAndTheOldChildStays) {
    for (const int index : kPlaces) {
        Put(map_, index, 5);
        for (const int type : {0, 13, -1, 263, 256 + 7}) {
            EXPECT_EQ("Invalid node type!", TextOf([&] { map_->NewNode(index, NodeType(type)); })) << type;
            EXPECT_EQ("Invalid node type!", TextOf([&] { map_->NewNode(index, NodeType(type), true); })) << type;
        }
    }
    EXPECT_EQ("{0:5 2:5 8:5 40:5}", Show(map_));
}

TEST_P(MapNewNodeTest, TheOldChildIsReleasedAfterTheNewOneIsMade) {
    for (const int index : kPlaces) {
        Integer* const old = Put(map_, index, 5);
        Integer* const node = Put(map_, index, 6);
        EXPECT_NE(old, node) << "the new one is made while the old one still stands";
        EXPECT_EQ(nullptr, old->GetParent());
        EXPECT_EQ(-1, old->GetIndex());
        EXPECT_EQ(TemporalityDefault, old->GetTemporality());
        EXPECT_EQ(0, old->Get());
        EXPECT_EQ(old, Put(map_, index, 7)) << "the released one is handed out again";
    }
    EXPECT_EQ("{0:7 2:7 8:7 40:7}", Show(map_));
}

TEST_P(MapNewNodeTest, AReplacedCompositeIsReleasedWithEverythingBelow) {
    for (const int index : kPlaces) {
        Map* const old = PutMap(map_, index, 4100);
        Vector* const inner = PutVector(old, 0);
        Integer* const leaf = Append(inner, 5);
        EXPECT_EQ(2 + 3, ChangesOf(*tree_, [&] { map_->NewNode(index, NodeTypeString); }));
        EXPECT_TRUE(old->IsEmpty());
        EXPECT_EQ(1, old->GetSemanticTag());
        EXPECT_EQ(nullptr, inner->GetParent());
        EXPECT_TRUE(inner->IsEmpty());
        EXPECT_EQ(nullptr, leaf->GetParent());
    }
}

TEST_P(MapNewNodeTest, KeepingTheOldChildNeedsAnOldChild) {
    for (const int index : kPlaces) {
        EXPECT_EQ(2, ChangesOf(*tree_, [&] { map_->NewNode(index, NodeTypeInteger, true); }));
    }
    EXPECT_EQ("{0:0 2:0 8:0 40:0}", Show(map_));
    map_->Remove(40);
    EXPECT_EQ("0", Show(map_->NewNode(40, NodeTypeInteger, true))) << "the overflow store exists, the entry does not";
    EXPECT_EQ("[]", Show(map_->NewNode(41, NodeTypeVector, true)));
}

// kept-on-purpose: abandoned-new-node
TEST_P(MapNewNodeTest, ALeafCannotKeepTheOldChildAndIsMadeAllTheSame) {
    for (const int index : kPlaces) {
        Integer* const old = Put(map_, index, 5);
        for (const NodeType type : KivTests::kAllKinds) {
            if (type == NodeTypeVector || type == NodeTypeMap) {
                continue;
            }
            const std::size_t before = tree_->BufferQueryB();
            EXPECT_EQ(1, ChangesOf(*tree_, [&] {
                          EXPECT_EQ("NewNode:Invalid node type for keeping old node",
                                    TextOf([&] { map_->NewNode(index, type, true); }));
                      }));
            EXPECT_LT(before, tree_->BufferQueryB()) << "made, and abandoned";
        }
        EXPECT_EQ(old, map_->Get(index));
        EXPECT_EQ(TemporalityPersistent, old->GetTemporality());
    }
    EXPECT_EQ("{0:5 2:5 8:5 40:5}", Show(map_));
}

TEST_P(MapNewNodeTest, TheKeptChildIsChildZeroOfTheNewComposite) {
    for (const int index : kPlaces) {
        Integer* const old = Put(map_, index, 5);
        old->SetTemporality(TemporalityTransient);
        Node* vector = nullptr;
        EXPECT_EQ(3, ChangesOf(*tree_, [&] { vector = map_->NewNode(index, NodeTypeVector, true); }));
        EXPECT_EQ(vector, old->GetParent());
        EXPECT_EQ(0, old->GetIndex());
        EXPECT_EQ(TemporalityTransient, old->GetTemporality());
        EXPECT_EQ(TemporalityPersistent, vector->GetTemporality());
        Node* map = nullptr;
        EXPECT_EQ(4, ChangesOf(*tree_,
                               [&] { map = map_->NewNode(index, NodeTypeMap, true, SemanticTag(GetParam().tag)); }));
        EXPECT_EQ(map, vector->GetParent());
        EXPECT_EQ(0, vector->GetIndex());
        static_cast<Map*>(map)->SetSemanticTag(SemanticTagDefault);
    }
    EXPECT_EQ("{0:{0:[5]} 2:{0:[5]} 8:{0:[5]} 40:{0:[5]}}", Show(map_));
}

TEST_P(MapNewNodeTest, KeepingInTheOverflowStoreLeavesItsOtherEntriesAlone) {
    for (const int index : {20, 21, 22, 23, 24}) {
        Put(map_, index, index);
    }
    map_->NewNode(20, NodeTypeVector, true);
    map_->NewNode(22, NodeTypeMap, true);
    map_->NewNode(24, NodeTypeVector, true);
    EXPECT_EQ("{20:[20] 21:21 22:{0:22} 23:23 24:[24]}", Show(map_));
    EXPECT_EQ(5, map_->GetSize(TemporalityTemporary));
}

TEST_P(MapNewNodeTest, AReadOnlyTreeKeepsTheOldChildWhereItIs) {
    Put(map_, 0, 5);
    Put(map_, 40, 6);
    tree_->SetReadOnly();
    for (const int index : {0, 40}) {
        for (const bool keepOld : {false, true}) {
            EXPECT_EQ(kReadOnlyText, TextOf([&] { map_->NewNode(index, NodeTypeVector, keepOld); }));
            EXPECT_EQ(kReadOnlyText, TextOf([&] { map_->NewNode(index, NodeTypeInteger, keepOld); }));
        }
    }
    EXPECT_EQ("{0:5 40:6}", Show(map_));
}

}  // namespace
}  // namespace KivGenerics::Testing
