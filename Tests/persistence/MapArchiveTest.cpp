// How maps write and size themselves.

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <gtest/gtest.h>

#include "core/NodeAccess.h"
#include "persistence/Archives.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

const Calls kEmptyVector = {"Begin 0406", "Long 00000000", "End"};

/// What a map of tag 1 with integers at the indexes 0 to count - 1 writes, and what becomes of it when it is read.
Calls WriteOfIntegers(int count) {
    const MapTree tree;
    for (int i = 0; i < count; ++i) {
        PutValue<Integer>(tree.GetRoot(), i, i);
    }
    Calls calls = WriteOf(tree.GetRoot());
    const MapTree loaded;
    Reading reading({calls.begin() + 1, calls.end()});
    EXPECT_EQ(1, reading.decoder.GetSemanticTag());
    EXPECT_EQ(0, loaded.GetRoot().ReadFromArchive(reading.decoder, calls[0] == "Begin 03FF"));
    EXPECT_EQ(count, loaded.GetRoot().GetSize(TemporalityTemporary));
    EXPECT_EQ(0, loaded.GetRoot().Compare(&tree.GetRoot(), TemporalityTemporary, true));
    return calls;
}

TEST(MapArchiveTest, AnEmptyMapIsAnObjectOfTagAndCount) {
    const MapTree tree;
    EXPECT_EQ((Calls{"Begin 0207", "Long 00010000", "End"}), WriteOf(tree.GetRoot()));
}

TEST(MapArchiveTest, TheOwnTemporalityStandsInTheObjectsTagCutTo16Bits) {
    const std::pair<int, const char*> rows[] = {{0, "Begin 0007"}, {1, "Begin 0207"}, {2, "Begin 0407"},
                                                {3, "Begin 0607"}, {4, "Begin 0807"}, {127, "Begin FE07"}};
    const MapTree tree;
    for (const auto& [t, begin] : rows) {
        tree.GetRoot().SetTemporality(EnumOrvGenericsTemporality(t));
        EXPECT_EQ(begin, WriteOf(tree.GetRoot())[0]);
    }
}

TEST(MapArchiveTest, TheSemanticTagTakesTwoBytesOrFour) {
    const std::pair<int, Calls> rows[] = {
        {0, {"Begin 0207", "Long 00000000", "End"}},
        {100, {"Begin 0207", "Long 00640000", "End"}},
        {32767, {"Begin 0207", "Long 7FFF0000", "End"}},
        {32768, {"Begin 0207", "Long 80008000", "Long 00000000", "End"}},
        {0x7FFFFFFF, {"Begin 0207", "Long FFFFFFFF", "Long 00000000", "End"}},
    };
    const MapTree tree;
    for (const auto& [tag, calls] : rows) {
        tree.GetRoot().SetSemanticTag(SemanticTag(tag));
        EXPECT_EQ(calls, WriteOf(tree.GetRoot()));
    }
}

// kept-on-purpose: tag-not-written
TEST(MapArchiveTest, ANegativeSemanticTagIsNotWritten) {
    const MapTree tree;
    PutValue<Integer>(tree.GetRoot(), 3, 5);
    for (const int tag : {-1, -2147483647 - 1}) {
        tree.GetRoot().SetSemanticTag(SemanticTag(tag));
        EXPECT_EQ((Calls{"Begin 0207", "Long 01838100", "Long 00000005", "End"}), WriteOf(tree.GetRoot()));
    }
}

TEST(MapArchiveTest, ACountBelow128TakesOneByte) {
    const Calls calls = WriteOfIntegers(127);
    EXPECT_EQ(209U, calls.size());  // 3 + 64 * 2 + 63 * 3 bytes are 80 words
    EXPECT_EQ("Begin 0207", calls[0]);
    EXPECT_EQ("Long 00017F80", calls[1]);
    EXPECT_EQ("Long 81818182", calls[2]);
}

