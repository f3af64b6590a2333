// What a vector holds and finds, and how children are made in it and leave it.

#include <limits>
#include <stdexcept>

#include "containers/TestNodes.h"
#include "support/Kinds.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();

constexpr const char* kOutOfRange = "Index out of range";
constexpr const char* kNothing = "Remove::Index out of range";
constexpr const char* kDifferent = "Vector::Add::Different children type";

class VectorTest : public ContainerTest {
protected:
    /// The Integers 10, 11, 12.
    void Fill() {
        for (const int value : {10, 11, 12}) {
            Append(vector_, value);
        }
    }

    Vector* vector_ = NewVector();
};

TEST_F(VectorTest, ANewVectorIsEmpty) {
    EXPECT_EQ(6, vector_->GetType());
    EXPECT_EQ(1, vector_->GetSemanticTag());
    EXPECT_TRUE(vector_->IsEmpty());
    EXPECT_EQ(0, vector_->GetSize(TemporalityTemporary));
    EXPECT_EQ(0, vector_->GetSize(TemporalityPersistent));
    EXPECT_EQ(nullptr, vector_->Get(0));
    EXPECT_EQ(nullptr, vector_->GetNext(-1));
    EXPECT_EQ(nullptr, vector_->GetNth(0));
    EXPECT_EQ("[]", Show(vector_));
}

TEST_F(VectorTest, ChildrenAreFoundByIndexAndNothingOutsideThem) {
    Fill();
    EXPECT_FALSE(vector_->IsEmpty());
    for (int i = 0; i < 3; ++i) {
        Node* const child = vector_->Get(i);
        ASSERT_NE(nullptr, child);
        EXPECT_EQ(10 + i, static_cast<Integer*>(child)->Get());
        EXPECT_EQ(child, vector_->GetNV(i));
        EXPECT_EQ(child, vector_->GetNth(i));
        EXPECT_EQ(child, vector_->GetNext(i - 1));
    }
    for (const int index : {-1, -2, 3, 4, kLeast, kGreatest}) {
        EXPECT_EQ(nullptr, vector_->Get(index)) << index;
        EXPECT_EQ(nullptr, vector_->GetNV(index)) << index;
        EXPECT_EQ(nullptr, vector_->GetNth(index)) << index;
    }
}

TEST_F(VectorTest, GetNextAnswersNullOutsideTheChildren) {
    Fill();
    for (const int index : {2, 3, -2, -3, kLeast, kGreatest}) {
        EXPECT_EQ(nullptr, vector_->GetNext(index)) << index;
    }
}

TEST_F(VectorTest, AddAppendsEveryKindWithDefaultTemporality) {
    for (const NodeType type : KivTests::kAllKinds) {
        Vector* const vector = NewVector();
        const int tag = type == NodeTypeMap ? 4100 : 0;
        for (int i = 0; i < 3; ++i) {
            Node* node = nullptr;
            EXPECT_EQ(tag != 0 ? 2 : 1, ChangesOf(*tree_, [&] { node = vector->Add(type, SemanticTag(tag)); }));
            EXPECT_EQ(type, node->GetType());
            EXPECT_EQ(i, node->GetIndex());
            EXPECT_EQ(vector, node->GetParent());
            EXPECT_EQ(TemporalityDefault, node->GetTemporality());
            EXPECT_EQ(1, Stored(node));
            EXPECT_EQ(type == NodeTypeMap ? 4100 : 1, node->GetSemanticTag());
            EXPECT_EQ(node, vector->Get(i));
        }
        EXPECT_EQ(3, vector->GetSize(TemporalityTemporary));
    }
}

TEST_F(VectorTest, AddRefusesAnotherKindThanThatOfChildZero) {
    Fill();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] {
                  for (const NodeType type : KivTests::kAllKinds) {
                      if (type != NodeTypeInteger) {
                          EXPECT_EQ(kDifferent, TextOf([&] { vector_->Add(type); })) << type;
                      }
                  }
                  EXPECT_EQ(kDifferent, TextOf([&] { vector_->Add(NodeType(13)); }));
              }));
    EXPECT_EQ("[10 11 12]", Show(vector_));
    EXPECT_EQ("Invalid node type!", TextOf([&] { NewVector()->Add(NodeType(13)); }));
}

