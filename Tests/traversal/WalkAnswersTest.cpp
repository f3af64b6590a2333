// What a visitor's answers do to a walk.

#include <stdexcept>

#include <KivGenerics/Exception.h>

#include "traversal/Recorder.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kBothOrders = IteratePreOrder | IteratePostOrder;
constexpr int kAll = IterateSelf | IterateChildren | IterateDeeper;

/// A walk with both orders that gives `answer` at `node`, for composites at the visit before or after the children.
std::string WalkWith(Node* start, const Node* node, int answer, bool atPostOrder = false, int flags = 0) {
    return Walk(start, flags | kBothOrders, 0, [=](Node* shown, bool postOrder) {
        return shown == node && postOrder == atPostOrder ? VisitCode(answer) : VisitContinue;
    });
}

/// The root {0:10 1:[20 [21] 22] 2:{0:30 20:31 21:32} 9:40}.
class WalkAnswersTest : public ContainerTest {
protected:
    WalkAnswersTest() {
        Put(root_, 0, 10);
        list_ = PutVector(root_, 1);
        Append(list_, 20);
        inner_ = PutVector(list_, 1);
        Append(inner_, 21);
        static_cast<Integer*>(list_->Insert(2, NodeTypeInteger))->Set(22);
        map_ = PutMap(root_, 2);
        Put(map_, 0, 30);
        Put(map_, 20, 31);
        Put(map_, 21, 32);
        Put(root_, 9, 40);
    }

    static constexpr const char* kWhole = "10 (1: 20 (1:1: 21 )1:1: 22 )1: (2: 30 31 32 )2: 40";
    static constexpr const char* kContent = "{0:10 1:[20 [21] 22] 2:{0:30 20:31 21:32} 9:40}";

    Vector* list_;
    Vector* inner_;
    Map* map_;
};

TEST_F(WalkAnswersTest, SkippingAtTheFirstVisitLeavesOutTheChildrenAndTheSecondVisit) {
    EXPECT_EQ("10 (1: (2: 30 31 32 )2: 40", WalkWith(root_, list_, VisitSkipChildren));
    EXPECT_EQ("10 (1: 20 (1:1: 22 )1: (2: 30 31 32 )2: 40", WalkWith(root_, inner_, VisitSkipChildren));
    EXPECT_EQ("10 (1: 20 (1:1: 21 )1:1: 22 )1: (2: 40", WalkWith(root_, map_, VisitSkipChildren));
    EXPECT_EQ("(", WalkWith(root_, root_, VisitSkipChildren, false, kAll));
    EXPECT_EQ("(1:", WalkWith(list_, list_, VisitSkipChildren, false, kAll));
    EXPECT_EQ(kContent, Show(root_));
}

TEST_F(WalkAnswersTest, SkippingAtTheSecondVisitOrAtALeafIsGoingOn) {
    EXPECT_EQ(kWhole, WalkWith(root_, list_, VisitSkipChildren, true));
    EXPECT_EQ(kWhole, WalkWith(root_, map_, VisitSkipChildren, true));
    for (Node* const leaf : {root_->Get(0), root_->Get(9), list_->Get(0), map_->Get(0), map_->Get(20)}) {
        EXPECT_EQ(kWhole, WalkWith(root_, leaf, VisitSkipChildren));
    }
}

