// Small numbers packed into words.

#include "persistence/BytePacker.h"

#include <gtest/gtest.h>

#include "persistence/Archives.h"

namespace KivGenerics::Testing {
namespace {

struct Row {
    int offset;  // bytes A0, A1, A2 that are put before
    int width;
    Calls words;
};

TEST(BytePackerTest, EveryWidthAtEveryOffsetStandsMostSignificantByteFirst) {
    const Row rows[] = {
        {0, 1, {"Long E4000000"}},
        {0, 2, {"Long E3E40000"}},
        {0, 4, {"Long E1E2E3E4"}},
        {1, 1, {"Long A0E40000"}},
        {1, 2, {"Long A0E3E400"}},
        {1, 4, {"Long A0E1E2E3", "Long E4000000"}},
        {2, 1, {"Long A0A1E400"}},
        {2, 2, {"Long A0A1E3E4"}},
        {2, 4, {"Long A0A1E1E2", "Long E3E40000"}},
        {3, 1, {"Long A0A1A2E4"}},
        {3, 2, {"Long A0A1A2E3", "Long E4000000"}},
        {3, 4, {"Long A0A1A2E1", "Long E2E3E400"}},
    };
    for (const Row& row : rows) {
        RecordingArchive archive;
        BytePacker packer(&archive);
        for (int i = 0; i < row.offset; ++i) {
            packer.Put(0xA0 + static_cast<std::uint32_t>(i), 1);
        }
        packer.Put(0xE1E2E3E4, row.width);
        EXPECT_EQ(0, packer.Flush());
        EXPECT_EQ(row.words, archive.calls) << "offset " << row.offset << ", width " << row.width;
    }
}

TEST(BytePackerTest, AWordIsWrittenAsSoonAsItIsFull) {
    RecordingArchive archive;
    BytePacker packer(&archive);
    packer.Put(0x0102, 2);
    packer.Put(3, 1);
    EXPECT_EQ(Calls(), archive.calls);
    packer.Put(4, 1);
    EXPECT_EQ(Calls{"Long 01020304"}, archive.calls);
}

TEST(BytePackerTest, FlushingNothingWritesNothing) {
    RecordingArchive archive;
    BytePacker packer(&archive);
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ(Calls(), archive.calls);
}

TEST(BytePackerTest, FlushingTwiceWritesTheRestOnce) {
    RecordingArchive archive;
    BytePacker packer(&archive);
    packer.Put(5, 1);
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ(Calls{"Long 05000000"}, archive.calls);
}

TEST(BytePackerTest, AfterAFlushTheNextNumberStartsAFreshWord) {
    RecordingArchive archive;
    BytePacker packer(&archive);
    packer.Put(5, 1);
    EXPECT_EQ(0, packer.Flush());
    packer.Put(0x0607, 2);
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ((Calls{"Long 05000000", "Long 06070000"}), archive.calls);
}

TEST(BytePackerTest, AFailedFlushAnswersTheArchivesCode) {
    RecordingArchive archive;
    archive.counter.FailAt(1, -7);
    BytePacker packer(&archive);
    packer.Put(5, 1);
    EXPECT_EQ(-7, packer.Flush());
}

TEST(BytePackerTest, AFailedFullWordSurfacesWhenNothingIsLeftAtTheFlush) {
    RecordingArchive archive;
    archive.counter.FailAt(1, -7);
    BytePacker packer(&archive);
    packer.Put(0x01020304, 4);
    EXPECT_EQ(-7, packer.Flush());
    EXPECT_EQ(Calls{"Long 01020304"}, archive.calls);
}

// kept-on-purpose: packer-late-failure
TEST(BytePackerTest, AFailedFullWordIsForgottenWhenAPartialOneIsWrittenAtTheFlush) {
    RecordingArchive archive;
    archive.counter.FailAt(1, -7);
    BytePacker packer(&archive);
    packer.Put(0x01020304, 4);
    packer.Put(5, 1);
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ((Calls{"Long 01020304", "Long 05000000"}), archive.calls);
}

TEST(BytePackerTest, AFailedWordIsForgottenWhenALaterFullOneIsWritten) {
    RecordingArchive archive;
    archive.counter.FailAt(1, -7);
    BytePacker packer(&archive);
    packer.Put(0x01020304, 4);
    packer.Put(0x05060708, 4);
    EXPECT_EQ(0, packer.Flush());
}

TEST(BytePackerTest, APositiveResultOfTheLastWordIsPassedOn) {
    RecordingArchive archive;
    archive.counter.FailAt(1, 3);
    BytePacker packer(&archive);
    packer.Put(0x01020304, 4);
    EXPECT_EQ(3, packer.Flush());
}

}  // namespace
}  // namespace KivGenerics::Testing
