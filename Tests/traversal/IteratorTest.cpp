// The breadth-first iterator.

#include <string>

#include <KivGenerics/Iterator.h>

#include "traversal/IteratorImpl.h"
#include "traversal/Recorder.h"

namespace KivGenerics::Testing {
namespace {

using IteratorPtr = KivBase::ReturnPtr<Iterator, KivBase::DeleteC<Iterator>>;

/// An Integer as its value, another leaf as its kind, a composite as its key after "(".
std::string Name(Node* node) {
    if (node_cast<Composite>(node) == nullptr) {
        return Show(node);
    }
    KivBase::WString key;
    node->GetKey(key);
    return "(" + KivBase::ToUtf8(key);
}

/// Everything that the iterator still gives; after each node that `removes` names, it removes it.
std::string Rest(Iterator& iterator, const std::string& removes = "none") {
    std::string text;
    while (iterator.HasNext()) {
        const std::string name = Name(iterator.Next());
        text += (text.empty() ? "" : " ") + name;
        if (name == removes || removes == "all") {
            iterator.RemoveCurrent();
        }
    }
    return text;
}

std::string Nodes(Node* start, const std::string& removes = "none") {
    const IteratorPtr iterator = start->GetIterator();
    return Rest(*iterator, removes);
}

/// The root {0:10 1:[20 21] 2:4100{0:30 20:31} 8:{5:[50] 40:51} 9:40}.
class IteratorTest : public ContainerTest {
protected:
    IteratorTest() {
        Put(root_, 0, 10);
        list_ = PutVector(root_, 1);
        Append(list_, 20);
        Append(list_, 21);
        map_ = PutMap(root_, 2, 4100);
        Put(map_, 0, 30);
        Put(map_, 20, 31);
        far_ = PutMap(root_, 8);
        Append(PutVector(far_, 5), 50);
        Put(far_, 40, 51);
        Put(root_, 9, 40);
    }

    Vector* list_;
    Map* map_;
    Map* far_;
};

TEST_F(IteratorTest, TheStartComesFirstAndThenLevelAfterLevelInIndexOrder) {
    EXPECT_EQ("( 10 (1: (2: (8: 40 20 21 30 31 (8:5: 51 50", Nodes(root_));
    EXPECT_EQ("(8: (8:5: 51 50", Nodes(far_));
    EXPECT_EQ("(1: 20 21", Nodes(list_));
}

TEST_F(IteratorTest, AfterTheLastNodeThereIsNullAgainAndAgain) {
    const IteratorPtr iterator = list_->GetIterator();
    EXPECT_TRUE(iterator->HasNext());
    EXPECT_EQ(list_, iterator->Next());
    EXPECT_EQ(list_->Get(0), iterator->Next());
    EXPECT_TRUE(iterator->HasNext());
    EXPECT_EQ(list_->Get(1), iterator->Next());
    EXPECT_FALSE(iterator->HasNext());
    EXPECT_EQ(nullptr, iterator->Next());
    EXPECT_EQ(nullptr, iterator->Next());
    EXPECT_FALSE(iterator->HasNext());
}

TEST_F(IteratorTest, ALeafAndAnEmptyCompositeAreAlone) {
    EXPECT_EQ("10", Nodes(root_->Get(0)));
    list_->Clear();
    EXPECT_EQ("(1:", Nodes(list_));
}

TEST_F(IteratorTest, NothingIsFiltered) {
    root_->Get(0)->SetTemporality(TemporalityReserved);
    list_->SetTemporality(EnumOrvGenericsTemporality(5));
    map_->SetTemporality(TemporalityTemporary);
    tree_->UpdateDerivedTemporality();
    EXPECT_EQ("( 10 (1: (2: (8: 40 20 21 30 31 (8:5: 51 50", Nodes(root_));
}

TEST_F(IteratorTest, WithoutAStartThereIsNothing) {
    IteratorImpl iterator(nullptr, NodeAccess::GetTree(*root_));
    EXPECT_FALSE(iterator.HasNext());
    EXPECT_EQ(nullptr, iterator.Next());
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { iterator.RemoveCurrent(); }));
}

