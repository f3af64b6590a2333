// How vectors write and size themselves.

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
#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

/// The first word of a vector of one element.
std::string HeaderOf(NodeType type, EnumOrvGenericsTemporality t) {
    const VectorTree tree;
    tree.GetRoot().SetTemporality(TemporalityPersistent);
    tree.GetRoot().Add(type)->SetTemporality(t);
    tree->UpdateDerivedTemporality();
    return WriteOf(tree.GetRoot())[1];
}

TEST(VectorArchiveTest, AnEmptyVectorIsAnObjectOfOneWord) {
    const VectorTree tree;
    EXPECT_EQ((Calls{"Begin 0206", "Long 00000000", "End"}), WriteOf(tree.GetRoot()));
}

TEST(VectorArchiveTest, TheOwnTemporalityStandsInTheTag) {
    const char* const tags[] = {"Begin 0006", "Begin 0206", "Begin 0406", "Begin 0606", "Begin 0806"};
    const VectorTree tree;
    for (int t = 0; t <= 4; ++t) {
        tree.GetRoot().SetTemporality(EnumOrvGenericsTemporality(t));
        EXPECT_EQ(tags[t], WriteOf(tree.GetRoot())[0]);
    }
}

TEST(VectorArchiveTest, LeavesFollowTheHeaderWithoutObjectsOfTheirOwn) {
    const VectorTree tree;
    AppendValue<Integer>(tree.GetRoot(), 5);
    AppendValue<Integer>(tree.GetRoot(), -1);
    EXPECT_EQ((Calls{"Begin 0206", "Long 00024100", "Long 00000005", "Long FFFFFFFF", "End"}), WriteOf(tree.GetRoot()));
}

TEST(VectorArchiveTest, TheTypeByteNamesTheKindOfTheFirstElement) {
    EXPECT_EQ("Long 00018100", HeaderOf(NodeTypeInteger, TemporalityPersistent));
    EXPECT_EQ("Long 00018200", HeaderOf(NodeTypeGlobalID, TemporalityPersistent));
    EXPECT_EQ("Long 00018300", HeaderOf(NodeTypeString, TemporalityPersistent));
    EXPECT_EQ("Long 00018400", HeaderOf(NodeTypeDouble, TemporalityPersistent));
    EXPECT_EQ("Long 00018500", HeaderOf(NodeTypeBoolean, TemporalityPersistent));
    EXPECT_EQ("Long 00010000", HeaderOf(NodeTypeVector, TemporalityPersistent));
    EXPECT_EQ("Long 00010000", HeaderOf(NodeTypeMap, TemporalityPersistent));
    EXPECT_EQ("Long 00018800", HeaderOf(NodeTypeIntegerSet, TemporalityPersistent));
    EXPECT_EQ("Long 00018900", HeaderOf(NodeTypeIdSet, TemporalityPersistent));
    EXPECT_EQ("Long 00018A00", HeaderOf(NodeTypeStringSet, TemporalityPersistent));
    EXPECT_EQ("Long 00018B00", HeaderOf(NodeTypeDoubleSet, TemporalityPersistent));
    EXPECT_EQ("Long 00018C00", HeaderOf(NodeTypeInteger64, TemporalityPersistent));
}

// kept-on-purpose: typebyte-two-bits
TEST(VectorArchiveTest, TheTypeByteHoldsTwoBitsOfTemporality) {
    EXPECT_EQ("Long 00010100", HeaderOf(NodeTypeInteger, TemporalityReserved));
    EXPECT_EQ("Long 00014100", HeaderOf(NodeTypeInteger, TemporalityDefault));
    EXPECT_EQ("Long 00018100", HeaderOf(NodeTypeInteger, TemporalityPersistent));
    EXPECT_EQ("Long 0001C100", HeaderOf(NodeTypeInteger, TemporalityTransient));
    EXPECT_EQ("Long 00010100", HeaderOf(NodeTypeInteger, TemporalityTemporary));
}

TEST(VectorArchiveTest, SetsKeepTheirOwnObjects) {
    const VectorTree tree;
    Append<IntegerSet>(tree.GetRoot())->Add(3);
    Append<IntegerSet>(tree.GetRoot());
    EXPECT_EQ((Calls{"Begin 0206", "Long 00024800", "Begin 040B", "Long 00000001", "Long 00000003", "End", "Begin 040B",
                     "Long 00000000", "End", "End"}),
              WriteOf(tree.GetRoot()));
}