TEST_F(VectorTest, AddComparesChildZeroAlone) {
    Fill();
    vector_->Insert(3, NodeTypeString);
    vector_->Add(NodeTypeInteger);
    EXPECT_EQ("[10 11 12 String 0]", Show(vector_));
    vector_->Insert(0, NodeTypeString);
    EXPECT_EQ(kDifferent, TextOf([&] { vector_->Add(NodeTypeInteger); }));
    vector_->Add(NodeTypeString);
    EXPECT_EQ("[String 10 11 12 String 0 String]", Show(vector_));
}

TEST_F(VectorTest, InsertShiftsAndRenumbersTheLaterChildren) {
    Fill();
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { vector_->Insert(0, NodeTypeInteger); }));
    EXPECT_EQ("[0 10 11 12]", Show(vector_));
    Node* const map = vector_->Insert(2, NodeTypeMap, SemanticTag(4100));
    EXPECT_EQ(TemporalityDefault, map->GetTemporality());
    EXPECT_EQ(2, map->GetIndex());
    EXPECT_EQ("[0 10 4100{} 11 12]", Show(vector_));
    vector_->Insert(5, NodeTypeInteger);
    EXPECT_EQ("[0 10 4100{} 11 12 0]", Show(vector_));
}

// kept-on-purpose: unchecked-insert
TEST_F(VectorTest, OnlyAddComparesKinds) {
    Fill();
    Node* const text = NewLeaf(NodeTypeString);
    vector_->Insert(3, NodeTypeString);
    vector_->InsertCopy(4, text);
    vector_->NewNode(5, NodeTypeString);
    vector_->InsertNode(6, text->Detach());
    vector_->Move(7, NewLeaf(NodeTypeBoolean));
    EXPECT_EQ("[10 11 12 String String String String Boolean]", Show(vector_));
    vector_->NewNode(0, NodeTypeDouble);
    EXPECT_EQ("[Double 11 12 String String String String Boolean]", Show(vector_));
}

TEST_F(VectorTest, IndexesPastTheSizeAreRefusedBeforeAnythingIsMade) {
    Fill();
    Node* const node = NewLeaf();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] {
                  for (const int index : {-1, 4, 5, kLeast, kGreatest}) {
                      EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->NewNode(index, NodeTypeInteger); })) << index;
                      EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->NewNode(index, NodeType(13)); })) << index;
                      EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->Insert(index, NodeTypeInteger); })) << index;
                      EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->InsertCopy(index, node); })) << index;
                      EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->Move(index, node); })) << index;
                  }
              }));
    EXPECT_EQ("[10 11 12]", Show(vector_));
    tree_->SetReadOnly();
    EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->NewNode(4, NodeTypeInteger); }));
    EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->Insert(4, NodeTypeInteger); }));
    EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->InsertCopy(4, node); }));
    EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->Move(4, node); }));
    EXPECT_EQ(kDifferent, TextOf([&] { vector_->Add(NodeTypeString); }));
    for (int index = 0; index <= 3; ++index) {
        EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->NewNode(index, NodeTypeInteger); })) << index;
        EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->Insert(index, NodeTypeInteger); })) << index;
        EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->InsertCopy(index, node); })) << index;
        EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->Move(index, node); })) << index;
        EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->InsertNode(index, node); })) << index;
    }
    EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->Add(NodeTypeInteger); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->AddCopy(node); }));
    EXPECT_EQ("[10 11 12]", Show(vector_));
}

