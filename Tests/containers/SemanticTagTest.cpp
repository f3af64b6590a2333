// How many fixed slots a tag gives a map, and what else hangs on a tag.

#include "containers/SemanticTags.h"

#include <iterator>
#include <limits>
#include <vector>

#include <KivGenerics/Exception.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Tree.h>
#include <gtest/gtest.h>

#include "containers/SlotRows.h"
#include "support/TestTree.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();

int SlotsOf(int tag) {
    return GetSlotCountForSemanticTag(SemanticTag(tag));
}

/// How many rows a table has, having found that none is missing or there twice between `first` and `last`.
template <std::size_t N>
int CountRows(const SlotRow (&rows)[N], int first, int last) {
    int next = first;
    for (const SlotRow& row : rows) {
        EXPECT_EQ(next, row.first);
        EXPECT_LE(row.first, row.last);
        next = row.last + 1;
    }
    EXPECT_EQ(last + 1, next);
    return next - first;
}

template <std::size_t N>
void ExpectSlots(const SlotRow (&rows)[N]) {
    for (const SlotRow& row : rows) {
        for (int tag = row.first; tag <= row.last; ++tag) {
            EXPECT_EQ(row.slots, SlotsOf(tag)) << tag;
        }
    }
}

TEST(SemanticTagTest, TheExpectedTablesHave359RowsInAll) {
    EXPECT_EQ(15, CountRows(kSlots100, 100, 114));
    EXPECT_EQ(272, CountRows(kSlots4096, 4096, 4367));
    EXPECT_EQ(72, CountRows(kSlots28672, 28672, 28743));
}

TEST(SemanticTagTest, TagsFrom100To114HaveTheirSlots) {
    ExpectSlots(kSlots100);
}

TEST(SemanticTagTest, TagsFrom4096To4367HaveTheirSlots) {
    ExpectSlots(kSlots4096);
}

TEST(SemanticTagTest, TagsFrom28672To28743HaveTheirSlots) {
    ExpectSlots(kSlots28672);
}

TEST(SemanticTagTest, FiveSingleTagsHaveSlotsOfTheirOwn) {
    EXPECT_EQ(4, SlotsOf(2));
    EXPECT_EQ(3, SlotsOf(24576));
    EXPECT_EQ(4, SlotsOf(24832));
    EXPECT_EQ(1, SlotsOf(25088));
    EXPECT_EQ(1, SlotsOf(25344));
}

TEST(SemanticTagTest, EveryOtherTagGivesEight) {
    EXPECT_EQ(8, DefaultMapSlotCount);
    for (const int tag :
         {0,     1,     3,     99,    115,    4095,       4368,   4608,      8192,         24575,        24577,
          24831, 24833, 25087, 25089, 25343,  25345,      28671,  28750,     28928,        32768,        65636,
          -1,    -2,    -100,  -4107, -28674, 0x10001000, kLeast, kGreatest, kLeast + 100, kLeast + 4107}) {
        EXPECT_EQ(8, SlotsOf(tag)) << tag;
    }
}

TEST(SemanticTagTest, NoOtherTagBelow70000HasSlotsOfItsOwn) {
    for (int tag = -70000; tag < 70000; ++tag) {
        const bool listed = (100 <= tag && tag <= 114) || (4096 <= tag && tag <= 4367) ||
                            (28672 <= tag && tag <= 28743) || tag == 2 || tag == 24576 || tag == 24832 ||
                            tag == 25088 || tag == 25344;
        if (!listed) {
            ASSERT_EQ(8, SlotsOf(tag)) << tag;
        }
    }
}

// kept-on-purpose: tags-past-the-table
TEST(SemanticTagTest, SixTagsPastTheLastTableGiveEight) {
    for (int tag = 28744; tag <= 28749; ++tag) {
        EXPECT_EQ(8, SlotsOf(tag)) << tag;
    }
}

TEST(SemanticTagTest, Only4107Gives16) {
    std::vector<int> tags;
    for (int tag = -1; tag < 70000; ++tag) {
        if (SlotsOf(tag) == 16) {
            tags.push_back(tag);
        }
    }
    EXPECT_EQ((std::vector<int>{4107}), tags);
    EXPECT_EQ(15, SlotsOf(4264));
}

TEST(SemanticTagTest, EightTagsWantAnOverflowStore) {
    std::vector<int> tags;
    for (int tag = -70000; tag < 70000; ++tag) {
        if (TagWantsOverflow(SemanticTag(tag))) {
            tags.push_back(tag);
        }
    }
    EXPECT_EQ((std::vector<int>{4099, 4100, 4106, 4111, 4114, 4144, 4145, 4162}), tags);
    EXPECT_FALSE(TagWantsOverflow(SemanticTag(kLeast)));
    EXPECT_FALSE(TagWantsOverflow(SemanticTag(kGreatest)));
    EXPECT_FALSE(TagWantsOverflow(SemanticTag(0x10001003)));
}

class TaggedMapTest : public ::testing::Test {
protected:
    Map* NewMap(int tag) {
        const int index = root_->GetSize(TemporalityTemporary);
        return static_cast<Map*>(root_->NewNode(index, NodeTypeMap, false, SemanticTag(tag)));
    }

    KivBase::ReturnPtrI<Tree> tree_ = KivTests::NewTree();
    Map* root_ = static_cast<Map*>(tree_->NewRoot(NodeTypeMap));
};

