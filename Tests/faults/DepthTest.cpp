// At the deepest nesting that loading accepts, every operation fits into a stack of 1 MiB.

#include <gtest/gtest.h>

#include <KivBase/Utf.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Iterator.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/VisitorNode.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>

#include "faults/Documents.h"
#include "faults/SmallStack.h"

using namespace KivGenerics;

namespace {

/// MaxLoadNesting levels, the root map included, of one kind or of both in turn; a leaf at the bottom.
void FillDeep(Tree& tree, NodeType odd, NodeType even) {
    auto* node = node_cast<Composite>(tree.NewRoot(NodeTypeMap));
    for (int level = 2; level <= MaxLoadNesting; ++level) {
        node = node_cast<Composite>(node->NewNode(0, level % 2 == 0 ? even : odd));
    }
    node->NewNode(0, NodeTypeInteger);
}

class CountingVisitor final : public VisitorNode {
public:
    VisitCode VisitNode(Node*, bool, NodeType) override {
        ++count;
        return VisitContinue;
    }
    int count = 0;
};

void SaveAndLoad(Tree& tree, Tree& loaded) {
    const auto out = KivStorage::MemoryWriteStream::Create();
    ASSERT_EQ(tree.SaveToStream(out.Get(), true), 0);
    ASSERT_TRUE(out->Finish().Ok());
    const auto in = KivStorage::MemoryReadStream::Create(out->GetBytes().data(), out->GetBytes().size());
    ASSERT_EQ(loaded.LoadFromStream(in.Get()), 0);
}

void UseEveryOperation(NodeType odd, NodeType even) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    FillDeep(*tree, odd, even);
    tree->UpdateDerivedTemporality();

    CountingVisitor visitor;
    tree->GetRoot()->Iterate(&visitor, SemanticTagNone, IterateSelf | IterateChildren | IterateDeeper);
    EXPECT_EQ(visitor.count, MaxLoadNesting + 1);

    const auto copy = CreateGenericTree(EnumOrvObjectType(0));
    copy->CopyFromTree(tree.Get());
    EXPECT_EQ(tree->GetRoot()->Compare(copy->GetRoot(), TemporalityTemporary, true), 0);
    EXPECT_TRUE(tree->GetRoot()->MergeWith(copy->GetRoot(), false));

    const auto loaded = CreateGenericTree(EnumOrvObjectType(0));
    SaveAndLoad(*tree, *loaded);
    EXPECT_EQ(tree->GetRoot()->Compare(loaded->GetRoot(), TemporalityTemporary, true), 0);

    Node* deepest = nullptr;
    const auto iterator = tree->GetRoot()->GetIterator();
    while (Node* const node = iterator->Next()) {
        deepest = node;
    }
    KivBase::WString key;
    deepest->GetKey(key);
    EXPECT_EQ(key.size(), static_cast<std::size_t>(2 * MaxLoadNesting));
    EXPECT_EQ(tree->FindNodeByKey(key), deepest);
    deepest->GetSemanticTagKey(key);
    deepest->GetHumanReadableKey(1033, key);
    EXPECT_EQ(deepest->GetDerivedTemporality(), TemporalityPersistent);

    tree->ClearTemporaryNodes();
    EXPECT_FALSE(tree->IsEmpty());
    tree->RemoveRoot();
    EXPECT_TRUE(tree->IsEmpty());
}

TEST(DepthTest, NestedMapsFitIntoASmallStack) {
    RunOnSmallStack([] { UseEveryOperation(NodeTypeMap, NodeTypeMap); });
}

TEST(DepthTest, NestedVectorsFitIntoASmallStack) {
    RunOnSmallStack([] { UseEveryOperation(NodeTypeVector, NodeTypeVector); });
}

TEST(DepthTest, MapsAndVectorsInTurnFitIntoASmallStack) {
    RunOnSmallStack([] { UseEveryOperation(NodeTypeVector, NodeTypeMap); });
}

TEST(DepthTest, OneLevelMoreIsRefusedByLoading) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    FillDeep(*tree, NodeTypeMap, NodeTypeMap);
    tree->NewRoot(NodeTypeMap, true);
    const auto out = KivStorage::MemoryWriteStream::Create();
    ASSERT_EQ(tree->SaveToStream(out.Get(), true), 0);
    ASSERT_TRUE(out->Finish().Ok());
    KivStorage::ReadLimits limits;
    limits.nesting = 10 * MaxLoadNesting;
    const auto in = KivStorage::MemoryReadStream::Create(out->GetBytes().data(), out->GetBytes().size(), limits);
    const auto loaded = CreateGenericTree(EnumOrvObjectType(0));
    EXPECT_EQ(loaded->LoadFromStream(in.Get()), ArchiveNestingTooDeep);
}

}  // namespace
