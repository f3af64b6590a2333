// Every k-th allocation fails, once and for good, through every operation that allocates. Nothing leaks, nothing aborts, the
// tree stays sound and can be used; an operation on a single node leaves the tree as it was.

#include <cstdint>
#include <functional>
#include <new>
#include <ostream>
#include <vector>

#include <gtest/gtest.h>

#include <KivBase/Utf.h>
#include <KivGenerics/Iterator.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>

#include "faults/Documents.h"
#include "faults/EveryFault.h"

using namespace KivGenerics;

namespace {

using Faults::Promise;

struct Operation {
    const char* name;
    Promise promise;
    std::function<void(Tree& tree, Tree& other)> run;
};

void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.name;
}

template <class T>
T& At(Tree& tree, const char16_t* key) {
    return *node_cast<T>(tree.FindNodeByKey(key));
}

const char16_t kLongText[] = u"a text long enough that no node can hold it inside itself, whatever its library";

const Operation kOperations[] = {
    {"NewRoot", Promise::TreeUsable, [](Tree& tree, Tree&) { tree.NewRoot(NodeTypeVector); }},
    {"NewRootKeepingTheOld", Promise::TreeAsItWas, [](Tree& tree, Tree&) { tree.NewRoot(NodeTypeVector, true); }},
    {"CopyFromTree", Promise::TreeUsable, [](Tree& tree, Tree& other) { tree.CopyFromTree(&other); }},
    {"CopyFromNode", Promise::TreeUsable,
     [](Tree& tree, Tree& other) { tree.CopyFromNode(other.FindNodeByKey(u"3:")); }},
    {"CreateTreeInForest", Promise::TreeAsItWas, [](Tree& tree, Tree&) { tree.CreateTreeInForest(); }},
    {"FindNodeByKey", Promise::TreeAsItWas, [](Tree& tree, Tree&) { tree.FindNodeByKey(u"0:1:2:3:4:5:6:7:8:9:10:"); }},
    {"ClearTemporaryNodes", Promise::TreeUsable, [](Tree& tree, Tree&) { tree.ClearTemporaryNodes(); }},
    {"MapNewNodeInASlot", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<Map>(tree, u"").NewNode(9, NodeTypeString); }},
    {"MapNewNodeInANewOverflowStore", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<Map>(tree, u"").NewNode(99, NodeTypeString); }},
    {"MapNewNodeInAnOverflowStore", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<Map>(tree, u"0:").NewNode(99, NodeTypeMap); }},
    {"MapNewNodeReplacing", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<Map>(tree, u"0:").NewNode(100, NodeTypeMap, false, SemanticTag(4264)); }},
    {"MapNewNodeKeepingASlotsOld", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<Map>(tree, u"0:").NewNode(4, NodeTypeVector, true); }},
    {"MapNewNodeKeepingAnOverflowsOld", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<Map>(tree, u"0:").NewNode(101, NodeTypeVector, true); }},
    {"MapMoveToOverflow", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<Map>(tree, u"1:").Move(1000, tree.FindNodeByKey(u"0:100:")); }},
    {"VectorAdd", Promise::TreeAsItWas, [](Tree& tree, Tree&) { At<Vector>(tree, u"3:").Add(NodeTypeVector); }},
    {"VectorInsert", Promise::TreeAsItWas, [](Tree& tree, Tree&) { At<Vector>(tree, u"2:").Insert(0, NodeTypeMap); }},
    {"VectorNewNodeAppending", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<Vector>(tree, u"3:").NewNode(3, NodeTypeVector); }},
    {"VectorNewNodeKeepingTheOld", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<Vector>(tree, u"2:").NewNode(3, NodeTypeVector, true); }},
    {"VectorMove", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<Vector>(tree, u"3:0:").Move(0, tree.FindNodeByKey(u"0:4:")); }},
    {"VectorReserve", Promise::TreeAsItWas, [](Tree& tree, Tree&) { At<Vector>(tree, u"2:").Reserve(500); }},
    {"VectorAddCopy", Promise::TreeUsable,
     [](Tree& tree, Tree& other) { At<Vector>(tree, u"3:").AddCopy(other.FindNodeByKey(u"3:0:")); }},
    {"VectorInsertCopy", Promise::TreeUsable,
     [](Tree& tree, Tree& other) { At<Vector>(tree, u"3:").InsertCopy(1, other.FindNodeByKey(u"0:")); }},
    {"VectorPopulate", Promise::TreeUsable,
     [](Tree& tree, Tree& other) { At<Vector>(tree, u"2:").Populate(other.FindNodeByKey(u"3:")); }},
    {"ReplaceWithCopy", Promise::TreeUsable,
     [](Tree& tree, Tree& other) { At<Map>(tree, u"").ReplaceWithCopy(1, other.FindNodeByKey(u"0:")); }},
    {"MapPopulate", Promise::TreeUsable,
     [](Tree& tree, Tree& other) { At<Map>(tree, u"1:").Populate(other.FindNodeByKey(u"0:")); }},
    {"MapMerge", Promise::TreeUsable,
     [](Tree& tree, Tree& other) {
         At<Map>(tree, u"0:").Remove(4);
         At<Vector>(tree, u"3:").Remove(2);
         tree.GetRoot()->MergeWith(other.GetRoot(), false);
     }},
    {"Compare", Promise::TreeAsItWas,
     [](Tree& tree, Tree& other) { tree.GetRoot()->Compare(other.GetRoot(), TemporalityTemporary, true); }},
    {"StringSet", Promise::TreeAsItWas, [](Tree& tree, Tree&) { At<String>(tree, u"0:4:").Set(kLongText); }},
    {"StringPopulate", Promise::TreeAsItWas,
     [](Tree& tree, Tree& other) { At<String>(tree, u"0:4:").Populate(other.FindNodeByKey(u"3:0:0:")); }},
    {"IntegerSetAdd", Promise::TreeAsItWas, [](Tree& tree, Tree&) { At<IntegerSet>(tree, u"1:0:").Add(77); }},
    {"IntegerSetSet", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) {
         IntegerSet::Elements elements;
         elements.insert({1, 2, 3});
         At<IntegerSet>(tree, u"1:0:").Set(elements);
     }},
    {"DoubleSetGet", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) {
         DoubleSet::Elements elements;
         At<DoubleSet>(tree, u"1:1:").Get(elements);
     }},
    {"StringSetAdd", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) { At<StringSet>(tree, u"1:2:").Add(KivBase::WString(kLongText)); }},
    {"StringSetPopulate", Promise::TreeAsItWas,
     [](Tree& tree, Tree& other) { At<StringSet>(tree, u"1:2:").Populate(other.FindNodeByKey(u"1:2:")); }},
    {"IdSetAdd", Promise::TreeAsItWas, [](Tree& tree, Tree&) { At<IdSet>(tree, u"1:3:").Add(GUID{}); }},
    {"Keys", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) {
         KivBase::WString key;
         tree.FindNodeByKey(u"3:0:0:")->GetKey(key);
         tree.FindNodeByKey(u"3:0:0:")->GetSemanticTagKey(key);
         tree.FindNodeByKey(u"3:0:0:")->GetHumanReadableKey(1033, key);
     }},
    {"BreadthFirstWalk", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) {
         const auto iterator = tree.GetRoot()->GetIterator();
         while (iterator && iterator->Next() != nullptr) {
         }
     }},
    {"ToText", Promise::TreeAsItWas, [](Tree& tree, Tree&) { ToText(tree.FindNodeByKey(u"0:4:")); }},
    {"Misuse", Promise::TreeAsItWas,
     [](Tree& tree, Tree&) {
         try {
             At<Map>(tree, u"").Remove(1000);
         } catch (const std::exception&) {
             // The message itself may be what cannot be allocated.
         }
     }},
    {"Save", Promise::TreeUsable,
     [](Tree& tree, Tree&) {
         if (const auto stream = KivStorage::MemoryWriteStream::Create()) {
             tree.SaveToStream(stream.Get(), true);
         }
     }},
};

