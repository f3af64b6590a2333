// How nodes from elsewhere come into a vector: moved, inserted, copied.

#include "containers/TestNodes.h"

namespace KivGenerics::Testing {
namespace {

constexpr const char* kNull = "Move::Node can't be NULL!";
constexpr const char* kAncestor = "Can't perform this operation on an ancestor";
constexpr const char* kOtherTree = "Move::Can't move a node from a different tree!";
constexpr const char* kMoveOutOfRange = "Move::Index out of range!";
constexpr const char* kOutOfRange = "Index out of range";

class VectorMoveTest : public ContainerTest {
protected:
    VectorMoveTest() {
        for (const int value : {10, 11, 12}) {
            Append(vector_, value);
        }
    }

    Vector* vector_ = NewVector();
    KivBase::ReturnPtrI<Tree> otherTree_ = KivTests::NewTree();
    Map* otherRoot_ = static_cast<Map*>(otherTree_->NewRoot(NodeTypeMap, false, SemanticTag(4100)));
};

TEST_F(VectorMoveTest, WithinOneVectorTheIndexCountsAfterTheNodeIsTakenOut) {
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { vector_->Move(2, vector_->Get(0)); }));
    EXPECT_EQ("[11 12 10]", Show(vector_)) << "to the size less one: the last";
    vector_->Move(1, vector_->Get(0));
    EXPECT_EQ("[12 11 10]", Show(vector_));
    vector_->Move(0, vector_->Get(2));
    EXPECT_EQ("[10 12 11]", Show(vector_));
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { vector_->Move(1, vector_->Get(1)); }));
    EXPECT_EQ("[10 12 11]", Show(vector_)) << "to where it stands";
}

TEST_F(VectorMoveTest, AnOwnChildCannotMoveToTheSize) {
    EXPECT_EQ(0, ChangesOf(*tree_, [&] {
                  for (int i = 0; i < 3; ++i) {
                      EXPECT_EQ(kMoveOutOfRange, TextOf([&] { vector_->Move(3, vector_->Get(i)); })) << i;
                  }
              }));
    tree_->SetReadOnly();
    EXPECT_EQ(kMoveOutOfRange, TextOf([&] { vector_->Move(3, vector_->Get(0)); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->Move(2, vector_->Get(0)); }));
    EXPECT_EQ("[10 11 12]", Show(vector_));
}

TEST_F(VectorMoveTest, ANodeFromElsewhereMovesToAnyIndexUpToTheSize) {
    Map* const map = NewMap();
    Put(map, 0, 1);
    Put(map, 40, 2);
    Vector* const other = NewVector();
    Append(other, 3);
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { vector_->Move(3, map->Get(0)); }));
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { vector_->Move(0, map->Get(40)); }));
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { vector_->Move(2, other->Get(0)); }));
    Node* const taken = NewLeaf()->Detach();
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { vector_->Move(6, taken); }));
    EXPECT_EQ("[2 10 3 11 12 1 0]", Show(vector_));
    EXPECT_EQ("{}", Show(map));
    EXPECT_EQ("[]", Show(other));
    EXPECT_EQ(TemporalityPersistent, vector_->Get(0)->GetTemporality()) << "it keeps its own";
}

TEST_F(VectorMoveTest, TheIndexThenNullThenAncestorsThenTheTreeAreTested) {
    EXPECT_EQ(0, ChangesOf(*tree_, [&] {
                  EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->Move(4, nullptr); }));
                  EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->Move(-1, root_); }));
                  EXPECT_EQ(kNull, TextOf([&] { vector_->Move(3, nullptr); }));
                  EXPECT_EQ(kAncestor, TextOf([&] { vector_->Move(0, vector_); }));
                  EXPECT_EQ(kAncestor, TextOf([&] { vector_->Move(3, root_); }));
                  EXPECT_EQ(kOtherTree, TextOf([&] { vector_->Move(3, otherRoot_); }));
              }));
    tree_->SetReadOnly();
    EXPECT_EQ(kNull, TextOf([&] { vector_->Move(3, nullptr); }));
    EXPECT_EQ(kOtherTree, TextOf([&] { vector_->Move(0, otherRoot_); }));
    EXPECT_EQ("[10 11 12]", Show(vector_));
    EXPECT_EQ(otherRoot_, otherTree_->GetRoot());
}