TEST_F(VectorTest, NewNodeAppendsAtTheSizeAndReplacesBelowIt) {
    for (int i = 0; i < 3; ++i) {
        Node* node = nullptr;
        EXPECT_EQ(2, ChangesOf(*tree_, [&] { node = vector_->NewNode(i, NodeTypeInteger); }));
        EXPECT_EQ(TemporalityPersistent, node->GetTemporality());
        EXPECT_EQ(i, node->GetIndex());
        static_cast<Integer*>(node)->Set(10 + i);
    }
    auto* const old = static_cast<Integer*>(vector_->Get(1));
    Node* node = nullptr;
    EXPECT_EQ(4, ChangesOf(*tree_, [&] { node = vector_->NewNode(1, NodeTypeMap, false, SemanticTag(4100)); }));
    EXPECT_EQ("[10 4100{} 12]", Show(vector_));
    EXPECT_EQ(TemporalityPersistent, node->GetTemporality());
    EXPECT_EQ(nullptr, old->GetParent());
    EXPECT_EQ(-1, old->GetIndex());
    EXPECT_EQ(0, old->Get());
    EXPECT_EQ(old, NewLeaf()) << "released";
}

TEST_F(VectorTest, NewNodeOfAnUnknownKindLeavesTheOldChild) {
    Fill();
    for (const int type : {0, 13, -1, 263}) {
        EXPECT_EQ("Invalid node type!", TextOf([&] { vector_->NewNode(1, NodeType(type)); })) << type;
        EXPECT_EQ("Invalid node type!", TextOf([&] { vector_->NewNode(3, NodeType(type)); })) << type;
        EXPECT_EQ("Invalid node type!", TextOf([&] { vector_->Insert(1, NodeType(type)); })) << type;
    }
    EXPECT_EQ("[10 11 12]", Show(vector_));
}

TEST_F(VectorTest, TheKeptChildIsChildZeroOfTheNewComposite) {
    Fill();
    Node* const old = vector_->Get(1);
    EXPECT_EQ(3, ChangesOf(*tree_, [&] { vector_->NewNode(1, NodeTypeVector, true); }));
    EXPECT_EQ("[10 [11] 12]", Show(vector_));
    EXPECT_EQ(vector_->Get(1), old->GetParent());
    EXPECT_EQ(4, ChangesOf(*tree_, [&] { vector_->NewNode(1, NodeTypeMap, true, SemanticTag(4100)); }));
    EXPECT_EQ("[10 4100{0:[11]} 12]", Show(vector_));
    vector_->NewNode(2, NodeTypeVector, true);
    vector_->NewNode(0, NodeTypeVector, true);
    EXPECT_EQ("[[10] 4100{0:[11]} [12]]", Show(vector_));
    EXPECT_EQ(TemporalityPersistent, vector_->Get(0)->GetTemporality());
    EXPECT_EQ(TemporalityDefault, old->GetTemporality());
}

TEST_F(VectorTest, KeepingAtTheSizeKeepsNothingAndSoTakesEveryKind) {
    vector_->NewNode(0, NodeTypeInteger, true);
    vector_->NewNode(1, NodeTypeVector, true);
    EXPECT_EQ("[0 []]", Show(vector_));
}

// kept-on-purpose: abandoned-new-node
TEST_F(VectorTest, ALeafCannotKeepTheOldChildAndIsMadeAllTheSame) {
    Fill();
    for (const NodeType type : KivTests::kAllKinds) {
        if (type == NodeTypeVector || type == NodeTypeMap) {
            continue;
        }
        const std::size_t before = tree_->BufferQueryB();
        EXPECT_EQ(1, ChangesOf(*tree_, [&] {
                      EXPECT_EQ("NewNode:Invalid node type for keeping old node",
                                TextOf([&] { vector_->NewNode(1, type, true); }));
                  }));
        EXPECT_LT(before, tree_->BufferQueryB()) << "made, and abandoned";
    }
    EXPECT_EQ("[10 11 12]", Show(vector_));
}

TEST_F(VectorTest, RemovingTheFirstOfThreeRenumbersTheOthers) {
    Fill();
    auto* const first = static_cast<Integer*>(vector_->Get(0));
    Node* const second = vector_->Get(1);
    Node* const third = vector_->Get(2);
    EXPECT_EQ(2, ChangesOf(*tree_, [&] { vector_->Remove(0); }));
    EXPECT_EQ("[11 12]", Show(vector_));
    EXPECT_EQ(0, second->GetIndex());
    EXPECT_EQ(1, third->GetIndex());
    EXPECT_EQ(-1, first->GetIndex());
    EXPECT_EQ(nullptr, first->GetParent());
    EXPECT_EQ(0, first->Get());
    third->Remove();
    EXPECT_EQ("[11]", Show(vector_));
}

