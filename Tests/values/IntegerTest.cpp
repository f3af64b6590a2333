#include <cstdint>
#include <limits>

#include "core/NodeAccess.h"
#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kGreatest = std::numeric_limits<std::int32_t>::max();

TEST(IntegerTest, HoldsEvery32BitNumber) {
    const ValueTree tree;
    Integer* const leaf = tree.Add<Integer>(0);
    for (const std::int32_t value : {0, 1, -1, 32768, kLeast, kGreatest}) {
        leaf->Set(value);
        EXPECT_EQ(value, leaf->Get());
    }
}

TEST(IntegerTest, ComparesAsSignedNumbersWithoutOverflow) {
    const ValueTree tree;
    Integer* const left = tree.Add<Integer>(0);
    Integer* const right = tree.Add<Integer>(1);
    left->Set(kLeast);
    right->Set(kGreatest);
    EXPECT_EQ(-1, left->Compare(right, TemporalityTemporary, false));
    EXPECT_EQ(1, right->Compare(left, TemporalityTemporary, false));
    left->Set(-1);
    right->Set(0);
    EXPECT_EQ(-1, left->Compare(right, TemporalityTemporary, false));
    left->Set(0);
    EXPECT_EQ(0, left->Compare(right, TemporalityTemporary, false));
    left->Set(1000);
    EXPECT_EQ(1, left->Compare(right, TemporalityTemporary, false));
}

/// A number at `index` of a map tagged `tag`.
Integer* NumberIn(const ValueTree& tree, SemanticTag tag, int index, std::int32_t value) {
    auto* const map =
        static_cast<Map*>(tree.Root()->NewNode(tree.Root()->GetSize(TemporalityTemporary), NodeTypeMap, false, tag));
    auto* const leaf = static_cast<Integer*>(map->NewNode(index, NodeTypeInteger));
    leaf->Set(value);
    return leaf;
}

// kept-on-purpose: integer-merge-index-8
TEST(IntegerTest, DifferentNumbersMergeWithoutConflictOnlyAtIndex8OfAMapTagged100) {
    const ValueTree tree;
    Integer* const seven = NumberIn(tree, SemanticTag(1), 0, 7);

    Integer* const counter = NumberIn(tree, SemanticTag(100), 8, 5);
    EXPECT_TRUE(counter->MergeWith(seven, false));
    EXPECT_EQ(5, counter->Get());
    EXPECT_TRUE(counter->MergeWith(seven, true));

    EXPECT_FALSE(NumberIn(tree, SemanticTag(100), 7, 5)->MergeWith(seven, false));
    EXPECT_FALSE(NumberIn(tree, SemanticTag(100), 9, 5)->MergeWith(seven, false));
    EXPECT_FALSE(NumberIn(tree, SemanticTag(101), 8, 5)->MergeWith(seven, false));
    EXPECT_FALSE(NumberIn(tree, SemanticTag(99), 8, 5)->MergeWith(seven, false));
    EXPECT_FALSE(NumberIn(tree, SemanticTag(1), 8, 5)->MergeWith(seven, false));
    EXPECT_FALSE(seven->MergeWith(counter, false)) << "the other's place does not count";
}

TEST(IntegerTest, TheTagOfTheCounterIsTheOneThatTheMapHasNow) {
    const ValueTree tree;
    Integer* const seven = NumberIn(tree, SemanticTag(1), 0, 7);
    Integer* const counter = NumberIn(tree, SemanticTag(1), 8, 5);
    static_cast<Map*>(counter->GetParent())->SetSemanticTag(SemanticTag(100));
    EXPECT_TRUE(counter->MergeWith(seven, false));
    static_cast<Map*>(counter->GetParent())->SetSemanticTag(SemanticTag(1));
    EXPECT_FALSE(counter->MergeWith(seven, false));
}

TEST(IntegerTest, ACounterStillConflictsWhereTheTemporalitiesDo) {
    const ValueTree tree;
    Integer* const seven = NumberIn(tree, SemanticTag(1), 0, 7);
    Integer* const counter = NumberIn(tree, SemanticTag(100), 8, 5);
    seven->SetTemporality(TemporalityTransient);
    EXPECT_FALSE(counter->MergeWith(seven, false));
    EXPECT_EQ(TemporalityTransient, counter->GetTemporality());
    EXPECT_TRUE(counter->MergeWith(seven, false)) << "they agree by now";
}

TEST(IntegerTest, ANumberAtIndex8OfAVectorIsNoCounter) {
    const ValueTree tree;
    Vector* const list = tree.Add<Vector>(0);
    for (int i = 0; i < 10; ++i) {
        static_cast<Integer*>(list->Add(NodeTypeInteger))->Set(i);
    }
    EXPECT_FALSE(list->Get(8)->MergeWith(list->Get(9), false));
}

TEST(IntegerTest, ANumberWithoutParentIsNoCounter) {
    const ValueTree tree;
    Integer* const seven = NumberIn(tree, SemanticTag(1), 0, 7);
    Integer* const detached = static_cast<Integer*>(NumberIn(tree, SemanticTag(100), 8, 5)->Detach());
    EXPECT_FALSE(detached->MergeWith(seven, false));
    NodeAccess::Place(*detached, nullptr, 8);
    EXPECT_FALSE(detached->MergeWith(seven, false));
    detached->Set(7);
    EXPECT_TRUE(detached->MergeWith(seven, false));
}

}  // namespace
}  // namespace KivGenerics::Testing
