// At the deepest nesting that loading accepts, every form and every question fits into a stack of 1 MiB.

#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/ResultCode.h>
#include <KivInspect/Annotate.h>
#include <KivInspect/Check.h>
#include <KivInspect/Diff.h>
#include <KivInspect/Dump.h>
#include <KivInspect/Find.h>
#include <KivInspect/ImportJson.h>
#include <KivInspect/Info.h>
#include <KivInspect/Key.h>
#include <KivInspect/Merge.h>
#include <KivInspect/Salvage.h>
#include <KivInspect/Statistics.h>
#include <KivInspect/View.h>

#include "faults/SmallStack.h"
#include "inspect/Corpus.h"
#include "inspect/Saved.h"

namespace InspectTest {
namespace {

using namespace KivGenerics;
using namespace KivInspect;

/// MaxLoadNesting levels, the root map included, of one kind or of both in turn; a leaf at the bottom.
KivBase::ReturnPtrI<Tree> DeepTree(NodeType odd, NodeType even) {
    auto tree = NewTree();
    Composite* node = NewRootMap(tree.Get());
    for (int level = 2; level <= MaxLoadNesting; ++level) {
        node = static_cast<Composite*>(node->NewNode(0, level % 2 == 0 ? even : odd));
    }
    New<Integer>(node, 0)->Set(7);
    return tree;
}

void UseForms(Tree* tree) {
    for (const auto& loaded : {FromText(ToText(tree)), FromJson(ToJson(tree))}) {
        ASSERT_TRUE(loaded.result.Ok()) << loaded.result.sentence;
        EXPECT_TRUE(AreSame(tree, loaded.tree.Get()));
    }
    StringSink sink;
    EXPECT_FALSE(WriteDump(tree->GetRoot(), sink)) << "something is left out";
    WriteDot(tree, {}, sink);
    WriteSvg(tree, {}, sink);
    WritePage({tree, "tree"}, nullptr, nullptr, sink);
    EXPECT_LT(30'000U, sink.GetText().size());
}

void UseTwo(Tree* tree, Tree* other) {
    EXPECT_EQ(0U, Merge(tree, other, {}, [](const Conflict&) {}));
    const auto base = FromText(ToText(tree));
    EXPECT_EQ(0U, Merge3(base.tree.Get(), tree, other, {}, [](const Conflict&) {}));
    StringSink sink;
    const ViewTree right = {other, "right"};
    WritePage({tree, "left"}, &right, nullptr, sink);
    EXPECT_LT(30'000U, sink.GetText().size());
}

void AskForTheDeepest(Tree* tree) {
    FindQuery query;
    query.value = "7";
    int found = 0;
    Find(tree, query, nullptr, [&](Node* node, const Walk&) {
        ++found;
        EXPECT_EQ(FindNode(tree, GetKey(node)).node, node);
        return true;
    });
    EXPECT_EQ(1, found);
    CheckTree(tree);
}

void ReadSaved(Tree* tree) {
    const std::vector<std::uint8_t> bytes = Save(tree);
    StringSink sink;
    EXPECT_TRUE(Annotate(*Scan(bytes), sink).Ok());
    EXPECT_TRUE(ReadInfo(*Scan(bytes)).result.Ok());
    EXPECT_TRUE(ReadStatistics(*Scan(bytes), 10).result.Ok());
    CheckFile(*Scan(bytes));
    const auto salvaged = Salvage(*Scan(bytes));
    ASSERT_TRUE(salvaged.tree);
    EXPECT_TRUE(AreSame(tree, salvaged.tree.Get()));
}

void UseEverything(NodeType odd, NodeType even) {
    const auto tree = DeepTree(odd, even);
    UseForms(tree.Get());
    UseTwo(tree.Get(), DeepTree(odd, even).Get());
    AskForTheDeepest(tree.Get());
    ReadSaved(tree.Get());
}

TEST(DepthTest, NestedMapsFitIntoASmallStack) {
    RunOnSmallStack([] { UseEverything(NodeTypeMap, NodeTypeMap); });
}

TEST(DepthTest, NestedVectorsFitIntoASmallStack) {
    RunOnSmallStack([] { UseEverything(NodeTypeVector, NodeTypeVector); });
}

TEST(DepthTest, MapsAndVectorsInTurnFitIntoASmallStack) {
    RunOnSmallStack([] { UseEverything(NodeTypeVector, NodeTypeMap); });
}

TEST(DepthTest, AMillionBracketsAreRefusedInASmallStack) {
    RunOnSmallStack([] {
        const std::string brackets(1'000'000, '[');
        MemorySource source(brackets);
        EXPECT_FALSE(ImportJson(source, "brackets").result.Ok());
        EXPECT_FALSE(FromJson(brackets).result.Ok());
    });
}

}  // namespace
}  // namespace InspectTest