TEST_F(IteratorTest, AReadOnlyTreeIsIterated) {
    tree_->SetReadOnly();
    EXPECT_EQ("( 10 (1: (2: (8: 40 20 21 30 31 (8:5: 51 50", Nodes(root_));
}

TEST_F(IteratorTest, DroppingTheIteratorTouchesNoNode) {
    {
        const IteratorPtr iterator = root_->GetIterator();
        iterator->Next();
        iterator->Next();
    }
    EXPECT_EQ("{0:10 1:[20 21] 2:4100{0:30 20:31} 8:{5:[50] 40:51} 9:40}", Show(root_));
}

TEST_F(IteratorTest, ARemovedLeafGoesWhereverItStands) {
    EXPECT_EQ(3,
              ChangesOf(*tree_, [&] { EXPECT_EQ("( 10 (1: (2: (8: 40 20 21 30 31 (8:5: 51 50", Nodes(root_, "10")); }));
    EXPECT_EQ("{1:[20 21] 2:4100{0:30 20:31} 8:{5:[50] 40:51} 9:40}", Show(root_));
    EXPECT_EQ("( (1: (2: (8: 40 20 21 30 31 (8:5: 51 50", Nodes(root_, "40"));
    EXPECT_EQ("( (1: (2: (8: 20 21 30 31 (8:5: 51 50", Nodes(root_, "20"));
    EXPECT_EQ("( (1: (2: (8: 21 30 31 (8:5: 51 50", Nodes(root_, "31"));
    EXPECT_EQ("( (1: (2: (8: 21 30 (8:5: 51 50", Nodes(root_, "50"));
    EXPECT_EQ("{1:[21] 2:4100{0:30} 8:{5:[] 40:51}}", Show(root_));
}

TEST_F(IteratorTest, TheChildrenOfARemovedCompositeNeverAppear) {
    EXPECT_EQ(2 + 3,
              ChangesOf(*tree_, [&] { EXPECT_EQ("( 10 (1: (2: (8: 40 30 31 (8:5: 51 50", Nodes(root_, "(1:")); }));
    EXPECT_EQ("{0:10 2:4100{0:30 20:31} 8:{5:[50] 40:51} 9:40}", Show(root_));
    EXPECT_EQ("( 10 (2: (8: 40 30 31", Nodes(root_, "(8:"));
    EXPECT_EQ("{0:10 2:4100{0:30 20:31} 9:40}", Show(root_));
    EXPECT_EQ("( 10 (2: 40", Nodes(root_, "(2:"));
    EXPECT_EQ("{0:10 9:40}", Show(root_));
}

TEST_F(IteratorTest, ARemovedEmptyCompositeTakesNothingElseAlong) {
    list_->Clear();
    EXPECT_EQ("( 10 (1: (2: (8: 40 30 31 (8:5: 51 50", Nodes(root_, "(1:"));
    EXPECT_EQ("{0:10 2:4100{0:30 20:31} 8:{5:[50] 40:51} 9:40}", Show(root_));
}

TEST_F(IteratorTest, RemovingTheRootEmptiesTheTreeAndEndsTheIteration) {
    const IteratorPtr iterator = root_->GetIterator();
    EXPECT_EQ(root_, iterator->Next());
    EXPECT_EQ(2 + 13, ChangesOf(*tree_, [&] { iterator->RemoveCurrent(); }));
    EXPECT_FALSE(iterator->HasNext());
    EXPECT_EQ(nullptr, iterator->Next());
    EXPECT_TRUE(tree_->IsEmpty());
}

TEST_F(IteratorTest, RemovingADetachedStartLeavesTheRootAlone) {
    Node* const map = root_->Detach(8);
    const IteratorPtr iterator = map->GetIterator();
    iterator->Next();
    EXPECT_EQ(2 + 4, ChangesOf(*tree_, [&] { iterator->RemoveCurrent(); }));
    EXPECT_FALSE(iterator->HasNext());
    EXPECT_EQ(root_, tree_->GetRoot());
    EXPECT_EQ("{0:10 1:[20 21] 2:4100{0:30 20:31} 9:40}", Show(root_));
}