TEST(VectorArchiveTest, CompositesOpenObjectsOfTheirOwn) {
    const VectorTree tree;
    Vector* const first = Append<Vector>(tree.GetRoot());
    first->SetTemporality(TemporalityPersistent);
    AppendValue<Boolean>(*first, true);
    Append<Vector>(tree.GetRoot())->SetTemporality(TemporalityPersistent);
    EXPECT_EQ((Calls{"Begin 0206", "Long 00020000", "Begin 0406", "Long 00014500", "Long 00000001", "End", "Begin 0406",
                     "Long 00000000", "End", "End"}),
              WriteOf(tree.GetRoot()));
}

TEST(VectorArchiveTest, UpTo32767ElementsTheCountTakesTwoBytes) {
    const VectorTree tree;
    for (int i = 0; i < 32767; ++i) {
        AppendValue<Integer>(tree.GetRoot(), i);
    }
    const Calls calls = WriteOf(tree.GetRoot());
    ASSERT_EQ(32770U, calls.size());
    EXPECT_EQ("Begin 0206", calls[0]);
    EXPECT_EQ("Long 7FFF4100", calls[1]);
    EXPECT_EQ("Long 00000000", calls[2]);
    EXPECT_EQ("Long 00007FFE", calls[32768]);
}

TEST(VectorArchiveTest, From32768ElementsOnTheCountTakesFourBytesAndAnotherTag) {
    const VectorTree tree;
    for (int i = 0; i < 32768; ++i) {
        AppendValue<Integer>(tree.GetRoot(), i);
    }
    const Calls calls = WriteOf(tree.GetRoot());
    ASSERT_EQ(32772U, calls.size());
    EXPECT_EQ("Begin 03FE", calls[0]);
    EXPECT_EQ("Long 00008000", calls[1]);
    EXPECT_EQ("Long 41000000", calls[2]);
    EXPECT_EQ("Long 00007FFF", calls[32770]);
}

TEST(VectorArchiveTest, FortyThousandElementsComeBack) {
    const VectorTree tree;
    for (int i = 0; i < 40000; ++i) {
        AppendValue<Integer>(tree.GetRoot(), i);
    }
    Calls calls = WriteOf(tree.GetRoot());
    EXPECT_EQ("Begin 03FE", calls[0]);
    EXPECT_EQ("Long 00009C40", calls[1]);
    EXPECT_EQ("Long 41000000", calls[2]);
    calls.erase(calls.begin());
    const VectorTree loaded;
    Reading reading(calls);
    EXPECT_EQ(0, loaded.GetRoot().ReadFromArchive(reading.decoder, true));
    ASSERT_EQ(40000, loaded.GetRoot().GetSize(TemporalityTemporary));
    EXPECT_EQ(0, loaded.GetRoot().Compare(&tree.GetRoot(), TemporalityTemporary, true));
    EXPECT_EQ(39999, static_cast<Integer*>(loaded.GetRoot().Get(39999))->Get());
}

// kept-on-purpose: vector-type-byte
TEST(VectorArchiveTest, MixedElementsAreWrittenUnderTheKindAndTemporalityOfTheFirst) {
    const VectorTree tree;
    AppendValue<Integer>(tree.GetRoot(), 1)->SetTemporality(TemporalityPersistent);
    static_cast<String*>(tree.GetRoot().Insert(1, NodeTypeString))->Set(u"two");
    const Calls calls = WriteOf(tree.GetRoot());
    EXPECT_EQ((Calls{"Begin 0206", "Long 00028100", "Long 00000001", "Text \"two\"", "End"}), calls);
    // It is read as two integers.
    Reading reading({calls.begin() + 1, calls.end()});
    const VectorTree loaded;
    EXPECT_EQ(kOtherCall, loaded.GetRoot().ReadFromArchive(reading.decoder, false));
    EXPECT_EQ((Calls{"ReadLong", "ReadLong", "ReadLong"}), reading.archive.operations);
}

TEST(VectorArchiveTest, ACompositeInFrontOfALeafMakesTheTypeByteZero) {
    const VectorTree tree;
    Append<Vector>(tree.GetRoot())->SetTemporality(TemporalityPersistent);
    tree.GetRoot().Insert(1, NodeTypeInteger);
    EXPECT_EQ((Calls{"Begin 0206", "Long 00020000", "Begin 0406", "Long 00000000", "End", "Long 00000000", "End"}),
              WriteOf(tree.GetRoot()));
}

