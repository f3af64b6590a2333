#include <functional>
#include <new>
#include <vector>

#include <gtest/gtest.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Vector.h>

#include "core/Invariants.h"
#include "core/TreeImpl.h"
#include "support/Kinds.h"
#include "support/TestBuffer.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::BufferLog;
using KivTests::kAllKinds;
using KivTests::NewTree;
using KivTests::TestBuffers;

namespace {

class OutOfMemoryTest : public ::testing::Test {
protected:
    TestBuffers buffers;
    KivBase::ReturnPtrI<Tree> tree = NewTree();
    KivBase::ReturnPtrI<Tree> other = NewTree();
    Map* root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Integer* leaf = static_cast<Integer*>(root->NewNode(0, NodeTypeInteger));
    Vector* vector = static_cast<Vector*>(root->NewNode(1, NodeTypeVector));
    Map* source = static_cast<Map*>(other->NewRoot(NodeTypeMap));

    void SetUp() override {
        leaf->Set(5);
        vector->Add(NodeTypeInteger);
        source->NewNode(0, NodeTypeString);
        source->NewNode(100, NodeTypeInteger);
    }

    struct Row {
        const char* name;
        std::function<Node*()> create;
    };
    /// Operations that make a node, none of which finds one waiting.
    std::vector<Row> Creations() {
        return {
            {"NewRoot", [this] { return tree->NewRoot(NodeTypeDouble); }},
            {"NewRoot keeping", [this] { return tree->NewRoot(NodeTypeVector, true); }},
            {"NewNode in a slot", [this] { return root->NewNode(3, NodeTypeDouble); }},
            {"NewNode over a child", [this] { return root->NewNode(0, NodeTypeDouble); }},
            {"NewNode keeping", [this] { return root->NewNode(0, NodeTypeVector, true); }},
            {"NewNode in the overflow store", [this] { return root->NewNode(100, NodeTypeDouble); }},
            {"NewNode in a vector", [this] { return vector->NewNode(1, NodeTypeDouble); }},
            {"NewNode over an element", [this] { return vector->NewNode(0, NodeTypeDouble); }},
            {"NewNode keeping an element", [this] { return vector->NewNode(0, NodeTypeMap, true); }},
            {"Add", [this] { return vector->Add(NodeTypeInteger); }},
            {"Insert", [this] { return vector->Insert(0, NodeTypeMap); }},
            {"AddCopy", [this] { return vector->AddCopy(leaf); }},
            {"InsertCopy", [this] { return vector->InsertCopy(0, source); }},
            {"ReplaceWithCopy", [this] { return root->ReplaceWithCopy(0, source); }},
        };
    }

    void ExpectAsBefore(const char* name) {
        EXPECT_EQ(tree->GetRoot(), root) << name;
        EXPECT_EQ(root->GetSize(TemporalityTemporary), 2) << name;
        EXPECT_EQ(root->Get(0), leaf) << name;
        EXPECT_EQ(leaf->GetParent(), root) << name;
        EXPECT_EQ(leaf->Get(), 5) << name;
        EXPECT_EQ(root->Get(1), vector) << name;
        EXPECT_EQ(vector->GetSize(TemporalityTemporary), 1) << name;
        EXPECT_EQ(CheckInvariants(root), 0) << name;
    }
};

}  // namespace

TEST_F(OutOfMemoryTest, WhereTheBufferThrowsCreatingThrowsAndTheTreeStaysAsItWas) {
    for (const Row& row : Creations()) {
        buffers.FailAfter(0, BufferLog::Refusal::Throw);
        EXPECT_THROW(row.create(), std::bad_alloc) << row.name;
        buffers.Recover();
        ExpectAsBefore(row.name);
    }
    EXPECT_NE(root->NewNode(3, NodeTypeDouble), nullptr);
    EXPECT_NE(vector->Add(NodeTypeInteger), nullptr);
    EXPECT_EQ(CheckInvariants(root), 0);
}

TEST_F(OutOfMemoryTest, WhereTheBufferAnswersNullCreatingAnswersNullAndTheTreeStaysAsItWas) {
    for (const Row& row : Creations()) {
        buffers.FailAfter(0, BufferLog::Refusal::AnswerNull);
        EXPECT_EQ(row.create(), nullptr) << row.name;
        buffers.Recover();
        ExpectAsBefore(row.name);
    }
    EXPECT_NE(root->NewNode(3, NodeTypeDouble), nullptr);
    EXPECT_EQ(CheckInvariants(root), 0);
}

