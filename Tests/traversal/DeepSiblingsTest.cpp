// What follows a child that goes down many levels is met as what follows a leaf is, on every level.

#include <algorithm>
#include <vector>

#include <KivGenerics/Iterator.h>

#include "containers/TestNodes.h"

namespace KivGenerics::Testing {
namespace {

constexpr int kLevels = 100;

class DeepSiblingsTest : public ::testing::TestWithParam<NodeType> {
protected:
    struct Deep {
        KivBase::ReturnPtrI<Tree> tree;
        std::vector<Integer*> behind;  // behind the deep child, from the root down
    };

    /// On every level the next one, and behind it one of the same kind that holds a number.
    static Deep NewDeep() {
        Deep deep;
        deep.tree = CreateGenericTree(EnumOrvObjectType(0));
        auto* node = static_cast<Composite*>(deep.tree->NewRoot(GetParam()));
        for (int level = 0; level < kLevels; ++level) {
            auto* const next = static_cast<Composite*>(node->NewNode(0, GetParam()));
            auto* const sibling = static_cast<Composite*>(node->NewNode(1, GetParam()));
            for (Composite* const each : {next, sibling}) {
                each->SetTemporality(TemporalityDefault);
            }
            deep.behind.push_back(Put(sibling, 0, level));
            node = next;
        }
        deep.tree->UpdateDerivedTemporality();
        return deep;
    }

    static int CountNodes(Tree& tree) {
        const auto iterator = tree.GetRoot()->GetIterator();
        int count = 0;
        while (iterator->Next() != nullptr) {
            ++count;
        }
        return count;
    }
};

INSTANTIATE_TEST_SUITE_P(Composites, DeepSiblingsTest, ::testing::Values(NodeTypeMap, NodeTypeVector),
                         [](const auto& each) { return each.param == NodeTypeMap ? "Maps" : "Vectors"; });

TEST_P(DeepSiblingsTest, AreCopied) {
    const Deep deep = NewDeep();
    const auto copy = CreateGenericTree(EnumOrvObjectType(0));
    copy->CopyFromTree(deep.tree.Get());
    EXPECT_EQ(CountNodes(*deep.tree), 3 * kLevels + 1);
    EXPECT_EQ(CountNodes(*copy), 3 * kLevels + 1);
    for (Integer* const number : deep.behind) {
        KivBase::WString key;
        number->GetKey(key);
        Node* const twin = copy->FindNodeByKey(key);
        ASSERT_NE(twin, nullptr);
        ASSERT_EQ(twin->GetType(), NodeTypeInteger);
        EXPECT_EQ(static_cast<Integer*>(twin)->Get(), number->Get());
    }
}

TEST_P(DeepSiblingsTest, AreCompared) {
    const Deep mine = NewDeep();
    const Deep theirs = NewDeep();
    EXPECT_EQ(0, mine.tree->GetRoot()->Compare(theirs.tree->GetRoot(), TemporalityTemporary, true));
    for (int level = 0; level < kLevels; ++level) {
        Integer* const number = theirs.behind[static_cast<std::size_t>(level)];
        number->Set(level + 1);
        EXPECT_EQ(-1, mine.tree->GetRoot()->Compare(theirs.tree->GetRoot(), TemporalityTemporary, true)) << level;
        number->Set(level);
    }
}

TEST_P(DeepSiblingsTest, AreMerged) {
    const Deep mine = NewDeep();
    const Deep theirs = NewDeep();
    EXPECT_TRUE(mine.tree->GetRoot()->MergeWith(theirs.tree->GetRoot(), false));
    theirs.behind[50]->Set(-1);
    EXPECT_FALSE(mine.tree->GetRoot()->MergeWith(theirs.tree->GetRoot(), false));
}

TEST_P(DeepSiblingsTest, GetTheirTemporality) {
    const Deep deep = NewDeep();
    for (Integer* const number : deep.behind) {
        number->SetTemporality(TemporalityTransient);
    }
    deep.tree->UpdateDerivedTemporality();
    for (Integer* const number : deep.behind) {
        EXPECT_FALSE(number->ShouldVisit(TemporalityPersistent));
        EXPECT_TRUE(number->ShouldVisit(TemporalityTransient));
        EXPECT_FALSE(number->GetParent()->ShouldVisit(TemporalityPersistent));
        EXPECT_TRUE(number->GetParent()->ShouldVisit(TemporalityTransient));
    }
}

TEST_P(DeepSiblingsTest, AreReleased) {
    const Deep deep = NewDeep();
    const std::size_t before = deep.tree->GetRoot()->GetTree()->BufferQueryB();
    deep.tree->GetRoot()->Clear();
    EXPECT_EQ(CountNodes(*deep.tree), 1);
    EXPECT_EQ(deep.tree->GetRoot()->GetTree()->BufferQueryB(), before);
    for (Integer* const number : deep.behind) {
        EXPECT_EQ(number->GetParent(), nullptr);
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
