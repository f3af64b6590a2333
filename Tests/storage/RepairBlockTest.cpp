#include <KivStorage/RepairBlock.h>

#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivStorage;
using namespace StorageTest;

namespace {

/// What becomes of the second stretch, which is the only block, or was.
RepairedBlock RepairSecond(const Bytes& bytes) {
    const auto scanner = FileScanner::OpenMemory(bytes.data(), bytes.size());
    ScannedPart part;
    EXPECT_TRUE(scanner->Next(part));
    EXPECT_TRUE(scanner->Next(part));
    return RepairBlock(part);
}

TEST(RepairBlockTest, OneWrongByteOfASmallBlockIsPutRight) {
    const Bytes whole = Frame(Bytes(300, 0x5A), 1);
    for (std::size_t at = 24; at < 24 + 4 + 300 + 8; at += 7) {
        Bytes damaged = whole;
        damaged[at] ^= 0x93;
        const RepairedBlock repaired = RepairSecond(damaged);
        ASSERT_TRUE(repaired.found) << at;
        EXPECT_TRUE(std::equal(repaired.bytes.begin(), repaired.bytes.end(), whole.begin() + 24)) << at;
        if (28 <= at && at < 328) {
            EXPECT_EQ(at - 24, repaired.changed);
        }
    }
}

TEST(RepairBlockTest, OneWrongBitOfAFullBlockIsPutRight) {
    const Bytes whole = Frame(Bytes(65524, 0x11), 1);
    Bytes damaged = whole;
    damaged[24 + 3000] ^= 0x20;
    const RepairedBlock repaired = RepairSecond(damaged);
    ASSERT_TRUE(repaired.found);
    EXPECT_EQ(3000u, repaired.changed);
    EXPECT_EQ(0x11, repaired.bytes[3000]);
}

TEST(RepairBlockTest, ProgressIsToldUntilTheWrongByteIsFound) {
    Bytes damaged = Frame(Bytes(2000, 0x11), 1);
    damaged[24 + 600] ^= 0x20;
    const auto scanner = FileScanner::OpenMemory(damaged.data(), damaged.size());
    ScannedPart part;
    ASSERT_TRUE(scanner->Next(part) && scanner->Next(part));
    std::vector<std::size_t> tried;
    EXPECT_TRUE(RepairBlock(part, [&tried](std::size_t bytes) { tried.push_back(bytes); }).found);
    EXPECT_EQ(tried, (std::vector<std::size_t>{256, 512}));
}

TEST(RepairBlockTest, TwoWrongBytesAreBeyondRepair) {
    Bytes damaged = Frame(Bytes(300, 0x5A), 1);
    damaged[100] ^= 1;
    damaged[200] ^= 1;
    EXPECT_FALSE(RepairSecond(damaged).found);
}

TEST(RepairBlockTest, AWholeBlockNeedsNoRepair) {
    EXPECT_FALSE(RepairSecond(Frame(Bytes(300, 0x5A), 1)).found);
}

}  // namespace