TEST_F(VectorTest, RemovingReleasesEverythingBelow) {
    Vector* const inner = PutVector(vector_, 0);
    Integer* const leaf = Append(inner, 5);
    EXPECT_EQ(3, ChangesOf(*tree_, [&] { vector_->Remove(0); }));
    EXPECT_TRUE(inner->IsEmpty());
    EXPECT_EQ(nullptr, inner->GetParent());
    EXPECT_EQ(nullptr, leaf->GetParent());
    EXPECT_EQ(0, leaf->Get());
}

TEST_F(VectorTest, RemovingOrDetachingWhereNothingIsThrowsAfterTheGuardHasCounted) {
    Fill();
    for (const int index : {-1, 3, 4, kLeast, kGreatest}) {
        EXPECT_EQ(1, ChangesOf(*tree_, [&] { EXPECT_EQ(kNothing, TextOf([&] { vector_->Remove(index); })) << index; }));
        EXPECT_EQ(1, ChangesOf(*tree_, [&] { EXPECT_EQ(kNothing, TextOf([&] { vector_->Detach(index); })) << index; }));
    }
    tree_->SetReadOnly();
    EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->Remove(-1); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->Detach(0); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->Clear(); }));
    EXPECT_EQ("[10 11 12]", Show(vector_));
}

TEST_F(VectorTest, DetachingTakesTheChildOutWhole) {
    Fill();
    Node* const middle = vector_->Get(1);
    middle->SetTemporality(TemporalityTransient);
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { EXPECT_EQ(middle, vector_->Detach(1)); }));
    EXPECT_EQ("[10 12]", Show(vector_));
    EXPECT_EQ("11", Show(middle));
    EXPECT_EQ(-1, middle->GetIndex());
    EXPECT_EQ(nullptr, middle->GetParent());
    EXPECT_EQ(TemporalityTransient, middle->GetTemporality());
    vector_->Move(2, middle);
    EXPECT_EQ("[10 12 11]", Show(vector_));
}

TEST_F(VectorTest, ClearingReleasesTheChildrenInOrderAndKeepsTheTemporality) {
    Fill();
    Node* const first = vector_->Get(0);
    Node* const last = vector_->Get(2);
    vector_->SetTemporality(TemporalityTransient);
    EXPECT_EQ(4, ChangesOf(*tree_, [&] { vector_->Clear(); }));
    EXPECT_EQ("[]", Show(vector_));
    EXPECT_EQ(TemporalityTransient, vector_->GetTemporality());
    EXPECT_EQ(nullptr, first->GetParent());
    EXPECT_EQ(last, NewLeaf()) << "the one released last is handed out";
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { vector_->Clear(); }));
}

TEST_F(VectorTest, ReserveMakesRoomOnceAndChangesNothingElse) {
    Fill();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { vector_->Reserve(1000); }));
    EXPECT_EQ("[10 11 12]", Show(vector_));
    Node* const boxed = NewLeaf();
    boxed->Remove();
    const std::size_t before = tree_->BufferQueryB();
    vector_->Reserve(1000);
    vector_->Reserve(0);
    vector_->Reserve(3);
    EXPECT_EQ(before, tree_->BufferQueryB());
    vector_->Insert(0, NodeTypeInteger);
    EXPECT_EQ(before, tree_->BufferQueryB()) << "a reused node, and no other array";
}

TEST_F(VectorTest, ReserveRefusesWhatNoArrayCanHold) {
    Fill();
    for (const int count : {-1, -2, kLeast}) {
        try {
            vector_->Reserve(count);
            ADD_FAILURE() << count;
        } catch (const std::length_error& error) {
            EXPECT_STREQ("vector<T> too long", error.what());
        }
    }
    EXPECT_EQ("[10 11 12]", Show(vector_));
}

}  // namespace
}  // namespace KivGenerics::Testing
