#include <tuple>

#include <gtest/gtest.h>

#include <KivGenerics/String.h>

#include "core/TreeImpl.h"
#include "support/TestBuffer.h"
#include "support/TestTree.h"

using namespace KivGenerics;
using KivTests::BufferLog;
using KivTests::NewTree;
using KivTests::TestBuffers;

namespace {

using Arguments = std::tuple<int, int, std::int32_t, bool>;

// Block sizes by object type, in bytes.
constexpr std::int32_t kBlockSizes[77] = {
    4096, 4096,  4096, 4096, 4096, 4096, 4096, 4096, 1024,   // 0 to 8
    4096, 4096,  4096, 4096, 4096, 4096, 4096, 4096, 4096,   // 9 to 17
    1024, 4096,  4096, 1024, 4096, 4096, 1024, 1024, 1024,   // 18 to 26
    4096, 4096,  1024, 1024, 1024, 4096, 4096, 1024, 1024,   // 27 to 35
    4096, 1024,  4096, 4096, 4096, 4096, 4096, 4096, 1024,   // 36 to 44
    4096, 4096,  4096, 4096, 1024, 4096, 1024, 1024, 4096,   // 45 to 53
    4096, 16384, 4096, 4096, 4096, 4096, 4096, 4096, 4096,  // 54 to 62
    4096, 4096,  1024, 4096, 1024, 1024, 1024, 1024,         // 63 to 70
    1024, 1024,  1024, 1024, 1024, 1024,                     // 71 to 76
};

}  // namespace

TEST(ForestTest, EveryObjectTypeHasItsBlockSize) {
    TestBuffers buffers;
    for (int type = 0; type < 77; ++type) {
        buffers.log.created.clear();
        const auto tree = CreateGenericTree(EnumOrvObjectType(type));
        ASSERT_TRUE(tree);
        ASSERT_EQ(buffers.log.created.size(), 1U) << type;
        EXPECT_EQ(buffers.log.created[0], Arguments(1, 1, kBlockSizes[type], false)) << type;
    }
}

TEST(ForestTest, AnObjectTypeOutOfRangeIsReadAsTypeZero) {
    TestBuffers buffers;
    for (const int type : {-1, 77, 78, 1000, 2147483647, -2147483647 - 1}) {
        buffers.log.created.clear();
        const auto tree = CreateGenericTree(EnumOrvObjectType(type));
        ASSERT_EQ(buffers.log.created.size(), 1U);
        EXPECT_EQ(buffers.log.created[0], Arguments(1, 1, 4096, false)) << type;
    }
}

TEST(ForestTest, ATreeWithoutAnObjectTypeIsOfTypeZero) {
    TestBuffers buffers;
    auto* const tree = new TreeImpl();
    EXPECT_EQ(buffers.log.created, (std::vector<Arguments>{Arguments(1, 1, 4096, false)}));
    EXPECT_EQ(tree->AddRef(), 1);
    EXPECT_EQ(tree->Release(), 0);
    EXPECT_EQ(buffers.log.alive, 0);
}

TEST(ForestTest, ANewTreeIsEmptyWritableAndHeldOnce) {
    const auto tree = NewTree();
    EXPECT_EQ(tree->GetRoot(), nullptr);
    EXPECT_TRUE(tree->IsEmpty());
    EXPECT_FALSE(tree->IsReadOnly());
    EXPECT_EQ(tree->GetChangeCount(), 0);
    EXPECT_EQ(tree->AddRef(), 2);
    EXPECT_EQ(tree->AddRef(), 3);
    EXPECT_EQ(tree->Release(), 2);
    EXPECT_EQ(tree->Release(), 1);
}

TEST(ForestTest, TheBufferGoesWithTheLastReferenceOnTheTree) {
    TestBuffers buffers;
    auto tree = NewTree();
    auto second = tree;
    tree->NewRoot(NodeTypeMap);
    EXPECT_EQ(buffers.log.alive, 1);
    tree.Reset();
    EXPECT_EQ(buffers.log.alive, 1);
    EXPECT_FALSE(second->IsEmpty());
    second.Reset();
    EXPECT_EQ(buffers.log.alive, 0);
}

