#include <KivInspect/Info.h>

#include <KivGenerics/Temporality.h>
#include <KivStorage/LoadTree.h>
#include <gtest/gtest.h>

#include "inspect/Saved.h"

using namespace KivInspect;
using namespace InspectTest;

namespace {

TEST(InfoTest, TheAnnotatedDocumentIsCounted) {
    const auto scanner = ScanData("annotated-tree.kiv");
    const InfoResult read = ReadInfo(*scanner);
    ASSERT_TRUE(read.result.Ok()) << read.result.sentence;
    EXPECT_EQ(126u, read.info.fileBytes);
    EXPECT_EQ(1u, read.info.blocks);
    EXPECT_EQ(12u, read.info.items);
    EXPECT_EQ(46u, read.info.itemBytes);
    EXPECT_EQ(4u, read.info.nodes);
    EXPECT_EQ(2u, read.info.nodesByKind[KivGenerics::NodeTypeMap]);
    EXPECT_EQ(1u, read.info.nodesByKind[KivGenerics::NodeTypeInteger]);
    EXPECT_EQ(1u, read.info.nodesByKind[KivGenerics::NodeTypeString]);
    EXPECT_EQ(1u, read.info.nodesByTemporality[KivGenerics::TemporalityDefault]);
    EXPECT_EQ(3u, read.info.nodesByTemporality[KivGenerics::TemporalityPersistent]);
    EXPECT_EQ(3u, read.info.levels);
    EXPECT_EQ(2u, read.info.textUnits);
}

TEST(InfoTest, EveryKindIsCountedOnceInATreeThatHasEachKind) {
    const auto scanner = ScanData("tree-of-every-kind.kiv");
    const InfoResult read = ReadInfo(*scanner);
    ASSERT_TRUE(read.result.Ok()) << read.result.sentence;
    for (std::size_t kind = 1; kind <= 12; ++kind) {
        EXPECT_GE(read.info.nodesByKind[kind], 1u) << kind;
    }
}

TEST(InfoTest, TheMemoryThatATreeWillTakeIsToldWithinAThird) {
    const auto bytes = Save(LongTree(20000).Get());
    const auto scanner = Scan(bytes);
    const InfoResult read = ReadInfo(*scanner);
    const KivStorage::LoadResult loaded = KivStorage::LoadTreeFromMemory(bytes.data(), bytes.size());
    ASSERT_TRUE(loaded.result.Ok());
    const auto taken = static_cast<double>(loaded.tree->BufferQueryB());
    EXPECT_GT(static_cast<double>(read.info.memoryBytes), taken * 2 / 3);
    EXPECT_LT(static_cast<double>(read.info.memoryBytes), taken * 4 / 3);
}

TEST(InfoTest, DamageIsAFailureWithItsPlace) {
    auto bytes = Save(LongTree(5).Get());
    bytes[50] ^= 1;
    const InfoResult read = ReadInfo(*Scan(bytes));
    EXPECT_EQ(KivStorage::StorageBlockDamaged, read.result.code);
    EXPECT_NE(std::string::npos, read.result.sentence.find("block 1"));
}

TEST(InfoTest, AllOfIsWrittenForPeople) {
    const auto scanner = ScanData("annotated-tree.kiv");
    InfoResult read = ReadInfo(*scanner);
    read.info.memoryBytes = 1000;
    StringSink sink;
    WriteInfo(read.info, sink);
    EXPECT_EQ(
        "form         binary, version 1\n"
        "size         126 bytes: 1 block, 12 items\n"
        "checksums    all match\n"
        "memory       about 1000 bytes when loaded\n"
        "levels       3\n"
        "text         2 units of 16 bits\n"
        "nodes        4\n"
        "  Integer    1\n"
        "  String     1\n"
        "  Map        2\n"
        "temporality  own, of these nodes\n"
        "  default    1\n"
        "  persistent 3\n",
        sink.GetText());
}

}  // namespace