TEST_F(VectorMoveTest, NestedVectorsMoveUpwardsAndNeverIntoThemselves) {
    Vector* const outer = NewVector();
    Vector* const inner = PutVector(outer, 0);
    Vector* const innermost = PutVector(inner, 0);
    Append(innermost, 5);
    EXPECT_EQ(kAncestor, TextOf([&] { innermost->Move(0, outer); }));
    EXPECT_EQ(kAncestor, TextOf([&] { innermost->Move(0, inner); }));
    outer->Move(0, innermost);
    EXPECT_EQ("[[5] []]", Show(outer));
    innermost->Move(1, inner);
    EXPECT_EQ("[[5 []]]", Show(outer));
}

TEST_F(VectorMoveTest, InsertNodePlacesAFreeNode) {
    Node* const first = NewLeaf()->Detach();
    Node* const last = NewLeaf(NodeTypeString)->Detach();
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { vector_->InsertNode(0, first); }));
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { vector_->InsertNode(4, last); }));
    EXPECT_EQ("[0 10 11 12 String]", Show(vector_));
    EXPECT_EQ(first, vector_->Get(0));
}

TEST_F(VectorMoveTest, InsertNodeTestsTheGuardThenTheIndexThenNullThenAncestors) {
    EXPECT_EQ(4, ChangesOf(*tree_, [&] {
                  EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->InsertNode(4, nullptr); }));
                  EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->InsertNode(-1, root_); }));
                  EXPECT_EQ(kNull, TextOf([&] { vector_->InsertNode(3, nullptr); }));
                  EXPECT_EQ(kAncestor, TextOf([&] { vector_->InsertNode(3, root_); }));
              }));
    tree_->SetReadOnly();
    EXPECT_EQ(kReadOnlyText, TextOf([&] { vector_->InsertNode(4, nullptr); }));
    EXPECT_EQ("[10 11 12]", Show(vector_));
}

// kept-on-purpose: insert-node-keeps-parent
TEST_F(VectorMoveTest, InsertNodeDoesNotTakeTheNodeOutOfAFormerParent) {
    Vector* const former = NewVector();
    Integer* const node = Append(former, 5);
    vector_->InsertNode(1, node);
    EXPECT_EQ("[10 5 11 12]", Show(vector_));
    EXPECT_EQ(vector_, node->GetParent());
    EXPECT_EQ(1, former->GetSize(TemporalityTemporary));
    EXPECT_EQ(node, former->Get(0));
    EXPECT_EQ("[5?]", Show(former));
}

TEST_F(VectorMoveTest, AddCopyAppendsACopyOfANodeOfAnyTree) {
    auto* const number = Put(otherRoot_, 40, 5);
    number->SetTemporality(TemporalityTransient);
    Node* copy = nullptr;
    EXPECT_EQ(2, ChangesOf(*tree_, [&] { copy = vector_->AddCopy(number); }));
    EXPECT_EQ("[10 11 12 5]", Show(vector_));
    EXPECT_NE(number, copy);
    EXPECT_EQ(TemporalityTransient, copy->GetTemporality());
    EXPECT_EQ(1, Stored(copy));
    EXPECT_EQ("4100{40:5}", Show(otherRoot_));
    vector_->AddCopy(vector_->Get(0));
    EXPECT_EQ("[10 11 12 5 10]", Show(vector_));
}

TEST_F(VectorMoveTest, CopiesAreDeepAndHaveTheTag) {
    Put(otherRoot_, 40, 5);
    Append(PutVector(otherRoot_, 2), 6);
    Vector* const vector = NewVector();
    Node* const added = vector->AddCopy(otherRoot_);
    EXPECT_EQ("[4100{2:[6] 40:5}]", Show(vector));
    EXPECT_EQ(10, static_cast<Map*>(added)->GetSlotCount());
    vector->InsertCopy(0, otherRoot_->Get(2));
    EXPECT_EQ("[[6] 4100{2:[6] 40:5}]", Show(vector));
}