TEST(VectorArchiveTest, AnElementThatCountsAsTransientIsWrittenOnlyWithTransientOnes) {
    const VectorTree tree;
    AppendValue<Integer>(tree.GetRoot(), 1);
    AppendValue<Integer>(tree.GetRoot(), 2)->SetTemporality(TemporalityTransient);
    EXPECT_EQ((Calls{"Begin 0206", "Long 00014100", "Long 00000001", "End"}), WriteOf(tree.GetRoot(), false));
    EXPECT_EQ((Calls{"Begin 0206", "Long 00024100", "Long 00000001", "Long 00000002", "End"}),
              WriteOf(tree.GetRoot(), true));
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 1 0"}), SizeOf(tree.GetRoot(), false));
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 1 0", "Sizes 0 0 0 1 0"}), SizeOf(tree.GetRoot(), true));
}

TEST(VectorArchiveTest, TheTypeByteIsThatOfTheFirstElementEvenWhereItIsNotWritten) {
    const VectorTree tree;
    AppendValue<Integer>(tree.GetRoot(), 1)->SetTemporality(TemporalityTransient);
    AppendValue<Integer>(tree.GetRoot(), 2);
    EXPECT_EQ((Calls{"Begin 0206", "Long 0001C100", "Long 00000002", "End"}), WriteOf(tree.GetRoot(), false));
}

// kept-on-purpose: vector-writes-every-element
TEST(VectorArchiveTest, WithTransientOnesATemporaryElementIsWrittenThoughItDoesNotCount) {
    const VectorTree tree;
    AppendValue<Integer>(tree.GetRoot(), 1);
    AppendValue<Integer>(tree.GetRoot(), 2)->SetTemporality(TemporalityTemporary);
    EXPECT_EQ((Calls{"Begin 0206", "Long 00014100", "Long 00000001", "Long 00000002", "End"}),
              WriteOf(tree.GetRoot(), true));
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 1 0", "Sizes 0 0 0 1 0"}), SizeOf(tree.GetRoot(), true));
}

TEST(VectorArchiveTest, WhereNothingCountsTheTypeByteIsZero) {
    const VectorTree tree;
    AppendValue<Integer>(tree.GetRoot(), 1)->SetTemporality(TemporalityTransient);
    EXPECT_EQ((Calls{"Begin 0206", "Long 00000000", "End"}), WriteOf(tree.GetRoot(), false));
}

// kept-on-purpose: vector-pushes-temporality
TEST(VectorArchiveTest, OnceTemporalitiesAreUpToDateAPersistentVectorWritesItsTransientElements) {
    const VectorTree tree;
    tree.GetRoot().SetTemporality(TemporalityPersistent);
    AppendValue<Integer>(tree.GetRoot(), 1)->SetTemporality(TemporalityTransient);
    AppendValue<Integer>(tree.GetRoot(), 2)->SetTemporality(TemporalityTemporary);
    tree->UpdateDerivedTemporality();
    EXPECT_EQ((Calls{"Begin 0406", "Long 0002C100", "Long 00000001", "Long 00000002", "End"}),
              WriteOf(tree.GetRoot(), false));
}

TEST(VectorArchiveTest, IsSizedAsAnObjectAndAWordAndItsElements) {
    const VectorTree tree;
    EXPECT_EQ(Calls{"Sizes 0 0 0 1 1"}, SizeOf(tree.GetRoot()));
    AppendValue<Double>(tree.GetRoot(), 1.0);
    AppendValue<Double>(tree.GetRoot(), 2.0);
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 1 0 0 0", "Sizes 0 1 0 0 0"}), SizeOf(tree.GetRoot()));
}

TEST(VectorArchiveTest, NestedVectorsAddTheirSizes) {
    const VectorTree tree;
    Append<GlobalID>(*Append<Vector>(tree.GetRoot()));
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 1 1", "Sizes 0 0 1 0 0"}), SizeOf(tree.GetRoot()));
}

TEST(VectorArchiveTest, AFailureAnywhereStopsTheWriteWithItsCode) {
    const VectorTree tree;
    for (int i = 0; i < 2; ++i) {
        Vector* const inner = Append<Vector>(tree.GetRoot());
        Append<Integer64>(*inner);
        Append<Integer64>(*inner);
    }
    // Outside: Begin, a word, End; each inner one: Begin, a word, four halves, End.
    for (int k = 1; k <= 17; ++k) {
        RecordingArchive archive;
        archive.counter.FailAt(k, -k);
        EXPECT_EQ(-k, tree.GetRoot().WriteToArchive(&archive, false));
        EXPECT_EQ(k, archive.counter.GetCount());
    }
    EXPECT_EQ(17U, WriteOf(tree.GetRoot()).size());
}

}  // namespace
}  // namespace KivGenerics::Testing