TEST_F(WalkAnswersTest, StoppingEndsTheWholeWalkAtOnce) {
    EXPECT_EQ("10", WalkWith(root_, root_->Get(0), VisitStop));
    EXPECT_EQ("10 (1:", WalkWith(root_, list_, VisitStop));
    EXPECT_EQ("10 (1: 20", WalkWith(root_, list_->Get(0), VisitStop));
    EXPECT_EQ("10 (1: 20 (1:1: 21", WalkWith(root_, inner_->Get(0), VisitStop));
    EXPECT_EQ("10 (1: 20 (1:1: 21 )1:1:", WalkWith(root_, inner_, VisitStop, true));
    EXPECT_EQ("10 (1: 20 (1:1: 21 )1:1: 22 )1:", WalkWith(root_, list_, VisitStop, true));
    EXPECT_EQ("10 (1: 20 (1:1: 21 )1:1: 22 )1: (2:", WalkWith(root_, map_, VisitStop));
    EXPECT_EQ("10 (1: 20 (1:1: 21 )1:1: 22 )1: (2: 30", WalkWith(root_, map_->Get(0), VisitStop));
    EXPECT_EQ("10 (1: 20 (1:1: 21 )1:1: 22 )1: (2: 30 31", WalkWith(root_, map_->Get(20), VisitStop));
    EXPECT_EQ("10 (1: 20 (1:1: 21 )1:1: 22 )1: (2: 30 31 32 )2:", WalkWith(root_, map_, VisitStop, true));
    EXPECT_EQ("(", WalkWith(root_, root_, VisitStop, false, kAll));
    EXPECT_EQ("( 10", WalkWith(root_, root_->Get(0), VisitStop, false, kAll)) << "the start is not shown again either";
    EXPECT_EQ(kContent, Show(root_));
}

TEST_F(WalkAnswersTest, AnyOtherAnswerAtTheFirstVisitEndsThatCompositeAlone) {
    for (const int answer : {0, 5, 100, -1}) {
        EXPECT_EQ("10 (1: (2: 30 31 32 )2: 40", WalkWith(root_, list_, answer)) << answer;
        EXPECT_EQ("10 (1: 20 (1:1: 21 )1:1: 22 )1: (2: 40", WalkWith(root_, map_, answer)) << answer;
        EXPECT_EQ("(", WalkWith(root_, root_, answer, false, kAll)) << answer;
        EXPECT_EQ(kWhole, WalkWith(root_, list_, answer, true)) << answer;
        EXPECT_EQ(kWhole, WalkWith(root_, map_, answer, true)) << answer;
        EXPECT_EQ(kWhole, WalkWith(root_, list_->Get(0), answer)) << answer;
        EXPECT_EQ(kWhole, WalkWith(root_, map_->Get(20), answer)) << answer;
    }
    EXPECT_EQ(kContent, Show(root_));
}

TEST_F(WalkAnswersTest, RemovingALeafTakesItOutAndGoesOnWithTheNextOne) {
    EXPECT_EQ(2, ChangesOf(*tree_, [&] { EXPECT_EQ(kWhole, WalkWith(root_, root_->Get(0), VisitRemove)); }));
    EXPECT_EQ("{1:[20 [21] 22] 2:{0:30 20:31 21:32} 9:40}", Show(root_));
    EXPECT_EQ(3, ChangesOf(*tree_, [&] {
                  EXPECT_EQ("(1: 20 (1:1: 21 )1:1: 22 )1: (2: 30 31 32 )2: 40",
                            WalkWith(root_, map_->Get(20), VisitRemove));
              }));
    EXPECT_EQ("{1:[20 [21] 22] 2:{0:30 21:32} 9:40}", Show(root_));
    EXPECT_EQ(2, ChangesOf(*tree_, [&] {
                  EXPECT_EQ("(1: 20 (1:0: 21 )1:0: 22 )1: (2: 30 32 )2: 40",
                            WalkWith(root_, list_->Get(0), VisitRemove));
              }));
    EXPECT_EQ("{1:[[21] 22] 2:{0:30 21:32} 9:40}", Show(root_));
}

TEST_F(WalkAnswersTest, RemovingTheSecondOfThreeElementsStillShowsTheThird) {
    Vector* const list = NewVector();
    for (const int value : {1, 2, 3}) {
        Append(list, value);
    }
    EXPECT_EQ("1 2 3", WalkWith(list, list->Get(1), VisitRemove));
    EXPECT_EQ("[1 3]", Show(list));
}

