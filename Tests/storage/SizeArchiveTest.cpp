#include <KivGenerics/Integer.h>
#include <KivGenerics/String.h>
#include <KivStorage/MemoryWriteStream.h>
#include <KivStorage/SaveTree.h>
#include <KivStorage/SizeArchive.h>
#include <KivStorage/SizeTotals.h>
#include <gtest/gtest.h>

#include "storage/Support.h"
#include "support/WholeVariant.h"

using namespace KivGenerics;
using namespace KivStorage;
using namespace StorageTest;

namespace {

void ExpectExact(Tree* tree, bool withTransient = false) {
    SaveOptions options;
    options.withTransient = withTransient;
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(tree, bytes, options).sentence);
    const PredictedSize predicted = PredictSize(tree, withTransient);
    EXPECT_EQ("", predicted.result.sentence);
    EXPECT_EQ(bytes.size(), predicted.bytes);
    SizeArchive archive;
    EXPECT_EQ(0, tree->SaveToArchive(&archive, withTransient, 255));
    EXPECT_EQ(bytes.size(), archive.GetBytes());
}

TEST(SizeArchiveTest, EveryOperationCountsItsItem) {
    SizeArchive size;
    const GUID id = {};
    Variant variant;
    EXPECT_EQ(68u, size.GetBytes());
    EXPECT_EQ(0u, size.GetBlocks());
    EXPECT_EQ(0, size.WriteShort(1));
    EXPECT_EQ(80u + 3u, size.GetBytes());
    EXPECT_EQ(1u, size.GetBlocks());
    EXPECT_EQ(0, size.WriteDouble(1));
    EXPECT_EQ(80u + 12u, size.GetBytes());
    EXPECT_EQ(0, size.WriteGUID(id));
    EXPECT_EQ(80u + 29u, size.GetBytes());
    EXPECT_EQ(0, size.WriteLong(1));
    EXPECT_EQ(80u + 34u, size.GetBytes());
    EXPECT_EQ(0, size.WriteInt64(1));
    EXPECT_EQ(80u + 44u, size.GetBytes());
    EXPECT_EQ(0, size.WriteWideString(u"abc", 3));
    EXPECT_EQ(80u + 55u, size.GetBytes());
    EXPECT_EQ(0, size.WriteString(u"ab"));
    EXPECT_EQ(80u + 64u, size.GetBytes());
    EXPECT_EQ(0, size.WriteVariant(variant));
    EXPECT_EQ(80u + 75u, size.GetBytes());
    EXPECT_EQ(0, size.BeginObject(1));
    EXPECT_EQ(80u + 78u, size.GetBytes());
    EXPECT_EQ(0, size.EndObject());
    EXPECT_EQ(80u + 79u, size.GetBytes());
    EXPECT_EQ(11u, size.GetItems());
}

TEST(SizeArchiveTest, WhatAStreamRefusesIsNotCounted) {
    SizeArchive size;
    EXPECT_EQ(StorageUnsupportedVariant, size.WriteVariant(Variant(8)));
    EXPECT_EQ(StorageNullPointer, size.WriteVariant(nullptr));
    EXPECT_EQ(StorageNullPointer, size.WriteWideString(nullptr, 1));
    EXPECT_EQ(0u, size.GetItems());
    EXPECT_EQ(0, size.WriteWideString(nullptr, 0));
    EXPECT_EQ(1u, size.GetItems());
}

TEST(SizeArchiveTest, TheSizeIsExactAroundTheBordersOfBlocks) {
    for (const std::uint32_t units : {32758u, 32759u, 32760u, 65519u, 65520u, 65521u, 65522u, 98281u}) {
        const KivBase::WString text(units, u'x');
        SizeArchive size;
        const auto stream = MemoryWriteStream::Create();
        size.WriteString(text);
        stream->PutWideString(text.data(), units);
        size.WriteShort(1);
        stream->PutShort(1);
        ASSERT_TRUE(stream->Finish().Ok());
        EXPECT_EQ(stream->GetBytes().size(), size.GetBytes()) << units;
    }
}