TEST_F(VectorMoveTest, InsertCopyInsertsACopyBeforeTheIndex) {
    Node* const text = NewLeaf(NodeTypeString);
    EXPECT_EQ(2, ChangesOf(*tree_, [&] { vector_->InsertCopy(1, text); }));
    EXPECT_EQ("[10 String 11 12]", Show(vector_));
    EXPECT_EQ(vector_->Get(4), nullptr);
    Node* const last = vector_->InsertCopy(4, vector_->Get(0));
    EXPECT_EQ("[10 String 11 12 10]", Show(vector_));
    EXPECT_EQ(4, last->GetIndex());
    EXPECT_EQ(TemporalityDefault, last->GetTemporality());
    EXPECT_EQ(TemporalityPersistent, vector_->Get(1)->GetTemporality()) << "the source's own";
}

TEST_F(VectorMoveTest, CopiesOfAnotherKindAreRefusedByAddCopyAlone) {
    Node* const text = NewLeaf(NodeTypeString);
    EXPECT_EQ("Vector::Add::Different children type", TextOf([&] { vector_->AddCopy(text); }));
    EXPECT_EQ("[10 11 12]", Show(vector_));
}

TEST_F(VectorMoveTest, CopiesOfNullAndOfAncestorsAreRefusedBeforeTheIndexIsTested) {
    Vector* const inner = PutVector(root_, 0);
    EXPECT_EQ(0, ChangesOf(*tree_, [&] {
                  EXPECT_EQ(kNull, TextOf([&] { vector_->AddCopy(nullptr); }));
                  EXPECT_EQ(kAncestor, TextOf([&] { vector_->AddCopy(vector_); }));
                  EXPECT_EQ(kAncestor, TextOf([&] { vector_->AddCopy(root_); }));
                  EXPECT_EQ(kNull, TextOf([&] { vector_->InsertCopy(9, nullptr); }));
                  EXPECT_EQ(kAncestor, TextOf([&] { vector_->InsertCopy(9, vector_); }));
                  EXPECT_EQ(kAncestor, TextOf([&] { inner->InsertCopy(0, root_); }));
                  EXPECT_EQ(kOutOfRange, TextOf([&] { vector_->InsertCopy(9, inner); }));
              }));
    EXPECT_EQ("[10 11 12]", Show(vector_));
}

TEST_F(VectorMoveTest, ACopyOfADescendantIsNoPartOfItself) {
    Vector* const outer = NewVector();
    Append(PutVector(outer, 0), 5);
    outer->AddCopy(outer->Get(0));
    outer->InsertCopy(0, outer->Get(0));
    EXPECT_EQ("[[5] [5] [5]]", Show(outer));
}

TEST_F(VectorMoveTest, AssigningTakesThePointersAndCopiesNoChild) {
    Vector* const target = NewVector();
    *target = *vector_;
    EXPECT_EQ(3, target->GetSize(TemporalityTemporary));
    EXPECT_EQ(vector_->Get(0), target->Get(0));
    EXPECT_EQ(vector_->Get(2), target->Get(2));
    EXPECT_EQ(vector_, target->Get(0)->GetParent());
    EXPECT_EQ("[10 11 12]", Show(vector_));
}

TEST_F(VectorMoveTest, MoveAssigningLeavesTheSourceEmpty) {
    Vector* const target = NewVector();
    Node* const first = vector_->Get(0);
    *target = std::move(*vector_);
    EXPECT_EQ(3, target->GetSize(TemporalityTemporary));
    EXPECT_EQ(first, target->Get(0));
    EXPECT_EQ(0, vector_->GetSize(TemporalityTemporary));
    EXPECT_TRUE(vector_->IsEmpty());
}

}  // namespace
}  // namespace KivGenerics::Testing