TEST_F(WalkAnswersTest, RemovingACompositeAtTheFirstVisitTakesItsSubTreeUnseen) {
    EXPECT_EQ(1 + 2, ChangesOf(*tree_, [&] {
                  EXPECT_EQ("10 (1: 20 (1:1: 22 )1: (2: 30 31 32 )2: 40", WalkWith(root_, inner_, VisitRemove));
              }));
    EXPECT_EQ("{0:10 1:[20 22] 2:{0:30 20:31 21:32} 9:40}", Show(root_));
    EXPECT_TRUE(inner_->IsEmpty());
    EXPECT_EQ("10 (1: 20 22 )1: (2: 40", WalkWith(root_, map_, VisitRemove));
    EXPECT_EQ("{0:10 1:[20 22] 9:40}", Show(root_));
}

TEST_F(WalkAnswersTest, RemovingACompositeAtTheSecondVisitShowsItsSubTreeBefore) {
    EXPECT_EQ(kWhole, WalkWith(root_, inner_, VisitRemove, true));
    EXPECT_EQ("{0:10 1:[20 22] 2:{0:30 20:31 21:32} 9:40}", Show(root_));
    EXPECT_EQ(1 + 4, ChangesOf(*tree_, [&] {
                  EXPECT_EQ("10 (1: 20 22 )1: (2: 30 31 32 )2: 40", WalkWith(root_, map_, VisitRemove, true));
              }));
    EXPECT_EQ("{0:10 1:[20 22] 9:40}", Show(root_));
}

TEST_F(WalkAnswersTest, RemovingACompositeBeyondTheSlotsShowsNothingAgain) {
    Map* const map = NewMap();
    Put(map, 20, 1);
    Put(map, 21, 2);
    Vector* const first = PutVector(map, 22);
    Append(first, 3);
    Vector* const second = PutVector(map, 23);
    Append(second, 4);
    Put(map, 24, 5);
    map->Detach();
    EXPECT_EQ("1 2 (22: 3 )22: (23: 4 )23: 5", WalkWith(map, second, VisitRemove, true));
    EXPECT_EQ("{20:1 21:2 22:[3] 24:5}", Show(map));
    EXPECT_EQ("1 2 (22: 5", WalkWith(map, first, VisitRemove));
    EXPECT_EQ("{20:1 21:2 24:5}", Show(map));
}

TEST_F(WalkAnswersTest, RemovingEverythingLeavesTheStartEmpty) {
    EXPECT_EQ("10 (1: (2: 40", Walk(root_, 0, 0, [](Node*, bool) { return VisitRemove; }));
    EXPECT_EQ("{}", Show(root_));
    EXPECT_EQ(root_, tree_->GetRoot());
}

TEST_F(WalkAnswersTest, RemovingEveryLeafLeavesTheComposites) {
    const auto answer = [](Node* node, bool) {
        return node_cast<Composite>(node) == nullptr ? VisitRemove : VisitContinue;
    };
    EXPECT_EQ("10 (1: 20 (1:0: 21 22 (2: 30 31 32 40", Walk(root_, 0, 0, answer));
    EXPECT_EQ("{1:[[]] 2:{}}", Show(root_));
}

TEST_F(WalkAnswersTest, RemovingBottomUpEmptiesLevelByLevel) {
    EXPECT_EQ("10 20 21 )1:0: 22 )1: 30 31 32 )2: 40",
              Walk(root_, IteratePostOrder, 0, [](Node*, bool) { return VisitRemove; }));
    EXPECT_EQ("{}", Show(root_));
}

TEST_F(WalkAnswersTest, RemovingTheStartNodeRemovesItFromItsParent) {
    EXPECT_EQ("(1:", WalkWith(list_, list_, VisitRemove, false, IterateSelf));
    EXPECT_EQ("{0:10 2:{0:30 20:31 21:32} 9:40}", Show(root_));
    EXPECT_EQ(3, ChangesOf(*tree_, [&] {
                  EXPECT_EQ("40", WalkWith(root_->Get(9), root_->Get(9), VisitRemove, false, IterateSelf));
              }));
    EXPECT_EQ("{0:10 2:{0:30 20:31 21:32}}", Show(root_));
    EXPECT_EQ("(2: 30 31 32 )2:", WalkWith(map_, map_, VisitRemove, true, kAll));
    EXPECT_EQ("{0:10}", Show(root_));
}