TEST(MapArchiveTest, ACountBelow32768TakesTwoBytesWithTheFirstBitSet) {
    const Calls calls = WriteOfIntegers(128);
    EXPECT_EQ(211U, calls.size());  // 4 + 64 * 2 + 64 * 3 bytes are 81 words
    EXPECT_EQ("Begin 0207", calls[0]);
    EXPECT_EQ("Long 00018080", calls[1]);
    EXPECT_EQ("Long 80818181", calls[2]);
    const Calls most = WriteOfIntegers(32767);
    EXPECT_EQ(69617U, most.size());  // 4 + 64 * 2 + 8128 * 3 + 24575 * 5 bytes are 36848 words
    EXPECT_EQ("Begin 0207", most[0]);
    EXPECT_EQ("Long 0001FFFF", most[1]);
}

TEST(MapArchiveTest, ACountFrom32768OnTakesFourBytesAndAnotherTag) {
    const Calls calls = WriteOfIntegers(32768);
    EXPECT_EQ(69620U, calls.size());  // 6 + 64 * 2 + 8128 * 3 + 24576 * 5 bytes are 36850 words
    EXPECT_EQ("Begin 03FF", calls[0]);
    EXPECT_EQ("Long 00010000", calls[1]);
    EXPECT_EQ("Long 80008081", calls[2]);
}

TEST(MapArchiveTest, TheKeyOfALeafTakesOneTwoOrFourBytesAndItsTypeByte) {
    const std::pair<int, Calls> rows[] = {
        {0, {"Long 00010180", "Long 81000000"}},    {63, {"Long 000101BF", "Long 81000000"}},
        {64, {"Long 000101C0", "Long 40810000"}},   {8191, {"Long 000101DF", "Long FF810000"}},
        {8192, {"Long 000101E0", "Long 00200081"}}, {0x1FFFFFFF, {"Long 000101FF", "Long FFFFFF81"}},
    };
    for (const auto& [index, words] : rows) {
        const MapTree tree;
        PutValue<Integer>(tree.GetRoot(), index, 7);
        EXPECT_EQ((Calls{"Begin 0207"} + words + Calls{"Long 00000007", "End"}), WriteOf(tree.GetRoot())) << index;
    }
}

TEST(MapArchiveTest, TheKeyOfACompositeTakesOneTwoOrFourBytesAlone) {
    const std::pair<int, Calls> rows[] = {
        {0, {"Long 00010100"}},
        {63, {"Long 0001013F"}},
        {64, {"Long 00010140", "Long 40000000"}},
        {8191, {"Long 0001015F", "Long FF000000"}},
        {8192, {"Long 00010160", "Long 00200000"}},
        {0x1FFFFFFF, {"Long 0001017F", "Long FFFFFF00"}},
    };
    for (const auto& [index, words] : rows) {
        const MapTree tree;
        Put<Vector>(tree.GetRoot(), index);
        EXPECT_EQ((Calls{"Begin 0207"} + words + kEmptyVector + Calls{"End"}), WriteOf(tree.GetRoot())) << index;
    }
}

// kept-on-purpose: index-not-written
TEST(MapArchiveTest, AnIndexBeyondTheGreatestIsNotWritten) {
    const MapTree tree;
    Node* const leaf = PutValue<Integer>(tree.GetRoot(), 3, 7);
    for (const int index : {0x20000000, -1}) {
        NodeAccess::Place(*leaf, &tree.GetRoot(), index);
        EXPECT_EQ((Calls{"Begin 0207", "Long 00010181", "Long 00000007", "End"}), WriteOf(tree.GetRoot()));
    }
    NodeAccess::Place(*leaf, &tree.GetRoot(), 3);
    tree.GetRoot().Remove(3);
    Node* const vector = Put<Vector>(tree.GetRoot(), 3);
    NodeAccess::Place(*vector, &tree.GetRoot(), -1);
    EXPECT_EQ((Calls{"Begin 0207", "Long 00010100"} + kEmptyVector + Calls{"End"}), WriteOf(tree.GetRoot()));
    NodeAccess::Place(*vector, &tree.GetRoot(), 3);
}

