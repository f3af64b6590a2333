// Which nodes a walk comes to, and in which order.

#include "traversal/Recorder.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kBothOrders = IteratePreOrder | IteratePostOrder;

/// Node::GetDefaultIterateFlags, which nodes keep for themselves: naming it in an explicit instantiation is allowed.
using Complete = int (Node::*)(int, SemanticTag) const noexcept;
Complete GetComplete();
template <Complete Operation>
struct OpenComplete {
    friend Complete GetComplete() { return Operation; }
};
template struct OpenComplete<&Node::GetDefaultIterateFlags>;

/// The root {0:10 1:[20 21] 2:4100{0:30 20:31} 3:String 8:40 9:{5:[50]}}: eight slots, so 8 and 9 are beyond them.
class WalkTest : public ContainerTest {
protected:
    WalkTest() {
        Put(root_, 0, 10);
        Vector* const list = PutVector(root_, 1);
        Append(list, 20);
        Append(list, 21);
        Map* const map = PutMap(root_, 2, 4100);
        Put(map, 0, 30);
        Put(map, 20, 31);
        root_->NewNode(3, NodeTypeString);
        Put(root_, 8, 40);
        Append(PutVector(PutMap(root_, 9), 5), 50);
    }

    unsigned Completed(unsigned flags, int tag) const {
        return static_cast<unsigned>((root_->*GetComplete())(static_cast<int>(flags), SemanticTag(tag)));
    }
};

TEST_F(WalkTest, WithoutFlagsEverythingBelowTheStartIsShownBeforeItsChildren) {
    EXPECT_EQ("10 (1: 20 21 (2: 30 31 String 40 (9: (9:5: 50", Walk(root_));
}

TEST_F(WalkTest, TheStartNodeIsShownFirstWhenAskedFor) {
    EXPECT_EQ("( 10 (1: 20 21 (2: 30 31 String 40 (9: (9:5: 50",
              Walk(root_, IterateSelf | IterateChildren | IterateDeeper));
    EXPECT_EQ("(", Walk(root_, IterateSelf));
    EXPECT_EQ("10", Walk(root_->Get(0), IterateSelf));
    EXPECT_EQ("", Walk(root_->Get(0))) << "below a leaf there is nothing";
}

TEST_F(WalkTest, TheDepthBitsAddUp) {
    EXPECT_EQ("10 (1: (2: String 40 (9:", Walk(root_, IterateChildren));
    EXPECT_EQ("20 21 30 31 (9:5: 50", Walk(root_, IterateDeeper)) << "all but the start and its children";
    EXPECT_EQ("( 10 (1: (2: String 40 (9:", Walk(root_, IterateSelf | IterateChildren));
    EXPECT_EQ("( 20 21 30 31 (9:5: 50", Walk(root_, IterateSelf | IterateDeeper));
    EXPECT_EQ("10 (1: 20 21 (2: 30 31 String 40 (9: (9:5: 50", Walk(root_, IterateChildren | IterateDeeper));
}

TEST_F(WalkTest, CompositesAreShownBeforeOrAfterTheirChildrenOrBoth) {
    constexpr int kAll = IterateSelf | IterateChildren | IterateDeeper;
    EXPECT_EQ("10 20 21 )1: 30 31 )2: String 40 50 )9:5: )9: )", Walk(root_, kAll | IteratePostOrder));
    EXPECT_EQ("( 10 (1: 20 21 )1: (2: 30 31 )2: String 40 (9: (9:5: 50 )9:5: )9: )", Walk(root_, kAll | kBothOrders));
    EXPECT_EQ("( )", Walk(root_, IterateSelf | kBothOrders));
}

TEST_F(WalkTest, TheTypeBitsChooseWhatIsShownAndNotWhereTheWalkGoes) {
    EXPECT_EQ("10 20 21 30 31 40 50", Walk(root_, 0x1));
    EXPECT_EQ("String", Walk(root_, 0x4));
    EXPECT_EQ("(1: (9:5:", Walk(root_, 0x20));
    EXPECT_EQ("(2: (9:", Walk(root_, 0x40));
    EXPECT_EQ("(1: (2: (9: (9:5:", Walk(root_, 0x60));
    EXPECT_EQ("", Walk(root_, 0x2)) << "there is no GlobalID";
    EXPECT_EQ("", Walk(root_, 0xF000)) << "bits of no kind";
    EXPECT_EQ("( (2: (9:", Walk(root_, 0x40 | IterateSelf | IterateChildren | IterateDeeper));
}

TEST_F(WalkTest, AWalkForATagShowsMapsOfThatTagAlone) {
    PutMap(static_cast<Map*>(root_->Get(9)), 0, 4100);
    EXPECT_EQ("(2: (9:0:", Walk(root_, 0, 4100));
    EXPECT_EQ(")2: )9:0:", Walk(root_, IteratePostOrder, 4100));
    EXPECT_EQ("", Walk(root_, 0, 4099));
    EXPECT_EQ("", Walk(root_, 0, -1));
    EXPECT_EQ("(2:", Walk(root_, IterateChildren, 4100));
    EXPECT_EQ("(2: (9:0:", Walk(root_, 0x47, 4100)) << "of the type bits only the map's stays";
    EXPECT_EQ("", Walk(root_, 0x21, 4100)) << "and only if it was set";
    EXPECT_EQ("(2:", Walk(root_->Get(2), IterateSelf, 4100));
    EXPECT_EQ("", Walk(root_, IterateSelf, 4100));
}

// kept-on-purpose: tag-1-selects
TEST_F(WalkTest, AWalkForTagOneShowsAllKindsAndOfTheMapsThoseTaggedOne) {
    EXPECT_EQ("10 (1: 20 21 30 31 String 40 (9: (9:5: 50", Walk(root_, 0, 1));
    EXPECT_EQ("(9:", Walk(root_, 0x40, 1));
    EXPECT_EQ("(", Walk(root_, IterateSelf, 1));
}

