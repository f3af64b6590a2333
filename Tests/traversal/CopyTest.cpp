// How copying goes from a composite into its children.

#include "containers/TestNodes.h"
#include "support/Kinds.h"
#include "support/TestTree.h"

namespace KivGenerics::Testing {
namespace {

constexpr const char* kNullCopy = "Can't copy NULL node!";
constexpr const char* kOtherType = "Can't copy nodes of different type!";
constexpr const char* kAncestor = "Can't perform this operation on an ancestor";
constexpr const char* kDifferent = "Vector::Add::Different children type";

class CopyTest : public ContainerTest {
protected:
    /// {0:1 2:[2 3] 8:4107{15:4 16:5} 40:6}, tagged 4100.
    static void Fill(Map* map) {
        Put(map, 0, 1);
        Vector* const list = PutVector(map, 2);
        Append(list, 2);
        Append(list, 3);
        Map* const inner = PutMap(map, 8, 4107);
        Put(inner, 15, 4);
        Put(inner, 16, 5);
        Put(map, 40, 6);
        map->SetSemanticTag(SemanticTag(4100));
    }
    static constexpr const char* kFilled = "4100{0:1 2:[2 3] 8:4107{15:4 16:5} 40:6}";

    KivBase::ReturnPtrI<Tree> otherTree_ = KivTests::NewTree();
    Map* otherRoot_ = static_cast<Map*>(otherTree_->NewRoot(NodeTypeMap));
};

class MapCopyTest : public CopyTest, public ::testing::WithParamInterface<SlotCase> {
protected:
    Map* map_ = NewMap(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Slots, MapCopyTest, ::testing::ValuesIn(kEverySlotCount), NameOfSlotCase);

TEST_P(MapCopyTest, AMapTakesTagAndChildrenOverAndKeepsItsOwnSlots) {
    Fill(otherRoot_);
    Put(map_, 1, 7);
    Put(map_, 41, 8);
    map_->Populate(otherRoot_);
    EXPECT_EQ(kFilled, Show(map_));
    EXPECT_EQ(GetParam().slots, map_->GetSlotCount());
    EXPECT_TRUE(map_->HasOverflow());
    EXPECT_EQ(16, static_cast<Map*>(map_->Get(8))->GetSlotCount());
    EXPECT_EQ(kFilled, Show(otherRoot_));
}

TEST_P(MapCopyTest, AnOverflowStoreIsMadeOnlyForChildrenBeyondTheSlots) {
    Put(otherRoot_, 0, 1);
    Put(otherRoot_, 7, 2);
    map_->Populate(otherRoot_);
    EXPECT_EQ("{0:1 7:2}", Show(map_));
    EXPECT_EQ(GetParam().slots < 8, map_->HasOverflow());
}

TEST_P(MapCopyTest, ChildrenFromSlotsWithGapsComeBeyondTheSlotsOfAMapWithFewer) {
    Map* const source = PutMap(otherRoot_, 0, 4107);
    for (const int index : {1, 2, 5, 6, 7, 10, 12, 13, 15, 16, 17, 30}) {
        Put(source, index, 100 + index);
    }
    static_cast<Integer*>(source->Get(13))->SetTemporality(TemporalityTransient);
    source->Get(16)->SetTemporality(TemporalityReserved);
    map_->Populate(source);
    EXPECT_EQ("4107{1:101 2:102 5:105 6:106 7:107 10:110 12:112 13:113 15:115 17:117 30:130}", Show(map_));
    EXPECT_EQ(TemporalityPersistent, map_->Get(12)->GetTemporality());
    EXPECT_EQ(TemporalityTransient, map_->Get(13)->GetTemporality());
    EXPECT_EQ(TemporalityPersistent, map_->Get(15)->GetTemporality());
    tree_->UpdateDerivedTemporality();
    EXPECT_FALSE(map_->Get(13)->ShouldVisit(TemporalityPersistent)) << "the tree knows of its temporality";
}

TEST_P(MapCopyTest, CopyingFromItselfLeavesContentAndTag) {
    Fill(map_);
    map_->SetTemporality(TemporalityTransient);
    map_->CalculateDerivedTemporality();
    Node* const child = map_->Get(0);
    EXPECT_EQ(1, ChangesOf(*tree_, [&] { map_->Populate(map_); }));
    EXPECT_EQ(kFilled, Show(map_));
    EXPECT_EQ(child, map_->Get(0));
    EXPECT_EQ(TemporalityTransient, map_->GetTemporality());
    EXPECT_EQ(1, Stored(map_));
}

TEST_F(CopyTest, EveryCopiedNodeHasItsSourcesOwnTemporalityAndNoDerivedOne) {
    Fill(otherRoot_);
    otherRoot_->SetTemporality(TemporalityTemporary);
    otherRoot_->Get(0)->SetTemporality(TemporalityTransient);
    auto* const sourceList = static_cast<Vector*>(otherRoot_->Get(2));
    sourceList->Get(1)->SetTemporality(TemporalityTemporary);
    otherTree_->UpdateDerivedTemporality();
    Map* const map = NewMap();
    map->Populate(otherRoot_);
    auto* const list = static_cast<Vector*>(map->Get(2));
    EXPECT_EQ(TemporalityTemporary, map->GetTemporality());
    EXPECT_EQ(TemporalityTransient, map->Get(0)->GetTemporality());
    EXPECT_EQ(TemporalityPersistent, list->GetTemporality());
    EXPECT_EQ(TemporalityDefault, list->Get(0)->GetTemporality());
    EXPECT_EQ(TemporalityTemporary, list->Get(1)->GetTemporality());
    EXPECT_EQ(TemporalityPersistent, map->Get(40)->GetTemporality());
    for (const Node* const node : {static_cast<Node*>(map), map->Get(0), map->Get(2), list->Get(0), list->Get(1)}) {
        EXPECT_EQ(1, Stored(node));
    }
}

TEST_F(CopyTest, TheChangesOfACopyAreCounted) {
    Fill(otherRoot_);
    Map* const map = NewMap();
    // Two for the map itself; three for each leaf in a map, two for each element; the list 2 + 2 of its own, the inner
    // map 3 + 2.
    EXPECT_EQ(2 + 3 + (4 + 2 * 2) + (5 + 2 * 3) + 3, ChangesOf(*tree_, [&] { map->Populate(otherRoot_); }));
    EXPECT_EQ(27 + 8, ChangesOf(*tree_, [&] { map->Populate(otherRoot_); })) << "eight nodes are removed first";
    Vector* const list = NewVector();
    EXPECT_EQ(6, ChangesOf(*tree_, [&] { list->Populate(otherRoot_->Get(2)); }));
    EXPECT_EQ(7, ChangesOf(*tree_, [&] { list->Populate(static_cast<Vector*>(otherRoot_->Get(2))); }));
    EXPECT_EQ(0, ChangesOf(*otherTree_, [&] { map->Populate(otherRoot_); }));
}

TEST_F(CopyTest, ASourceMayBeReadOnlyATargetMayNot) {
    Fill(otherRoot_);
    otherTree_->SetReadOnly();
    Map* const map = NewMap();
    Vector* const list = NewVector();
    map->Populate(otherRoot_);
    list->Populate(otherRoot_->Get(2));
    EXPECT_EQ(kFilled, Show(map));
    EXPECT_EQ("[2 3]", Show(list));
    tree_->SetReadOnly();
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map->Populate(otherRoot_); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { list->Populate(otherRoot_->Get(2)); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { list->Populate(static_cast<Vector*>(otherRoot_->Get(2))); }));
    EXPECT_EQ(kReadOnlyText, TextOf([&] { map->ReplaceWithCopy(0, otherRoot_); }));
    EXPECT_EQ(kFilled, Show(map));
    EXPECT_EQ("[2 3]", Show(list));
}

TEST_F(CopyTest, NullAndOtherKindsLeaveTheContentAsItIs) {
    Map* const map = NewMap();
    Put(map, 0, 1);
    Vector* const list = NewVector();
    Append(list, 2);
    EXPECT_EQ(kNullCopy, TextOf([&] { map->Populate(nullptr); }));
    EXPECT_EQ(kNullCopy, TextOf([&] { list->Populate(static_cast<Node*>(nullptr)); }));
    EXPECT_EQ(kOtherType, TextOf([&] { map->Populate(list); }));
    EXPECT_EQ(kOtherType, TextOf([&] { list->Populate(map); }));
    EXPECT_EQ("{0:1}", Show(map));
    EXPECT_EQ("[2]", Show(list));
}

TEST_F(CopyTest, AVectorAskedToCopyNoVectorRefusesBeforeItClears) {
    Vector* const list = NewVector();
    Append(list, 2);
    EXPECT_EQ(0, ChangesOf(*tree_, [&] {
                  EXPECT_EQ(kNullCopy, TextOf([&] { list->Populate(static_cast<Vector*>(nullptr)); }));
              }));
    tree_->SetReadOnly();
    EXPECT_EQ(kNullCopy, TextOf([&] { list->Populate(static_cast<Vector*>(nullptr)); }));
    EXPECT_EQ("[2]", Show(list));
}

TEST_F(CopyTest, AVectorTakesCopiesInOrderAndItsElementsTags) {
    Vector* const source = NewVector();
    Put(PutMap(source, 0, 4107), 16, 1);
    Put(PutMap(source, 1, 102), 0, 2);
    Vector* const list = NewVector();
    Append(list, 9);
    list->Populate(source);
    EXPECT_EQ("[4107{16:1} 102{0:2}]", Show(list));
    EXPECT_EQ(16, static_cast<Map*>(list->Get(0))->GetSlotCount());
    EXPECT_EQ(1, static_cast<Map*>(list->Get(1))->GetSlotCount());
    EXPECT_EQ("[4107{16:1} 102{0:2}]", Show(source));
}

TEST_F(CopyTest, PopulatingFromAVectorAloneLeavesTheTemporality) {
    Vector* const source = NewVector();
    Append(source, 1);
    source->SetTemporality(TemporalityTransient);
    Vector* const list = NewVector();
    list->Populate(source);
    EXPECT_EQ(TemporalityPersistent, list->GetTemporality());
    list->Populate(static_cast<Node*>(source));
    EXPECT_EQ(TemporalityTransient, list->GetTemporality());
    EXPECT_EQ("[1]", Show(list));
}

TEST_F(CopyTest, AVectorOfMixedKindsIsCopiedUpToTheFirstOfAnotherKind) {
    Vector* const source = NewVector();
    Append(source, 1);
    Append(source, 2);
    source->Insert(2, NodeTypeString);
    Append(source, 3);
    Vector* const list = NewVector();
    Append(list, 9);
    EXPECT_EQ(kDifferent, TextOf([&] { list->Populate(static_cast<Node*>(source)); }));
    EXPECT_EQ("[1 2]", Show(list)) << "what was copied stays";
    Map* const map = NewMap();
    Put(otherRoot_, 0, 5);
    static_cast<Vector*>(otherRoot_->ReplaceWithCopy(1, list))->Insert(2, NodeTypeString);
    Put(otherRoot_, 2, 6);
    EXPECT_EQ(kDifferent, TextOf([&] { map->Populate(otherRoot_); }));
    EXPECT_EQ("{0:5 1:[1 2]}", Show(map));
}

TEST_F(CopyTest, AVectorCopiedFromItselfKeepsItsElements) {
    Vector* const list = NewVector();
    Append(list, 1);
    list->SetTemporality(TemporalityTransient);
    list->Populate(static_cast<Node*>(list));
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { list->Populate(list); }));
    EXPECT_EQ("[1]", Show(list));
    EXPECT_EQ(TemporalityTransient, list->GetTemporality());
}