TEST(SizeArchiveTest, TheSizeOfATreeIsExact) {
    ExpectExact(NewTree().Get());
    ExpectExact(TreeOfEveryKind().Get());
    EXPECT_EQ(303u, PredictSize(TreeOfEveryKind().Get()).bytes);
    for (const int count : {1, 2, 127, 128, 8191, 8193, 32767, 32768, 40000}) {
        const auto tree = NewTree();
        auto* const map = static_cast<Map*>(NewRootMap(tree.Get())->NewNode(0, NodeTypeMap));
        auto* const vector = static_cast<Map*>(tree->GetRoot())->NewNode(1, NodeTypeVector);
        for (int i = 0; i < count; ++i) {
            map->NewNode(i, NodeTypeInteger);
            static_cast<Vector*>(vector)->Add(NodeTypeString);
        }
        ExpectExact(tree.Get());
    }
}

TEST(SizeArchiveTest, TransientNodesCountWhenTheyAreSaved) {
    const auto tree = TreeOfEveryKind();
    static_cast<Map*>(tree->GetRoot())->Get(0)->SetTemporality(TemporalityPersistent);
    auto* const map = static_cast<Map*>(static_cast<Map*>(tree->GetRoot())->Get(0));
    map->NewNode(20, NodeTypeInteger)->SetTemporality(TemporalityTransient);
    ExpectExact(tree.Get(), false);
    ExpectExact(tree.Get(), true);
    EXPECT_LT(PredictSize(tree.Get(), false).bytes, PredictSize(tree.Get(), true).bytes);
}

TEST(SizeArchiveTest, PredictingASizeLeavesATreeAsWritableAsItWas) {
    const auto tree = TreeOfEveryKind();
    EXPECT_TRUE(PredictSize(tree.Get()).result.Ok());
    EXPECT_FALSE(tree->IsReadOnly());
    tree->SetReadOnly();
    EXPECT_EQ(303u, PredictSize(tree.Get()).bytes);
    EXPECT_TRUE(tree->IsReadOnly());
}

TEST(SizeArchiveTest, WhatCannotBeSavedHasNoSize) {
    EXPECT_EQ(StorageNoTree, PredictSize(nullptr).result.code);
    const auto tree = NewTree();
    tree->NewRoot(NodeTypeInteger);
    const PredictedSize predicted = PredictSize(tree.Get());
    EXPECT_EQ(static_cast<std::int32_t>(0x80004001), predicted.result.code);
    EXPECT_EQ(0u, predicted.bytes);
    EXPECT_FALSE(tree->IsReadOnly());
}

TEST(SizeArchiveTest, TheTotalsAreWhatTheTreeReports) {
    SizeTotals totals;
    totals.AddSizes(1, 2, 3, 4, 5);
    totals.AddSizes(2147483647, 10, 10, 10, 10);
    EXPECT_EQ(2147483648LL, totals.GetShorts());
    EXPECT_EQ(12, totals.GetDoubles());
    EXPECT_EQ(13, totals.GetGuids());
    EXPECT_EQ(14, totals.GetLongs());
    EXPECT_EQ(15, totals.GetObjects());

    // The envelope 1 long and 1 object; root 1 + 2 and 1; the map 1 + 24 and 1; its empty map 1 and 1; the vector 1 + 2 and 1;
    // Integer, Boolean 1 each, Integer64 2, the sets 2, 1, 1, 1 and an object each.
    SizeTotals tree;
    EXPECT_EQ(0, TreeOfEveryKind()->SizeArchive(&tree, false));
    EXPECT_EQ(0, tree.GetShorts());
    EXPECT_EQ(2, tree.GetDoubles());
    EXPECT_EQ(2, tree.GetGuids());
    EXPECT_EQ(1 + 3 + 25 + 1 + 3 + 1 + 1 + 2 + 2 + 1 + 1 + 1, tree.GetLongs());
    EXPECT_EQ(1 + 1 + 1 + 1 + 1 + 4, tree.GetObjects());
    EXPECT_EQ(2u, tree.GetStrings());
    EXPECT_EQ(5u, tree.GetStringUnits());
}

}  // namespace