TEST_F(OutOfMemoryTest, EveryKindIsRefusedAlikeAndMadeAfterwards) {
    for (const NodeType kind : kAllKinds) {
        const auto fresh = NewTree();
        buffers.FailAfter(0, BufferLog::Refusal::Throw);
        EXPECT_THROW(fresh->NewRoot(kind), std::bad_alloc) << kind;
        buffers.FailAfter(0, BufferLog::Refusal::AnswerNull);
        EXPECT_EQ(fresh->NewRoot(kind), nullptr) << kind;
        EXPECT_TRUE(fresh->IsEmpty()) << kind;
        buffers.Recover();
        EXPECT_NE(fresh->NewRoot(kind), nullptr) << kind;
    }
}

TEST_F(OutOfMemoryTest, AMapWhoseOverflowStoreCannotGrowStaysAsItWas) {
    const std::function<Node*(Map&, int)> creations[] = {
        [](Map& map, int index) { return map.NewNode(index, NodeTypeInteger); },
        [](Map& map, int index) { return map.NewNode<Integer>(index); },
        [](Map& map, int index) { return map.NewNode<Vector>(index); },
    };
    constexpr int kChildren = 60;
    constexpr int kMostRequests = 3;
    int place = 2;
    for (const auto& create : creations) {
        Map& map = *root->NewNode<Map>(place++);
        int refusals = 0;
        for (int i = 0; i < kChildren; ++i) {
            for (int served = 0; served < kMostRequests; ++served) {
                buffers.FailAfter(served, BufferLog::Refusal::Throw);
                try {
                    create(map, 100 + i);
                } catch (const std::bad_alloc&) {
                    ++refusals;
                }
                buffers.Recover();
                const int size = map.GetSize(TemporalityTemporary);
                EXPECT_EQ(map.Get(100 + i) != nullptr, size == i + 1) << i;
                EXPECT_EQ(CheckInvariants(&map), 0) << i;
                if (size == i + 1) {
                    break;
                }
            }
            EXPECT_EQ(map.GetSize(TemporalityTemporary), i + 1);
        }
        EXPECT_GE(refusals, kChildren);
    }
}

TEST_F(OutOfMemoryTest, AVectorMakesRoomForAChildBeforeTheChild) {
    const std::function<void(Vector&)> creations[] = {
        [](Vector& full) { full.Add(NodeTypeInteger); },
        [](Vector& full) { full.Add<Integer>(); },
        [](Vector& full) { full.Insert(0, NodeTypeInteger); },
        [](Vector& full) { full.NewNode(full.GetSize(TemporalityTemporary), NodeTypeInteger); },
    };
    int index = 2;
    for (const auto& create : creations) {
        auto& filled = *static_cast<Vector*>(root->NewNode(index++, NodeTypeVector));
        std::vector<int> refusedAt;
        for (int i = 0; i < 40; ++i) {
            const int size = filled.GetSize(TemporalityTemporary);
            // The one request that is served is the room's where the vector is full, and stays; else it is the child's.
            buffers.FailAfter(1, BufferLog::Refusal::Throw);
            try {
                create(filled);
                EXPECT_EQ(filled.GetSize(TemporalityTemporary), size + 1);
            } catch (const std::bad_alloc&) {
                EXPECT_EQ(filled.GetSize(TemporalityTemporary), size);
                refusedAt.push_back(size);
            }
            buffers.Recover();
        }
        EXPECT_EQ(refusedAt, (std::vector<int>{0, 4, 8, 16, 32}));
        EXPECT_EQ(CheckInvariants(root), 0);
    }
}

TEST_F(OutOfMemoryTest, AWaitingNodeNeedsNoMemory) {
    root->Remove(0);
    buffers.FailAfter(0, BufferLog::Refusal::Throw);
    EXPECT_EQ(root->NewNode(0, NodeTypeInteger), leaf);
    buffers.Recover();
}

TEST_F(OutOfMemoryTest, AnOverflowStoreThatCannotBeMadeLeavesTheMapAsItWas) {
    for (const auto refusal : {BufferLog::Refusal::Throw, BufferLog::Refusal::AnswerNull}) {
        // The node is served; then the store is not, or its entry is not.
        for (int served = 1; served <= 2; ++served) {
            const auto fresh = NewTree();
            auto* const map = static_cast<Map*>(fresh->NewRoot(NodeTypeMap));
            buffers.FailAfter(served, refusal);
            EXPECT_THROW(map->NewNode(100, NodeTypeDouble), std::bad_alloc);
            buffers.Recover();
            EXPECT_TRUE(map->IsEmpty());
            EXPECT_EQ(map->HasOverflow(), served == 2);
            EXPECT_EQ(CheckInvariants(map), 0);
            Node* const node = map->NewNode(100, NodeTypeDouble);
            EXPECT_EQ(map->Get(100), node);
            EXPECT_EQ(CheckInvariants(map), 0);
        }
    }
}