// kept-on-purpose: populate-releases-descendant
TEST_F(CopyTest, PopulatingFromADescendantReleasesItFirst) {
    Map* const map = NewMap(4107);
    Map* const inner = PutMap(PutMap(map, 40), 0, 4100);
    Put(inner, 0, 5);
    inner->SetTemporality(TemporalityTransient);
    map->Populate(inner);
    EXPECT_EQ("{}", Show(map)) << "the released map has tag 1 and nothing to copy";
    EXPECT_EQ(TemporalityTransient, map->GetTemporality()) << "taken over before";
    Vector* const list = NewVector();
    Vector* below = PutVector(list, 0);
    Append(below, 5);
    below->SetTemporality(TemporalityTemporary);
    list->Populate(below);
    EXPECT_EQ("[]", Show(list));
    EXPECT_EQ(TemporalityPersistent, list->GetTemporality());
    below = PutVector(list, 0);
    Append(below, 5);
    below->SetTemporality(TemporalityTemporary);
    list->Populate(static_cast<Node*>(below));
    EXPECT_EQ("[]", Show(list));
    EXPECT_EQ(TemporalityTemporary, list->GetTemporality());
}

TEST_F(CopyTest, AMapInsideItsSourceRefusesAndStaysAsItIs) {
    Map* const outer = NewMap();
    Map* const child = PutMap(outer, 0);
    Map* const deep = PutMap(PutVector(child, 40), 0);
    Put(deep, 0, 5);
    Put(outer, 1, 6);
    EXPECT_EQ(kAncestor, TextOf([&] { deep->Populate(outer); }));
    EXPECT_EQ(kAncestor, TextOf([&] { deep->Populate(root_); }));
    EXPECT_EQ(kAncestor, TextOf([&] { child->Populate(outer); }));
    EXPECT_EQ("{0:{40:[{0:5}]} 1:6}", Show(outer));
}