TEST(MapArchiveTest, KeysAndValuesComeInFourRuns) {
    const MapTree tree(24576);  // three fixed slots
    Map& map = tree.GetRoot();
    Put<Map>(map, 200, 100);
    PutValue<Integer>(map, 9, 9);
    Put<Vector>(map, 5);
    PutValue<Boolean>(map, 2, true);
    PutValue<Integer>(map, 1, 1);
    Put<Vector>(map, 0);
    PutValue<Double>(map, 70, 1.0);
    EXPECT_EQ((Calls{"Begin 0207", "Long 60000781", "Long 81828589", "Long 81C04684", "Long 000540C8",  //
                     "Long 00000001", "Long 00000001",                                                  //
                     "Long 00000009", "Double 3FF0000000000000",                                        //
                     "Begin 0406", "Long 00000000", "End",                                              //
                     "Begin 0406", "Long 00000000", "End", "Begin 0407", "Long 00640000", "End",        //
                     "End"}),
              WriteOf(map));
}

TEST(MapArchiveTest, LeavesOfEveryKindStandWithTheirTypeByte) {
    const std::pair<NodeType, const char*> rows[] = {
        {NodeTypeInteger, "Long 81000000"},   {NodeTypeGlobalID, "Long 82000000"},
        {NodeTypeString, "Long 83000000"},    {NodeTypeDouble, "Long 84000000"},
        {NodeTypeBoolean, "Long 85000000"},   {NodeTypeIntegerSet, "Long 88000000"},
        {NodeTypeIdSet, "Long 89000000"},     {NodeTypeStringSet, "Long 8A000000"},
        {NodeTypeDoubleSet, "Long 8B000000"}, {NodeTypeInteger64, "Long 8C000000"},
    };
    for (const auto& [type, word] : rows) {
        const MapTree tree;
        tree.GetRoot().NewNode(0, type);
        const Calls calls = WriteOf(tree.GetRoot());
        EXPECT_EQ("Long 00010180", calls[1]);
        EXPECT_EQ(word, calls[2]);
    }
}

TEST(MapArchiveTest, TheTypeByteHoldsTheLeafsOwnTemporality) {
    const std::pair<int, const char*> rows[] = {{0, "Long 01000000"},
                                                {1, "Long 41000000"},
                                                {2, "Long 81000000"},
                                                {3, "Long C1000000"}};
    for (const auto& [t, word] : rows) {
        const MapTree tree;
        Put<Integer>(tree.GetRoot(), 0)->SetTemporality(EnumOrvGenericsTemporality(t));
        EXPECT_EQ(word, WriteOf(tree.GetRoot(), true)[2]);
    }
}

TEST(MapArchiveTest, ChildrenAreWrittenUpToTheLimit) {
    const MapTree tree;
    for (int t = 1; t <= 4; ++t) {
        PutValue<Integer>(tree.GetRoot(), t, t)->SetTemporality(EnumOrvGenericsTemporality(t));
        PutValue<Integer>(tree.GetRoot(), 20 + t, t)->SetTemporality(EnumOrvGenericsTemporality(t));
    }
    EXPECT_EQ((Calls{"Begin 0207", "Long 00010481", "Long 41828195", "Long 41968100",  //
                     "Long 00000001", "Long 00000002", "Long 00000001", "Long 00000002", "End"}),
              WriteOf(tree.GetRoot(), false));
    EXPECT_EQ((Calls{"Begin 0207", "Long 00010681", "Long 41828183", "Long C1954196", "Long 8197C100",  //
                     "Long 00000001", "Long 00000002", "Long 00000003",                               //
                     "Long 00000001", "Long 00000002", "Long 00000003", "End"}),
              WriteOf(tree.GetRoot(), true));
}