TEST_F(OutOfMemoryTest, AMoveIntoTheStoreThatFailsLeavesTheNodeWhereItWas) {
    for (int served = 0; served <= 1; ++served) {
        buffers.FailAfter(served, BufferLog::Refusal::Throw);
        EXPECT_THROW(root->Move(100, leaf), std::bad_alloc);
        buffers.Recover();
        ExpectAsBefore("Move");
        EXPECT_EQ(leaf->GetIndex(), 0);
    }
    root->Move(100, leaf);
    EXPECT_EQ(root->Get(100), leaf);
}

TEST_F(OutOfMemoryTest, ACopyThatFailsLeavesAUsableTree) {
    for (const auto refusal : {BufferLog::Refusal::Throw, BufferLog::Refusal::AnswerNull}) {
        for (int served = 0;; ++served) {
            const auto target = NewTree();
            buffers.FailAfter(served, refusal);
            try {
                target->CopyFromTree(other.Get());
            } catch (const std::bad_alloc&) {
                // Expected on most rounds; what matters is what is left.
            }
            const bool enough = buffers.log.served != 0;
            buffers.Recover();
            if (target->GetRoot() != nullptr) {
                EXPECT_EQ(CheckInvariants(target->GetRoot()), 0) << served;
            }
            Node* const copy = target->CopyFromTree(other.Get());
            ASSERT_NE(copy, nullptr);
            EXPECT_EQ(copy->Compare(source, TemporalityTemporary, true), 0) << served;
            if (enough) {
                EXPECT_GE(served, 3);
                break;
            }
        }
    }
}

TEST_F(OutOfMemoryTest, AVectorThatNothingCouldBeCopiedIntoIsStillTemporary) {
    constexpr int kElements = 20;
    auto* const original = static_cast<Vector*>(other->NewRoot(NodeTypeVector));
    for (int i = 0; i < kElements; ++i) {
        original->Add<Integer>();
    }
    int copied = 0;
    for (int served = 0; copied < kElements; ++served) {
        const auto fresh = NewTree();
        auto* const copy = static_cast<Vector*>(fresh->NewRoot(NodeTypeVector));
        buffers.FailAfter(served, BufferLog::Refusal::Throw);
        try {
            copy->Populate(original);
        } catch (const std::bad_alloc&) {
            EXPECT_LE(served, kElements);
        }
        buffers.Recover();
        copied = copy->GetSize(TemporalityTemporary);
        fresh->UpdateDerivedTemporality();
        EXPECT_EQ(copied == 0 ? TemporalityTemporary : TemporalityPersistent, copy->GetDerivedTemporality()) << served;
        ASSERT_LT(served, 2 * kElements);
    }
}

TEST_F(OutOfMemoryTest, AVectorThatANodeCouldNotBeInsertedIntoIsStillTemporary) {
    const auto fresh = NewTree();
    auto* const list = static_cast<Vector*>(fresh->NewRoot(NodeTypeVector));
    auto* const factory = static_cast<TreeImpl*>(fresh.Get());
    Node* const free = factory->CreateNode(NodeTypeInteger, *factory, -1, SemanticTagNone);
    buffers.FailAfter(0, BufferLog::Refusal::Throw);
    EXPECT_THROW(list->InsertNode(0, free), std::bad_alloc);
    buffers.Recover();
    fresh->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityTemporary, list->GetDerivedTemporality());
    list->InsertNode(0, free);
    fresh->UpdateDerivedTemporality();
    EXPECT_EQ(TemporalityPersistent, list->GetDerivedTemporality());
}

TEST_F(OutOfMemoryTest, ATextThatCannotGrowKeepsItsOldValue) {
    auto* const text = static_cast<String*>(root->NewNode(2, NodeTypeString));
    text->Set(u"old");
    const KivBase::WString longText(1000, u'x');
    for (const auto refusal : {BufferLog::Refusal::Throw, BufferLog::Refusal::AnswerNull}) {
        buffers.FailAfter(0, refusal);
        EXPECT_THROW(text->Set(longText), std::bad_alloc);
        buffers.Recover();
        EXPECT_EQ(KivBase::WString(text->Get()), u"old");
    }
    text->Set(longText);
    EXPECT_EQ(text->GetLength(), 1000U);
}

TEST_F(OutOfMemoryTest, ATreeOfTheForestNeedsNoMemoryOfTheBuffer) {
    buffers.FailAfter(0, BufferLog::Refusal::Throw);
    EXPECT_TRUE(tree->CreateTreeInForest());
    buffers.Recover();
}
