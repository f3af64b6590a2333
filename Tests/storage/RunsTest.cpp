// Leaves that are made side by side where the buffer shows its free memory, as the default one does but with the sanitizers.

#include <gtest/gtest.h>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>

#include "support/ShowingBuffer.h"

using namespace KivGenerics;

namespace {

/// A map: in slot 0 a vector of 300 leaves of this kind, in slot 1 a map of 60, most of them beyond its slots.
class RunsTest : public ::testing::TestWithParam<NodeType> {
protected:
    RunsTest() {
        auto* const root = static_cast<Map*>(tree_->NewRoot(NodeTypeMap));
        Vector* const list = root->NewNode<Vector>(0);
        for (int i = 0; i < 300; ++i) {
            Fill(list->Add(GetParam()), i);
        }
        Map* const map = root->NewNode<Map>(1);
        for (int i = 0; i < 60; ++i) {
            Fill(map->NewNode(3 * i, GetParam()), i);
        }
    }

    static void Fill(Node* node, int i) {
        switch (node->GetType()) {
            case NodeTypeInteger: static_cast<Integer*>(node)->Set(i); break;
            case NodeTypeInteger64: static_cast<Integer64*>(node)->Set(i); break;
            case NodeTypeDouble: static_cast<Double*>(node)->Set(i); break;
            case NodeTypeBoolean: static_cast<Boolean*>(node)->Set(i % 2 == 0); break;
            case NodeTypeGlobalID:
                static_cast<GlobalID*>(node)->Set(GUID{static_cast<std::uint32_t>(i), 0, 0, {}});
                break;
            default: static_cast<String*>(node)->Set(i % 2 == 0 ? u"even" : u"odd"); break;
        }
    }

    int CompareWith(Tree& other) { return tree_->GetRoot()->Compare(other.GetRoot(), TemporalityTemporary, true); }

    KivTests::ShowingBuffers buffers_;
    KivBase::ReturnPtrI<Tree> tree_ = CreateGenericTree(EnumOrvObjectType(0));
};

}  // namespace

TEST_P(RunsTest, ACopyHasEveryLeafAndCountsEveryChange) {
    const auto copy = CreateGenericTree(EnumOrvObjectType(0));
    copy->CopyFromTree(tree_.Get());
    EXPECT_EQ(0, CompareWith(*copy));
    // A composite counts being made and its temporality, a map also its tag, and Populate's check and clearing; an element
    // being made and its copy, a child also the temporality that NewNode gives it.
    const auto again = CreateGenericTree(EnumOrvObjectType(0));
    auto* const root = static_cast<Map*>(again->NewRoot(NodeTypeMap));
    const int before = again->GetChangeCount();
    root->ReplaceWithCopy(0, static_cast<Map*>(tree_->GetRoot())->Get(0));
    EXPECT_EQ(before + 4 + 300 * 2, again->GetChangeCount());
    root->ReplaceWithCopy(1, static_cast<Map*>(tree_->GetRoot())->Get(1));
    EXPECT_EQ(before + 4 + 300 * 2 + 5 + 60 * 3, again->GetChangeCount());
    Fill(static_cast<Map*>(static_cast<Map*>(copy->GetRoot())->Get(1))->Get(3 * 59), 1000);
    EXPECT_NE(0, CompareWith(*copy));
}

TEST_P(RunsTest, ALoadHasEveryLeafAndStopsWhereTheDataEnd) {
    const auto out = KivStorage::MemoryWriteStream::Create();
    ASSERT_EQ(0, tree_->SaveToStream(out.Get(), false));
    ASSERT_TRUE(out->Finish().Ok());
    const KivStorage::SavedBytes bytes = out->TakeBytes();
    const auto loaded = CreateGenericTree(EnumOrvObjectType(0));
    const auto in = KivStorage::MemoryReadStream::Create(bytes.data(), bytes.size());
    ASSERT_EQ(0, loaded->LoadFromStream(in.Get()));
    EXPECT_EQ(0, CompareWith(*loaded));
    EXPECT_EQ(3 * 59, static_cast<Map*>(static_cast<Map*>(loaded->GetRoot())->Get(1))->GetNth(59)->GetIndex());
    const auto cut = KivStorage::MemoryReadStream::Create(bytes.data(), bytes.size() / 2);
    EXPECT_GT(0, loaded->LoadFromStream(cut.Get()));
}

INSTANTIATE_TEST_SUITE_P(Kinds, RunsTest,
                         ::testing::Values(NodeTypeInteger, NodeTypeInteger64, NodeTypeDouble, NodeTypeBoolean,
                                           NodeTypeGlobalID, NodeTypeString));