/// Expects a map of every tag to have the slots of its row, and eight for a row outside 1 to 16.
template <std::size_t N>
void ExpectMaps(Tree& tree, const SlotRow (&rows)[N]) {
    for (const SlotRow& row : rows) {
        for (int tag = row.first; tag <= row.last; ++tag) {
            const KivBase::ReturnPtrI<Tree> fresh = tree.CreateTreeInForest();
            auto* const map = static_cast<Map*>(fresh->NewRoot(NodeTypeMap, false, SemanticTag(tag)));
            EXPECT_EQ(row.slots > 16 ? 8 : row.slots, map->GetSlotCount()) << tag;
            EXPECT_EQ(tag, map->GetSemanticTag());
            EXPECT_EQ(tag, map->GetSemanticTagNV());
            EXPECT_FALSE(map->HasOverflow());
        }
    }
}

TEST_F(TaggedMapTest, EveryTagOfTheTablesMakesAMapOfItsSlots) {
    ExpectMaps(*tree_, kSlots100);
    ExpectMaps(*tree_, kSlots4096);
    ExpectMaps(*tree_, kSlots28672);
}

// kept-on-purpose: slot-counts-above-16
TEST_F(TaggedMapTest, ThreeTagsAskForMoreThan16SlotsAndGetEight) {
    EXPECT_EQ(25, SlotsOf(4213));
    EXPECT_EQ(18, SlotsOf(28687));
    EXPECT_EQ(43, SlotsOf(28727));
    for (const int tag : {4213, 28687, 28727}) {
        Map* const map = NewMap(tag);
        EXPECT_EQ(8, map->GetSlotCount()) << tag;
        map->NewNode(7, NodeTypeInteger);
        EXPECT_FALSE(map->HasOverflow());
        map->NewNode(8, NodeTypeInteger);
        EXPECT_TRUE(map->HasOverflow());
    }
}

TEST_F(TaggedMapTest, AMapMadeWithoutATagReportsTagOneAndHasEightSlots) {
    Map* const map = NewMap(0);
    EXPECT_EQ(1, map->GetSemanticTag());
    EXPECT_EQ(1, map->GetSemanticTagNV());
    EXPECT_EQ(8, map->GetSlotCount());
}

TEST_F(TaggedMapTest, TheSlotsDivideTheIndexesFromTheOverflowStore) {
    for (const int tag : {102, 111, 24576, 2, 4284, 4146, 28707, 0, 4152, 4338, 28675, 4228, 100, 110, 4264, 4107}) {
        Map* const map = NewMap(tag);
        const int slots = map->GetSlotCount();
        for (int i = 0; i < slots; ++i) {
            map->NewNode(i, NodeTypeBoolean);
        }
        EXPECT_FALSE(map->HasOverflow()) << tag;
        map->NewNode(slots, NodeTypeBoolean);
        EXPECT_TRUE(map->HasOverflow()) << tag;
        EXPECT_EQ(slots + 1, map->GetSize(TemporalityTemporary));
    }
}

TEST_F(TaggedMapTest, ATagCanBeAny32BitNumber) {
    Map* const map = NewMap(0);
    for (const int tag : {0, 1, 2, -1, 4100, kLeast, kGreatest}) {
        map->SetSemanticTag(SemanticTag(tag));
        EXPECT_EQ(tag, map->GetSemanticTag());
    }
    EXPECT_EQ(-7, NewMap(-7)->GetSemanticTag());
    EXPECT_EQ(8, NewMap(-7)->GetSlotCount());
}

TEST_F(TaggedMapTest, SettingTheTagCountsOnceAndKeepsTheSlots) {
    Map* const map = NewMap(4107);
    const int before = tree_->GetChangeCount();
    map->SetSemanticTag(SemanticTag(102));
    EXPECT_EQ(before + 1, tree_->GetChangeCount());
    EXPECT_EQ(16, map->GetSlotCount());
    EXPECT_EQ(102, map->GetSemanticTag());
}

TEST_F(TaggedMapTest, AReadOnlyTreeRefusesAnotherTag) {
    Map* const map = NewMap(100);
    tree_->SetReadOnly();
    const int before = tree_->GetChangeCount();
    EXPECT_EQ("Operation not allowed on a read-only tree!",
              KivTests::TextOf([&] { map->SetSemanticTag(SemanticTag(100)); }));
    EXPECT_THROW(map->SetSemanticTag(SemanticTag(100)), ReadOnlyException);
    EXPECT_EQ(100, map->GetSemanticTag());
    EXPECT_EQ(before, tree_->GetChangeCount());
}

TEST_F(TaggedMapTest, ACopyHasTheTagAndTheSlotsOfItsSource) {
    Map* const source = NewMap(100);
    auto* const inner = static_cast<Map*>(source->NewNode(0, NodeTypeMap, false, SemanticTag(4264)));
    EXPECT_EQ(15, inner->GetSlotCount());
    auto* const copy = static_cast<Map*>(root_->ReplaceWithCopy(5, source));
    EXPECT_EQ(100, copy->GetSemanticTag());
    EXPECT_EQ(13, copy->GetSlotCount());
    auto* const innerCopy = static_cast<Map*>(copy->Get(0));
    EXPECT_EQ(4264, innerCopy->GetSemanticTag());
    EXPECT_EQ(15, innerCopy->GetSlotCount());
}

TEST_F(TaggedMapTest, MapsOfDifferentTagsDoNotMerge) {
    Map* const left = NewMap(100);
    Map* const right = NewMap(101);
    right->NewNode(0, NodeTypeInteger);
    EXPECT_FALSE(left->MergeWith(right, false));
    EXPECT_TRUE(left->IsEmpty());
    right->SetSemanticTag(SemanticTag(100));
    EXPECT_TRUE(left->MergeWith(right, false));
    EXPECT_EQ(1, left->GetSize(TemporalityTemporary));
}

}  // namespace
}  // namespace KivGenerics::Testing
