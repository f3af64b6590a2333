// How scalar leaves write, read and size themselves.

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/String.h>
#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

const GUID kId = {0x00112233, 0x4455, 0x6677, {0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};

std::int64_t LoadedInt64(std::int64_t saved) {
    const TreeOf<Integer64> tree;
    tree.GetRoot().Set(saved);
    Reading reading(WriteOf(tree.GetRoot()));
    tree.GetRoot().Set(0);
    EXPECT_EQ(0, tree.GetRoot().ReadFromArchive(reading.decoder, false));
    return tree.GetRoot().Get();
}

TEST(LeafArchiveTest, AnIntegerIsOneLong) {
    const TreeOf<Integer> tree;
    tree.GetRoot().Set(-2);
    EXPECT_EQ(Calls{"Long FFFFFFFE"}, WriteOf(tree.GetRoot()));
    EXPECT_EQ(Calls{"Sizes 0 0 0 1 0"}, SizeOf(tree.GetRoot()));
    Reading reading({"Long 80000000"});
    EXPECT_EQ(0, tree.GetRoot().ReadFromArchive(reading.decoder, false));
    EXPECT_EQ(-2147483647 - 1, tree.GetRoot().Get());
}

TEST(LeafArchiveTest, ABooleanIsALongOfZeroOrOne) {
    const TreeOf<Boolean> tree;
    EXPECT_EQ(Calls{"Long 00000000"}, WriteOf(tree.GetRoot()));
    tree.GetRoot().Set(true);
    EXPECT_EQ(Calls{"Long 00000001"}, WriteOf(tree.GetRoot()));
    EXPECT_EQ(Calls{"Sizes 0 0 0 1 0"}, SizeOf(tree.GetRoot()));
    Reading zero({"Long 00000000"});
    EXPECT_EQ(0, tree.GetRoot().ReadFromArchive(zero.decoder, false));
    EXPECT_FALSE(tree.GetRoot().Get());
}

TEST(LeafArchiveTest, ABooleanReadsAnythingButZeroAsTrue) {
    const TreeOf<Boolean> tree;
    Reading reading({"Long 80000000"});
    EXPECT_EQ(0, tree.GetRoot().ReadFromArchive(reading.decoder, false));
    EXPECT_TRUE(tree.GetRoot().Get());
}

TEST(LeafArchiveTest, AnInteger64IsTwoLongsLowHalfFirst) {
    const TreeOf<Integer64> tree;
    tree.GetRoot().Set(0x0123456789ABCDEF);
    EXPECT_EQ((Calls{"Long 89ABCDEF", "Long 01234567"}), WriteOf(tree.GetRoot()));
    EXPECT_EQ(Calls{"Sizes 0 0 0 2 0"}, SizeOf(tree.GetRoot()));
    tree.GetRoot().Set(-1);
    EXPECT_EQ((Calls{"Long FFFFFFFF", "Long FFFFFFFF"}), WriteOf(tree.GetRoot()));
}

TEST(LeafArchiveTest, AnInteger64ComesBackWhereBit31IsClear) {
    EXPECT_EQ(0, LoadedInt64(0));
    EXPECT_EQ(0x7FFFFFFF, LoadedInt64(0x7FFFFFFF));
    EXPECT_EQ(0x100000000, LoadedInt64(0x100000000));
    EXPECT_EQ(0x7FFFFFFF7FFFFFFF, LoadedInt64(0x7FFFFFFF7FFFFFFF));
    EXPECT_EQ(-0x100000000, LoadedInt64(-0x100000000));
}

// kept-on-purpose: integer64-low-half
TEST(LeafArchiveTest, AnInteger64WithBit31SetComesBackLessByTwoToThe32) {
    EXPECT_EQ(0x80000000, LoadedInt64(0x180000000));
    EXPECT_EQ(-0x80000000LL, LoadedInt64(0x80000000));
    EXPECT_EQ(-1 - 0x100000000, LoadedInt64(-1));
    EXPECT_EQ(0x7FFFFFFF80000000, LoadedInt64(static_cast<std::int64_t>(0x8000000080000000)));
}

TEST(LeafArchiveTest, ADoubleIsItsBits) {
    const TreeOf<Double> tree;
    tree.GetRoot().Set(-1.5);
    EXPECT_EQ(Calls{"Double BFF8000000000000"}, WriteOf(tree.GetRoot()));
    EXPECT_EQ(Calls{"Sizes 0 1 0 0 0"}, SizeOf(tree.GetRoot()));
    Reading reading({"Double 8000000000000000"});
    EXPECT_EQ(0, tree.GetRoot().ReadFromArchive(reading.decoder, false));
    EXPECT_EQ(Calls{"Double 8000000000000000"}, WriteOf(tree.GetRoot()));
}

TEST(LeafArchiveTest, AGlobalIdIsItsSixteenBytes) {
    const TreeOf<GlobalID> tree;
    tree.GetRoot().Set(kId);
    EXPECT_EQ(Calls{"Guid 00112233-4455-6677-8899AABBCCDDEEFF"}, WriteOf(tree.GetRoot()));
    EXPECT_EQ(Calls{"Sizes 0 0 1 0 0"}, SizeOf(tree.GetRoot()));
    Reading reading({"Guid FFEEDDCC-BBAA-9988-7766554433221100"});
    EXPECT_EQ(0, tree.GetRoot().ReadFromArchive(reading.decoder, false));
    EXPECT_EQ(0xFFEEDDCC, tree.GetRoot().Get().Data1);
    EXPECT_EQ(0xBBAA, tree.GetRoot().Get().Data2);
    EXPECT_EQ(0x9988, tree.GetRoot().Get().Data3);
    EXPECT_EQ(0x77, tree.GetRoot().Get().Data4[0]);
    EXPECT_EQ(0x00, tree.GetRoot().Get().Data4[7]);
}

TEST(LeafArchiveTest, AStringIsItsWholeTextWithEmbeddedNul) {
    const TreeOf<String> tree;
    EXPECT_EQ(Calls{"Text \"\""}, WriteOf(tree.GetRoot()));
    tree.GetRoot().Set(KivBase::WString(u"a\0\u20ACb", 4));
    EXPECT_EQ(Calls{"Text \"a\\u0000\\u20ACb\""}, WriteOf(tree.GetRoot()));
    Reading reading({"Text \"x\\u0000y\""});
    EXPECT_EQ(0, tree.GetRoot().ReadFromArchive(reading.decoder, false));
    EXPECT_EQ(KivBase::WString(u"x\0y", 3), KivBase::WString(tree.GetRoot().Get(), tree.GetRoot().GetLength()));
}

TEST(LeafArchiveTest, AStringIsSizedAsOneTextOfItsUnits) {
    const TreeOf<String> tree;
    tree.GetRoot().Set(u"four");
    RecordingSizer sizer;
    EXPECT_EQ(0, tree.GetRoot().SizeDefnArchive(&sizer, false));
    EXPECT_EQ(Calls(), sizer.calls);
    EXPECT_EQ(1U, sizer.GetStrings());
    EXPECT_EQ(4U, sizer.GetStringUnits());
}

TEST(LeafArchiveTest, ValuesAreReadWithTheMatchingOperationAlone) {
    Reading reading({"Long 00000001", "Long 00000002", "Long 00000003", "Long 00000004", "Double 0000000000000000",
                     "Guid 00000000-0000-0000-0000000000000000", "Text \"\""});
    const auto read = [&](Node& leaf) { EXPECT_EQ(0, leaf.ReadFromArchive(reading.decoder, false)); };
    read(TreeOf<Integer>().GetRoot());
    read(TreeOf<Boolean>().GetRoot());
    read(TreeOf<Integer64>().GetRoot());
    read(TreeOf<Double>().GetRoot());
    read(TreeOf<GlobalID>().GetRoot());
    read(TreeOf<String>().GetRoot());
    EXPECT_EQ((Calls{"ReadLong", "ReadLong", "ReadLong", "ReadLong", "ReadDouble", "ReadGUID", "ReadWideString"}),
              reading.archive.operations);
}

TEST(LeafArchiveTest, ABooleanKeepsItsValueWhenReadingFails) {
    const TreeOf<Boolean> tree;
    tree.GetRoot().Set(true);
    Reading reading({"Long 00000000"});
    reading.archive.counter.FailAt(1, -5);
    EXPECT_EQ(-5, tree.GetRoot().ReadFromArchive(reading.decoder, false));
    EXPECT_TRUE(tree.GetRoot().Get());
}

TEST(LeafArchiveTest, AnInteger64KeepsItsValueWhenEitherHalfFails) {
    for (const int k : {1, 2}) {
        const TreeOf<Integer64> tree;
        tree.GetRoot().Set(77);
        Reading reading({"Long 00000001", "Long 00000002"});
        reading.archive.counter.FailAt(k, -5);
        EXPECT_EQ(-5, tree.GetRoot().ReadFromArchive(reading.decoder, false));
        EXPECT_EQ(77, tree.GetRoot().Get());
        EXPECT_EQ(k, reading.archive.counter.GetCount());
    }
}

template <class T>
class FailingLeafTest : public testing::Test {};

using Scalars = testing::Types<Integer, Boolean, Integer64, Double, GlobalID, String>;
TYPED_TEST_SUITE(FailingLeafTest, Scalars, );

TYPED_TEST(FailingLeafTest, TheArchivesCodeIsAnsweredAndNothingFollows) {
    const TreeOf<TypeParam> tree;
    RecordingArchive writer;
    writer.counter.FailAt(1, -1234);
    EXPECT_EQ(-1234, tree.GetRoot().WriteToArchive(&writer, true));
    EXPECT_EQ(1, writer.counter.GetCount());
    Reading reading({});
    reading.archive.counter.FailAt(1, -4321);
    EXPECT_EQ(-4321, tree.GetRoot().ReadFromArchive(reading.decoder, false));
    EXPECT_EQ(1, reading.archive.counter.GetCount());
}

TEST(LeafArchiveTest, AFailedHighHalfIsAnswered) {
    const TreeOf<Integer64> tree;
    RecordingArchive writer;
    writer.counter.FailAt(2, -1234);
    EXPECT_EQ(-1234, tree.GetRoot().WriteToArchive(&writer, false));
    EXPECT_EQ(2, writer.counter.GetCount());
}

}  // namespace
}  // namespace KivGenerics::Testing