TEST_F(WalkTest, AMapTaggedZeroIsShownOnlyByAWalkForAllTags) {
    auto* const map = static_cast<Map*>(root_->Get(2));
    map->SetSemanticTag(SemanticTagNone);
    EXPECT_EQ("(2: (9:", Walk(root_, 0x40, 0));
    EXPECT_EQ("(9:", Walk(root_, 0x40, 1));
    EXPECT_EQ("", Walk(root_, 0x40, 4100));
}

TEST_F(WalkTest, FlagsAreCompletedGroupByGroup) {
    const struct {
        unsigned flags;
        int tag;
        unsigned completed;
    } rows[] = {
        {0, 0, 0xF061FFFF},
        {0, 1, 0xF061FFFF},
        {0, 4100, 0xF0610040},
        {0, -1, 0xF0610040},
        {0x1, 0, 0xF0610001},
        {0x1, 4100, 0xF0610000},
        {0x41, 4100, 0xF0610040},
        {0x41, 1, 0xF0610041},
        {0x8000, 0, 0xF0618000},
        {0x20000, 0, 0xF062FFFF},
        {0x10000, 0, 0xF061FFFF},
        {0x30000, 0, 0xF063FFFF},
        {0x100000, 0, 0xF011FFFF},
        {0x200000, 0, 0xF021FFFF},
        {0x400000, 0, 0xF041FFFF},
        {0x700000, 0, 0xF071FFFF},
        {0x1000000, 0, 0x0161FFFF},
        {0x2000000, 0, 0x0361FFFF},
        {0x4000000, 0, 0x0761FFFF},
        {0x5000000, 0, 0x0761FFFF},
        {0x10000000, 0, 0x1061FFFF},
        {0x20000000, 0, 0x2061FFFF},
        {0x40000000, 0, 0x4061FFFF},
        {0x80000000, 0, 0x8061FFFF},
        {0x81000000, 0, 0x8161FFFF},
        {0x82000000, 0, 0x8361FFFF},
        {0x000C0000, 0, 0xF06DFFFF},
        {0x00800000, 0, 0xF0E1FFFF},
        {0x08000000, 0, 0xF861FFFF},
        {0xFFFFFFFF, 0, 0xFFFFFFFF},
        {0xFFFFFFFF, 4100, 0xFFFF0040},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.completed, Completed(row.flags, row.tag)) << std::hex << row.flags << " for tag " << row.tag;
    }
}

TEST_F(WalkTest, BitsWithoutMeaningChangeNothing) {
    EXPECT_EQ("10 (1: 20 21 (2: 30 31 String 40 (9: (9:5: 50", Walk(root_, 0x088C0000));
}

TEST_F(WalkTest, WithoutAVisitorNothingHappens) {
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { root_->Iterate(nullptr, SemanticTagNone, 0); }));
    EXPECT_EQ("10 (1: 20 21 (2: 30 31 String 40 (9: (9:5: 50", Walk(root_));
}

TEST_F(WalkTest, AReadOnlyTreeIsWalkedAndNothingIsCounted) {
    tree_->SetReadOnly();
    EXPECT_EQ(0, ChangesOf(*tree_, [&] { EXPECT_EQ("10 (1: 20 21 (2: 30 31 String 40 (9: (9:5: 50", Walk(root_)); }));
}

TEST_F(WalkTest, ADetachedNodeIsWalkedLikeAnyOther) {
    Node* const map = root_->Detach(9);
    EXPECT_EQ("( (5: 50", Walk(map, IterateSelf | IterateChildren | IterateDeeper));
}

TEST_F(WalkTest, ChildrenAppendedDuringTheWalkAreWalkedToo) {
    auto* const list = static_cast<Vector*>(root_->Get(1));
    EXPECT_EQ("20 21 22 23", Walk(list, 0, 0, [&](Node*, bool) {
                  const int size = list->GetSize(TemporalityTemporary);
                  if (size < 4) {
                      Append(list, 20 + size);
                  }
                  return VisitContinue;
              }));
    EXPECT_EQ("[20 21 22 23]", Show(list));
}

class MapWalkTest : public ContainerTest, public ::testing::WithParamInterface<SlotCase> {};

INSTANTIATE_TEST_SUITE_P(Slots, MapWalkTest, ::testing::ValuesIn(kEverySlotCount), NameOfSlotCase);

TEST_P(MapWalkTest, TheChildrenOfAMapAreWalkedInIndexOrderWhateverItsSlots) {
    Map* const map = NewMap(GetParam());
    for (const int index : {40, 0, 16, 8, 3, 15, 7}) {
        Put(map, index, index);
    }
    EXPECT_EQ("0 3 7 8 15 16 40", Walk(map));
    EXPECT_EQ("0 3 7 8 15 16 40", Walk(map, IteratePostOrder));
    EXPECT_EQ("", Walk(NewMap(GetParam())));
}

TEST_P(MapWalkTest, NestedMapsAreWalkedDepthFirst) {
    Map* const outer = NewMap(GetParam());
    Map* map = outer;
    for (int depth = 0; depth < 3; ++depth) {
        Put(map, 0, depth);
        Put(map, 41, 10 + depth);
        map = PutMap(map, 40, GetParam().tag);
    }
    outer->Detach();
    EXPECT_EQ("0 (40: 1 (40:40: 2 (40:40:40: )40:40:40: 12 )40:40: 11 )40: 10", Walk(outer, kBothOrders));
    EXPECT_EQ("(40: (40:40: (40:40:40:", Walk(outer, 0, GetParam().tag));
}

}  // namespace
}  // namespace KivGenerics::Testing
