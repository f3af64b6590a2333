#include <random>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <KivStorage/SizeArchive.h>
#include <KivStorage/UnsavedParts.h>
#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivGenerics;
using namespace KivStorage;
using namespace StorageTest;

namespace {

/// Builds random trees, of which some hold what a save loses, more or less seldom.
class RandomTree {
public:
    RandomTree(unsigned seed, int oneInHowManyIsOdd) : random_(seed), rarity_(oneInHowManyIsOdd) {}

    KivBase::ReturnPtrI<Tree> Build() {
        auto tree = NewTree();
        const int tags[] = {1, 4100, 4264, 2, 100, 70000};
        Map* const root = NewRootMap(tree.Get(), tags[Below(6)]);
        if (Below(2) == 0) {
            root->SetTemporality(TemporalityPersistent);
        }
        const int slots = root->GetSlotCount();
        for (int i = 0; i < slots; ++i) {
            if (Below(3) == 0) {
                Fill(root->NewNode(i, Below(2) == 0 ? NodeTypeMap : NodeTypeVector, false, Tag()), 1);
            }
        }
        if (Odd()) {
            Fill(root->NewNode(Below(40), Kind()), 1);
        }
        return tree;
    }

private:
    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }
    bool Odd() { return Below(rarity_) == 0; }
    NodeType Kind() { return static_cast<NodeType>(1 + Below(12)); }
    SemanticTag Tag() { return SemanticTag(Odd() ? Below(3) - 1 : 1 + Below(100000)); }
    EnumOrvGenericsTemporality Temporality() {
        return static_cast<EnumOrvGenericsTemporality>(Odd() ? Below(8) - 2 : 1 + Below(4));
    }
    GUID Id() { return {static_cast<std::uint32_t>(Below(1000)), 2, 3, {static_cast<std::uint8_t>(Below(256))}}; }
    KivBase::WString Words() {
        KivBase::WString text(static_cast<std::size_t>(Below(20)), static_cast<char16_t>(1 + Below(60000)));
        if (Odd()) {
            text += u'\0';
        }
        return text;
    }

    void Fill(Node* node, int depth) {
        switch (node->GetType()) {
            case NodeTypeInteger: static_cast<Integer*>(node)->Set(Below(1 << 30) - (1 << 29)); break;
            case NodeTypeGlobalID: static_cast<GlobalID*>(node)->Set(Id()); break;
            case NodeTypeString: static_cast<String*>(node)->Set(Words()); break;
            case NodeTypeDouble: static_cast<Double*>(node)->Set(Below(1000) / 8.0); break;
            case NodeTypeBoolean: static_cast<Boolean*>(node)->Set(Below(2) == 0); break;
            case NodeTypeInteger64: {
                const std::int64_t low = Odd() ? 0x80000001LL : Below(1 << 30);
                static_cast<Integer64*>(node)->Set((static_cast<std::int64_t>(Below(2000) - 1000) * (1LL << 32)) + low);
                break;
            }
            case NodeTypeVector: FillVector(static_cast<Vector*>(node), depth); break;
            case NodeTypeMap: FillMap(static_cast<Map*>(node), depth); break;
            default: FillSet(node); break;
        }
    }

    void FillSet(Node* node) {
        for (int i = Below(4); i > 0; --i) {
            switch (node->GetType()) {
                case NodeTypeIntegerSet: static_cast<IntegerSet*>(node)->Add(Below(100)); break;
                case NodeTypeDoubleSet: static_cast<DoubleSet*>(node)->Add(Below(100) / 4.0); break;
                case NodeTypeIdSet: static_cast<IdSet*>(node)->Add(Id()); break;
                default: static_cast<StringSet*>(node)->Add(Words()); break;
            }
        }
    }

    void FillMap(Map* map, int depth) {
        for (int i = depth > 4 ? 0 : Below(6); i > 0; --i) {
            const int index = Below(3) == 0 ? Below(100000) : Below(12);
            Node* const child = map->NewNode(index, Kind(), false, Tag());
            if (Below(3) == 0) {
                child->SetTemporality(Temporality());
            }
            Fill(child, depth + 1);
        }
    }

    void FillVector(Vector* vector, int depth) {
        const NodeType kind = Kind();
        const auto common = Temporality();
        for (int i = depth > 4 ? 0 : Below(6); i > 0; --i) {
            Node* const element = vector->Insert(Odd() ? Below(vector->GetSize(TemporalityTemporary) + 1)
                                                       : vector->GetSize(TemporalityTemporary),
                                                 Odd() ? Kind() : kind, Tag());
            element->SetTemporality(Odd() ? Temporality() : common);
            Fill(element, depth + 1);
        }
    }

    std::mt19937 random_;
    int rarity_;
};

TEST(UnsavedPropertyTest, WhereNothingIsListedALoadGivesBackWhatWasSaved) {
    const unsigned first = std::random_device()();
    int clean = 0;
    int listed = 0;
    for (unsigned i = 0; i < 4000; ++i) {
        const unsigned seed = first + i;
        SCOPED_TRACE("seed " + std::to_string(seed));
        const bool withTransient = i % 2 == 1;
        const auto tree = RandomTree(seed, 10 + static_cast<int>(i % 7) * 60).Build();
        SaveOptions options;
        options.withTransient = withTransient;
        Bytes bytes;
        const Result saved = SaveTreeToMemory(tree.Get(), bytes, options);
        if (!FindUnsavedParts(tree.Get(), withTransient).empty()) {
            ASSERT_EQ(StorageUnsavedParts, saved.code);
            ++listed;
            continue;
        }
        ++clean;
        ASSERT_EQ("", saved.sentence);
        ASSERT_EQ(bytes.size(), PredictSize(tree.Get(), withTransient).bytes);
        const LoadResult loaded = LoadTreeFromMemory(bytes.data(), bytes.size());
        ASSERT_EQ("", loaded.result.sentence);
        ASSERT_EQ(Describe(tree.Get(), withTransient), Describe(loaded.tree.Get(), withTransient));
        const auto level = withTransient ? TemporalityTransient : TemporalityPersistent;
        // A comparison does not see children of temporality 0: such a tree differs from itself, and so from its copy.
        Node* const root = tree->GetRoot();
        ASSERT_EQ(root->Compare(root, level, true), root->Compare(loaded.tree->GetRoot(), level, true));
        // And once more: what was loaded saves as the same bytes.
        Bytes again;
        ASSERT_EQ("", SaveTreeToMemory(loaded.tree.Get(), again, options).sentence);
        ASSERT_TRUE(bytes == again);
    }
    // Otherwise nothing was shown.
    EXPECT_GE(clean, 200);
    EXPECT_GE(listed, 200);
}

TEST(UnsavedPropertyTest, WhereSomethingIsListedASaveThatGoesOnNeitherCrashesNorLies) {
    const unsigned first = std::random_device()();
    for (unsigned i = 0; i < 2000; ++i) {
        SCOPED_TRACE("seed " + std::to_string(first + i));
        const auto tree = RandomTree(first + i, 6).Build();
        SaveOptions options;
        options.saveDespiteLosses = true;
        Bytes bytes;
        ASSERT_EQ("", SaveTreeToMemory(tree.Get(), bytes, options).sentence);
        const LoadResult loaded = LoadTreeFromMemory(bytes.data(), bytes.size());
        ASSERT_EQ(loaded.result.Ok(), loaded.tree.Get() != nullptr);
        if (loaded.result.Ok() && FindUnsavedParts(tree.Get()).empty()) {
            ASSERT_EQ(Describe(tree.Get()), Describe(loaded.tree.Get()));
        }
    }
}

}  // namespace