// kept-on-purpose: empty-composite-is-temporary
TEST(MapArchiveTest, AnEmptyCompositeOfDefaultTemporalityIsNotWritten) {
    const MapTree tree;
    Put<Map>(tree.GetRoot(), 0)->SetTemporality(TemporalityDefault);
    Put<Vector>(tree.GetRoot(), 1)->SetTemporality(TemporalityDefault);
    for (const bool withTransient : {false, true}) {
        EXPECT_EQ((Calls{"Begin 0207", "Long 00010000", "End"}), WriteOf(tree.GetRoot(), withTransient));
    }
}

TEST(MapArchiveTest, ACompositesLimitIsThatOfItsChildren) {
    const MapTree tree;
    Map* const inner = Put<Map>(tree.GetRoot(), 0);
    inner->SetTemporality(TemporalityDefault);
    PutValue<Integer>(*inner, 0, 8)->SetTemporality(TemporalityTransient);
    EXPECT_EQ((Calls{"Begin 0207", "Long 00010000", "End"}), WriteOf(tree.GetRoot(), false));
    EXPECT_EQ((Calls{"Begin 0207", "Long 00010100", "Begin 0207", "Long 00010180", "Long C1000000", "Long 00000008",
                     "End", "End"}),
              WriteOf(tree.GetRoot(), true));
}

// kept-on-purpose: map-size-estimate
TEST(MapArchiveTest, IsSizedAsAnObjectAWordTwoLongsAChildAndTheChildren) {
    const MapTree tree(107);  // one fixed slot
    Map& map = tree.GetRoot();
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 0 0"}), SizeOf(map));
    Put<GlobalID>(map, 0);
    Put<Vector>(map, 1);
    Put<Double>(map, 9000)->SetTemporality(TemporalityTransient);
    Put<Integer64>(map, 9001)->SetTemporality(TemporalityTemporary);
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 4 0", "Sizes 0 0 1 0 0", "Sizes 0 0 0 1 1"}), SizeOf(map, false));
    EXPECT_EQ((Calls{"Sizes 0 0 0 1 1", "Sizes 0 0 0 6 0", "Sizes 0 0 1 0 0", "Sizes 0 0 0 1 1", "Sizes 0 1 0 0 0"}),
              SizeOf(map, true));
}

TEST(MapArchiveTest, AFailureAnywhereStopsTheWriteWithItsCode) {
    const MapTree tree;
    Map& map = tree.GetRoot();
    Map* const inner = Put<Map>(map, 0);
    Put<Vector>(*inner, 0)->Add(NodeTypeInteger64);
    // Three Begin, a word each, two halves, three End.
    for (int k = 1; k <= 11; ++k) {
        RecordingArchive archive;
        archive.counter.FailAt(k, -k);
        EXPECT_EQ(-k, map.WriteToArchive(&archive, false));
        EXPECT_EQ(k, archive.counter.GetCount());
    }
    EXPECT_EQ(11U, WriteOf(map).size());
}

TEST(MapArchiveTest, AFailedWordOfTheHeaderIsForgottenWhereAPartialOneFollows) {
    const MapTree tree;
    PutValue<Integer>(tree.GetRoot(), 0, 5);
    RecordingArchive archive;
    archive.counter.FailAt(2, -3);
    EXPECT_EQ(0, tree.GetRoot().WriteToArchive(&archive, false));
    EXPECT_EQ((Calls{"Begin 0207", "Long 00010180", "Long 81000000", "Long 00000005", "End"}), archive.calls);
    RecordingArchive forGood;
    forGood.counter.FailAt(2, -3, true);
    EXPECT_EQ(-3, tree.GetRoot().WriteToArchive(&forGood, false));
    EXPECT_EQ((Calls{"Begin 0207", "Long 00010180", "Long 81000000"}), forGood.calls);
}

}  // namespace
}  // namespace KivGenerics::Testing