TEST_F(CopyTest, AVectorInsideItsSourceTakesWhatStandsBeforeTheWayToItself) {
    Vector* const outer = NewVector();
    Append(PutVector(outer, 0), 1);
    Vector* const target = PutVector(outer, 1);
    Append(target, 2);
    Append(PutVector(outer, 2), 3);
    EXPECT_EQ(kAncestor, TextOf([&] { target->Populate(outer); }));
    EXPECT_EQ("[[1] [[1]] [3]]", Show(outer));
    Vector* const deep = static_cast<Vector*>(target->Get(0));
    EXPECT_EQ(kAncestor, TextOf([&] { deep->Populate(static_cast<Node*>(outer)); }));
    EXPECT_EQ("[[1] [[[1]]] [3]]", Show(outer));
}

TEST_F(CopyTest, ReplaceWithCopyPutsADeepCopyInPlaceOfWhatStood) {
    Fill(otherRoot_);
    Map* const map = NewMap();
    Integer* const old = Put(map, 3, 9);
    Node* const copy = map->ReplaceWithCopy(3, otherRoot_);
    EXPECT_EQ(copy, map->Get(3));
    EXPECT_EQ("{3:4100{0:1 2:[2 3] 8:4107{15:4 16:5} 40:6}}", Show(map));
    EXPECT_EQ(10, static_cast<Map*>(copy)->GetSlotCount()) << "those of the tag";
    EXPECT_EQ(TemporalityDefault, copy->GetTemporality()) << "the source's own";
    EXPECT_EQ(copy, old->GetParent()) << "released, and handed out again for the first child";
    EXPECT_EQ("[2 3]", Show(map->ReplaceWithCopy(40, otherRoot_->Get(2))));
    Vector* const list = NewVector();
    Append(list, 7);
    list->ReplaceWithCopy(1, otherRoot_->Get(40));
    list->ReplaceWithCopy(0, map->Get(40));
    EXPECT_EQ("[[2 3] 6]", Show(list));
}