TEST_F(IteratorTest, RemovingEveryNodeLeavesNothingToCome) {
    EXPECT_EQ("(", Nodes(root_, "all"));
}

TEST_F(IteratorTest, RemovingEveryElementOfAVectorEmptiesIt) {
    const IteratorPtr iterator = list_->GetIterator();
    iterator->Next();
    EXPECT_EQ("20 21", Rest(*iterator, "all"));
    EXPECT_EQ("[]", Show(list_));
}

TEST_F(IteratorTest, RemovingBeforeTheFirstNodeOrTwiceDoesNothing) {
    const IteratorPtr iterator = root_->GetIterator();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { iterator->RemoveCurrent(); }));
    iterator->Next();
    iterator->Next();
    iterator->RemoveCurrent();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { iterator->RemoveCurrent(); }));
    EXPECT_EQ("(1: (2: (8: 40 20 21 30 31 (8:5: 51 50", Rest(*iterator));
    EXPECT_EQ("{1:[20 21] 2:4100{0:30 20:31} 8:{5:[50] 40:51} 9:40}", Show(root_));
}

TEST_F(IteratorTest, TheLastNodeCanBeRemovedAfterTheEnd) {
    const IteratorPtr iterator = list_->GetIterator();
    EXPECT_EQ("(1: 20 21", Rest(*iterator));
    EXPECT_EQ(nullptr, iterator->Next());
    iterator->RemoveCurrent();
    EXPECT_EQ("[20]", Show(list_));
}

TEST_F(IteratorTest, ARefusedRemovalLeavesTheIterationWhereItWas) {
    tree_->SetReadOnly();
    const IteratorPtr iterator = root_->GetIterator();
    iterator->Next();
    iterator->Next();
    iterator->Next();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { EXPECT_EQ(kReadOnlyText, TextOf([&] { iterator->RemoveCurrent(); })); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { iterator->RemoveCurrent(); }));
    EXPECT_EQ("(2: (8: 40 20 21 30 31 (8:5: 51 50", Rest(*iterator));
}

TEST_F(IteratorTest, AWideLevelIsGivenInOrderAndEverySecondNodeCanGo) {
    Vector* const wide = NewVector();
    for (int i = 0; i < 1000; ++i) {
        Append(PutVector(wide, i), i);
    }
    const IteratorPtr iterator = wide->GetIterator();
    EXPECT_EQ(wide, iterator->Next());
    for (int i = 0; i < 1000; ++i) {
        auto* const inner = static_cast<Vector*>(iterator->Next());
        ASSERT_EQ(std::to_string(i), Show(inner->Get(0)));
        if (i % 2 == 0) {
            iterator->RemoveCurrent();
        }
    }
    for (int i = 1; i < 1000; i += 2) {
        ASSERT_EQ(std::to_string(i), Show(iterator->Next()));
    }
    EXPECT_EQ(nullptr, iterator->Next());
    EXPECT_EQ(500, wide->GetSize(TemporalityTemporary));
}

class MapIteratorTest : public ContainerTest, public ::testing::WithParamInterface<SlotCase> {};

INSTANTIATE_TEST_SUITE_P(Slots, MapIteratorTest, ::testing::ValuesIn(kEverySlotCount), NameOfSlotCase);

TEST_P(MapIteratorTest, ChildrenInSlotsAndBeyondAreGivenAndRemoved) {
    Map* const map = NewMap(GetParam());
    for (const int index : {40, 0, 16, 8, 3, 15, 7}) {
        Put(map, index, index);
    }
    const IteratorPtr iterator = map->GetIterator();
    EXPECT_EQ(map, iterator->Next());
    EXPECT_EQ("0 3 7 8 15 16 40", Rest(*iterator));
    const IteratorPtr again = map->GetIterator();
    again->Next();
    EXPECT_EQ("0 3 7 8 15 16 40", Rest(*again, "all"));
    EXPECT_EQ("{}", Show(map));
}

}  // namespace
}  // namespace KivGenerics::Testing