TEST_F(WalkAnswersTest, RemovingTheRootEmptiesTheTree) {
    EXPECT_EQ(2 + 12, ChangesOf(*tree_, [&] { EXPECT_EQ("(", WalkWith(root_, root_, VisitRemove, false, kAll)); }));
    EXPECT_TRUE(tree_->IsEmpty());
    EXPECT_EQ(nullptr, tree_->GetRoot());
}

TEST_F(WalkAnswersTest, RemovingADetachedStartNodeReleasesItAndLeavesTheRootAlone) {
    Node* const map = root_->Detach(2);
    EXPECT_EQ("(", WalkWith(map, map, VisitRemove, false, IterateSelf));
    EXPECT_EQ(root_, tree_->GetRoot());
    EXPECT_EQ("{0:10 1:[20 [21] 22] 9:40}", Show(root_));
    EXPECT_EQ("{}", Show(map));
    EXPECT_EQ(map, NewMap()) << "handed out again";
}

TEST_F(WalkAnswersTest, ANodeThatIsNotShownIsNotRemoved) {
    const auto remove = [](Node*, bool) { return VisitRemove; };
    EXPECT_EQ("", Walk(root_, 0x8, 0, remove));
    EXPECT_EQ(kContent, Show(root_));
    EXPECT_EQ("10 40", Walk(root_, IterateChildren | 0x1, 0, remove));
    EXPECT_EQ("{1:[20 [21] 22] 2:{0:30 20:31 21:32}}", Show(root_));
}

TEST_F(WalkAnswersTest, RemovingInAReadOnlyTreeThrowsAndChangesNothing) {
    tree_->SetReadOnly();
    for (Node* const node : {root_->Get(0), static_cast<Node*>(list_), list_->Get(0), map_->Get(20), root_->Get(9)}) {
        Recorder recorder([=](Node* shown, bool) { return shown == node ? VisitRemove : VisitContinue; });
        EXPECT_EQ(kReadOnlyText, TextOf([&] { root_->Iterate(&recorder, SemanticTagNone, 0); }));
    }
    Recorder recorder([](Node*, bool) { return VisitRemove; });
    EXPECT_EQ(kReadOnlyText, TextOf([&] { root_->Iterate(&recorder, SemanticTagNone, IterateSelf); }));
    EXPECT_EQ(kContent, Show(root_));
}

TEST_F(WalkAnswersTest, WhatAVisitorThrowsEndsTheWalkAndPassesThrough) {
    std::string text;
    Recorder recorder([&](Node* node, bool) -> VisitCode {
        if (node == inner_->Get(0)) {
            throw std::runtime_error("from the visitor");
        }
        return VisitContinue;
    });
    try {
        root_->Iterate(&recorder, SemanticTagNone, kBothOrders);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ("from the visitor", error.what());
    }
    EXPECT_EQ("10 (1: 20 (1:1: 21", recorder.text);
    EXPECT_EQ(kContent, Show(root_));
}

class MapRemovalTest : public ContainerTest, public ::testing::WithParamInterface<SlotCase> {};

INSTANTIATE_TEST_SUITE_P(Slots, MapRemovalTest, ::testing::ValuesIn(kEverySlotCount), NameOfSlotCase);

TEST_P(MapRemovalTest, EveryChildThatIsToBeRemovedGoesAndEveryOtherStays) {
    Map* const map = NewMap(GetParam());
    for (const int index : {0, 1, 2, 7, 8, 9, 15, 16, 17, 40}) {
        Put(map, index, index);
    }
    const auto odd = [](Node* node, bool) { return node->GetIndex() % 2 != 0 ? VisitRemove : VisitContinue; };
    EXPECT_EQ("0 1 2 7 8 9 15 16 17 40", Walk(map, 0, 0, odd));
    EXPECT_EQ("{0:0 2:2 8:8 16:16 40:40}", Show(map));
    EXPECT_EQ("0 2 8 16 40", Walk(map, 0, 0, [](Node*, bool) { return VisitRemove; }));
    EXPECT_EQ("{}", Show(map));
    EXPECT_TRUE(map->HasOverflow());
}

}  // namespace
}  // namespace KivGenerics::Testing