TEST(ForestTest, TheBufferGoesExactlyWhenTheLastTreeGoes) {
    TestBuffers buffers;
    auto first = NewTree();
    auto second = first->CreateTreeInForest();
    auto third = second->CreateTreeInForest();
    EXPECT_EQ(buffers.log.created.size(), 1U);
    auto* const text = static_cast<String*>(second->NewRoot(NodeTypeString));
    text->Set(u"still here, and long enough to lie outside the node");
    first.Reset();
    third.Reset();
    EXPECT_EQ(buffers.log.alive, 1);
    EXPECT_EQ(KivBase::WString(text->Get()), u"still here, and long enough to lie outside the node");
    second.Reset();
    EXPECT_EQ(buffers.log.alive, 0);
}

TEST(ForestTest, ATreeOfTheForestStartsEmptyWritableAndHeldOnce) {
    const auto tree = NewTree();
    tree->NewRoot(NodeTypeInteger);
    tree->SetReadOnly();
    const auto sibling = tree->CreateTreeInForest();
    ASSERT_TRUE(sibling);
    EXPECT_NE(sibling.Get(), tree.Get());
    EXPECT_TRUE(sibling->IsEmpty());
    EXPECT_FALSE(sibling->IsReadOnly());
    EXPECT_EQ(sibling->GetChangeCount(), 0);
    EXPECT_EQ(sibling->AddRef(), 2);
    EXPECT_EQ(sibling->Release(), 1);
    EXPECT_EQ(static_cast<TreeImpl*>(sibling.Get())->GetForest(), static_cast<TreeImpl*>(tree.Get())->GetForest());
}

TEST(ForestTest, AForestCountsItsTrees) {
    TestBuffers buffers;
    auto* const forest = new ForestImpl(EnumOrvObjectType(55));
    EXPECT_EQ(buffers.log.created, (std::vector<Arguments>{Arguments(1, 1, 16384, false)}));
    EXPECT_EQ(forest->AddRef(), 1);
    auto* const tree = new TreeImpl(forest);
    EXPECT_EQ(forest->AddRef(), 3);
    EXPECT_EQ(forest->Release(), 2);
    EXPECT_EQ(tree->AddRef(), 1);
    EXPECT_EQ(tree->Release(), 0);
    EXPECT_EQ(buffers.log.alive, 1);
    EXPECT_EQ(forest->Release(), 0);
    EXPECT_EQ(buffers.log.alive, 0);
}

namespace {

// Answers two numbers of its own to the two queries.
class AnsweringBuffer final : public KivBase::Buffer {
public:
    void* Allocate(std::size_t, std::size_t) override { throw std::bad_alloc(); }
    std::size_t BytesReserved() const override { return 111; }
    std::size_t BytesInUse() const override { return 222; }
    void Free(void*, std::size_t, std::size_t) noexcept override {}
};

}  // namespace

TEST(ForestTest, TheTwoQueriesPassOnWhatTheBufferAnswers) {
    const KivBase::BufferFactory former =
        KivBase::SetBufferFactory([](int, int, std::int32_t, bool) -> KivBase::Buffer* { return new AnsweringBuffer; });
    const auto tree = NewTree();
    KivBase::SetBufferFactory(former);
    EXPECT_EQ(tree->BufferQueryA(), 111U);
    EXPECT_EQ(tree->BufferQueryB(), 222U);
    const ForestImpl* const forest = static_cast<TreeImpl*>(tree.Get())->GetForest();
    EXPECT_EQ(forest->BufferQueryA(), 111U);
    EXPECT_EQ(forest->BufferQueryB(), 222U);
    EXPECT_EQ(tree->GetChangeCount(), 0);
}

TEST(ForestTest, WithoutABufferThereIsNoTree) {
    for (const auto refusal : {BufferLog::Refusal::Throw, BufferLog::Refusal::AnswerNull}) {
        TestBuffers buffers;
        buffers.log.refuseBuffers = true;
        buffers.log.refusal = refusal;
        EXPECT_FALSE(NewTree());
        EXPECT_EQ(buffers.log.created.size(), 1U);
        buffers.log.refuseBuffers = false;
        EXPECT_TRUE(NewTree());
        EXPECT_EQ(buffers.log.alive, 0);
    }
}

TEST(ForestTest, ATreeInterfaceCopiesAndAssignsNothing) {
    const auto first = NewTree();
    const auto second = NewTree();
    Node* const root = first->NewRoot(NodeTypeInteger);
    Tree& target = *second;
    target = *first;
    EXPECT_TRUE(second->IsEmpty());
    EXPECT_EQ(first->GetRoot(), root);
    EXPECT_EQ(second->GetChangeCount(), 0);
}