TEST_F(CopyTest, ReplaceWithCopyOfEveryKindMakesANodeOfThatKind) {
    Map* const map = NewMap();
    for (const NodeType type : KivTests::kAllKinds) {
        Node* const source = otherRoot_->NewNode(0, type);
        source->SetTemporality(TemporalityTransient);
        Node* const copy = map->ReplaceWithCopy(40, source);
        EXPECT_EQ(type, copy->GetType());
        EXPECT_EQ(TemporalityTransient, copy->GetTemporality());
        EXPECT_EQ(tree_.Get(), copy->GetTree().Get());
    }
}

// kept-on-purpose: move-null-text
TEST_F(CopyTest, ReplaceWithCopyRefusesNullItselfAndItsAncestorsBeforeTheIndex) {
    Map* const map = NewMap();
    Map* const inner = PutMap(map, 0);
    Vector* const list = PutVector(inner, 0);
    EXPECT_EQ(0, ChangesOf(*tree_, [&] {
                  for (Composite* const composite : {static_cast<Composite*>(inner), static_cast<Composite*>(list)}) {
                      EXPECT_EQ("Move::Node can't be NULL!", TextOf([&] { composite->ReplaceWithCopy(-1, nullptr); }));
                      EXPECT_EQ(kAncestor, TextOf([&] { composite->ReplaceWithCopy(-1, composite); }));
                      EXPECT_EQ(kAncestor, TextOf([&] { composite->ReplaceWithCopy(0, map); }));
                      EXPECT_EQ(kAncestor, TextOf([&] { composite->ReplaceWithCopy(0, root_); }));
                      EXPECT_EQ("Index out of range", TextOf([&] { composite->ReplaceWithCopy(-1, otherRoot_); }));
                  }
              }));
    EXPECT_EQ("{0:{0:[]}}", Show(map));
}