class AllocationTest : public testing::TestWithParam<Operation> {
protected:
    static void RunWithEveryFault(Faults::Lasting lasting, bool answersNull) {
        Faults::RunWithEveryFault(GetParam().run, GetParam().promise, lasting, answersNull);
    }
};

TEST_P(AllocationTest, FailingOnceLosesNothing) {
    RunWithEveryFault(Faults::Lasting::Once, false);
}

TEST_P(AllocationTest, FailingForGoodLosesNothing) {
    RunWithEveryFault(Faults::Lasting::ForGood, false);
}

TEST_P(AllocationTest, ABufferThatAnswersNullOnceLosesNothing) {
    RunWithEveryFault(Faults::Lasting::Once, true);
}

INSTANTIATE_TEST_SUITE_P(Operations, AllocationTest, testing::ValuesIn(kOperations),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(TreeAllocationTest, ATreeThatCannotBeMadeIsAnEmptyHandle) {
    const Faults::WrappedBuffers buffers;
    const long blocks = Faults::GetLiveBlocks();
    long k = 1;
    for (bool struck = true; struck; ++k) {
        KivBase::ReturnPtrI<Tree> tree;
        {
            const Faults::Armed armed(k, Faults::Lasting::Once);
            tree = CreateGenericTree(EnumOrvObjectType(0));
            struck = armed.HasStruck();
        }
        EXPECT_EQ(static_cast<bool>(tree), !struck) << k;
        tree.Reset();
        EXPECT_EQ(Faults::GetLiveBlocks(), blocks) << k;
    }
    EXPECT_EQ(k, 6) << "tree, forest, buffer and its wrapper are allocated, then one round passes without a fault";
}

/// Loads a saved document with the k-th allocation failing; answers whether one failed.
bool LoadWithFault(const KivStorage::SavedBytes& saved, long k, Faults::Lasting lasting) {
    bool struck = false;
    const auto tree = CreateGenericTree(EnumOrvObjectType(8));
    const auto stream = KivStorage::MemoryReadStream::Create(saved.data(), saved.size());
    {
        const Faults::Armed armed(k, lasting);
        try {
            tree->LoadFromStream(stream.Get());
        } catch (const std::bad_alloc&) {
            // Passed on to the host, as promised.
        }
        struck = armed.HasStruck();
    }
    EXPECT_EQ(CountUnsoundNodes(*tree), 0) << k;
    FillDocument(*tree);
    EXPECT_EQ(Describe(*tree), Describe(*NewDocument())) << k;
    return struck;
}

TEST(TreeAllocationTest, AnIteratorThatRunsOutOfMemoryGoesOnWhereItWas) {
    const auto tree = NewDocument();
    std::vector<Node*> expected;
    for (const auto iterator = tree->GetRoot()->GetIterator(); iterator->HasNext();) {
        expected.push_back(iterator->Next());
    }
    long k = 1;
    for (bool struck = true; struck; ++k) {
        std::vector<Node*> nodes;
        nodes.reserve(2 * expected.size());
        const auto iterator = tree->GetRoot()->GetIterator();
        const Faults::Armed armed(k, Faults::Lasting::Once);
        while (iterator->HasNext()) {
            try {
                nodes.push_back(iterator->Next());
            } catch (const std::bad_alloc&) {
                EXPECT_TRUE(armed.HasStruck());
            }
        }
        struck = armed.HasStruck();
        EXPECT_EQ(nodes, expected) << k;
    }
    EXPECT_GT(k, 5);
}

TEST(TreeAllocationTest, ALoadThatRunsOutOfMemoryLeavesATreeThatCanBeUsed) {
    const auto document = NewDocument();
    const auto saved = KivStorage::MemoryWriteStream::Create();
    ASSERT_EQ(document->SaveToStream(saved.Get(), true), 0);
    ASSERT_TRUE(saved->Finish().Ok());
    for (const auto lasting : {Faults::Lasting::Once, Faults::Lasting::ForGood}) {
        const Faults::WrappedBuffers buffers;
        const long blocks = Faults::GetLiveBlocks();
        long k = 1;
        while (LoadWithFault(saved->GetBytes(), k, lasting) && !HasFailure()) {
            ++k;
        }
        EXPECT_GT(k, 40) << "a document of some forty nodes takes more allocations than that";
        EXPECT_EQ(Faults::GetLiveBlocks(), blocks);
    }
}

}  // namespace