// kept-on-purpose: populate-releases-descendant
TEST_F(CopyTest, ReplacingANodeByACopyOfItselfOrOfWhatIsBelowCopiesWhatIsLeft) {
    Map* const map = NewMap();
    for (const int index : {0, 40}) {
        Put(map, index, 5)->SetTemporality(TemporalityTransient);
        Node* const leaf = map->ReplaceWithCopy(index, map->Get(index));
        EXPECT_EQ("0", Show(leaf));
        EXPECT_EQ(TemporalityDefault, leaf->GetTemporality());
        Append(PutVector(PutMap(map, index, 4100), 0), 5);
        EXPECT_EQ("[]", Show(map->ReplaceWithCopy(index, static_cast<Map*>(map->Get(index))->Get(0))));
    }
    EXPECT_EQ("{0:[] 40:[]}", Show(map));
    Vector* const list = NewVector();
    Append(list, 5);
    list->ReplaceWithCopy(0, list->Get(0));
    EXPECT_EQ("[0]", Show(list));
}

// kept-on-purpose: copy-lifts-hidden-children
TEST_F(CopyTest, AChildOfReservedTemporalityIsNotCopiedIntoAMapButItsChildrenAre) {
    Map* const source = NewMap();
    Put(source, 0, 1);
    Map* const hidden = PutMap(source, 1);
    Put(hidden, 5, 2);
    Put(hidden, 0, 3);
    hidden->SetTemporality(TemporalityReserved);
    Put(source, 40, 4)->SetTemporality(TemporalityReserved);
    Map* const map = NewMap();
    map->Populate(source);
    EXPECT_EQ("{0:3 5:2}", Show(map)) << "the child at 0 is replaced by the one from below";
    EXPECT_EQ("{0:1 1:{0:3 5:2} 40:4}", Show(source));
    Vector* const list = NewVector();
    Vector* const hiddenList = PutVector(list, 0);
    Append(hiddenList, 5);
    hiddenList->SetTemporality(TemporalityReserved);
    Vector* const copy = NewVector();
    copy->Populate(list);
    EXPECT_EQ("[[5]]", Show(copy)) << "a vector hides nothing";
    EXPECT_EQ(TemporalityReserved, copy->Get(0)->GetTemporality());
}

TEST_F(CopyTest, ATransientTemporaryOrOutdatedTreeIsCopiedWhole) {
    Fill(otherRoot_);
    otherRoot_->Get(2)->SetTemporality(TemporalityTemporary);
    otherRoot_->Get(40)->SetTemporality(TemporalityTransient);
    otherTree_->UpdateDerivedTemporality();
    Map* const map = NewMap();
    map->Populate(otherRoot_);
    EXPECT_EQ(kFilled, Show(map));
}

TEST(CopyMemoryTest, VectorsOfACopyHaveRoomForTheirElementsAlone) {
    const auto fill = [](Tree& tree, bool isExact) {
        auto* const root = static_cast<Vector*>(tree.NewRoot(NodeTypeVector));
        root->Reserve(20);
        for (int i = 0; i < 20; ++i) {
            auto* const inner = root->Add<Vector>();
            if (isExact) {
                inner->Reserve(5);
            }
            for (int k = 0; k < 5; ++k) {
                inner->Add<Integer>();
            }
        }
        return tree.BufferQueryB();
    };
    const auto source = KivTests::NewTree();
    const auto exact = KivTests::NewTree();
    const auto copy = KivTests::NewTree();
    const std::size_t bytes = fill(*exact, true);
    EXPECT_GT(fill(*source, false), bytes);
    copy->CopyFromTree(source.Get());
    EXPECT_EQ(bytes, copy->BufferQueryB());
}

}  // namespace
}  // namespace KivGenerics::Testing
