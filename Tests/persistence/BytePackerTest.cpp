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

void Put(BytePacker& packer, std::uint32_t value, int width) {
    switch (width) {
        case 1: packer.Put<1>(value); break;
        case 2: packer.Put<2>(value); break;
        case 4: packer.Put<4>(value); break;
        default: ADD_FAILURE() << "no such width: " << width;
    }
}

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
            packer.Put<1>(0xA0 + static_cast<std::uint32_t>(i));
        }
        Put(packer, 0xE1E2E3E4, row.width);
        EXPECT_EQ(0, packer.Flush());
        EXPECT_EQ(row.words, archive.calls) << "offset " << row.offset << ", width " << row.width;
    }
}

TEST(BytePackerTest, WordsWaitUntilTheRoomIsFull) {
    RecordingArchive archive;
    BytePacker packer(&archive);
    for (int i = 0; i < 29; ++i) {
        packer.Put<4>(0x01020304);
    }
    EXPECT_EQ(Calls(), archive.calls);
    packer.Put<1>(5);
    EXPECT_EQ(Calls(29, "Long 01020304"), archive.calls);
    archive.calls.clear();
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ(Calls{"Long 05000000"}, archive.calls);
}

TEST(BytePackerTest, BytesOfAWordThatIsNotFullStayInTheRoom) {
    RecordingArchive archive;
    BytePacker packer(&archive);
    for (int i = 0; i < 57; ++i) {
        packer.Put<2>(0x0102);
    }
    EXPECT_EQ(Calls(), archive.calls);
    packer.Put<4>(0xE1E2E3E4);
    EXPECT_EQ(Calls(28, "Long 01020102"), archive.calls);
    archive.calls.clear();
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ((Calls{"Long 0102E1E2", "Long E3E40000"}), archive.calls);
}

TEST(BytePackerTest, WhatIsPutInFrontStandsBeforeAllOthersTheLastOneFirst) {
    RecordingArchive archive;
    BytePacker packer(&archive);
    packer.Put<2>(0x0708);
    packer.PutInFront<4>(0xE3E4E5E6);
    packer.PutInFront<2>(0xFFFFE1E2);
    packer.PutInFront<1>(0xFFFFFFE0);
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ((Calls{"Long E0E1E2E3", "Long E4E5E607", "Long 08000000"}), archive.calls);
}

TEST(BytePackerTest, AWordThatIsFullIsNotFilledUp) {
    RecordingArchive archive;
    BytePacker packer(&archive);
    packer.Put<2>(0x0102);
    packer.Put<2>(0x0304);
    EXPECT_EQ(0, packer.Flush());
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
    packer.Put<1>(5);
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ(Calls{"Long 05000000"}, archive.calls);
}

TEST(BytePackerTest, AfterAFlushTheNextNumberStartsAFreshWord) {
    RecordingArchive archive;
    BytePacker packer(&archive);
    packer.Put<1>(5);
    EXPECT_EQ(0, packer.Flush());
    packer.Put<2>(0x0607);
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ((Calls{"Long 05000000", "Long 06070000"}), archive.calls);
}

TEST(BytePackerTest, AFailedFlushAnswersTheArchivesCode) {
    RecordingArchive archive;
    archive.counter.FailAt(1, -7);
    BytePacker packer(&archive);
    packer.Put<1>(5);
    EXPECT_EQ(-7, packer.Flush());
}

TEST(BytePackerTest, AFailedFullWordSurfacesWhenNothingIsLeftAtTheFlush) {
    RecordingArchive archive;
    archive.counter.FailAt(1, -7);
    BytePacker packer(&archive);
    packer.Put<4>(0x01020304);
    EXPECT_EQ(-7, packer.Flush());
    EXPECT_EQ(Calls{"Long 01020304"}, archive.calls);
}

// kept-on-purpose: packer-late-failure
TEST(BytePackerTest, AFailedFullWordIsForgottenWhenAPartialOneIsWrittenAtTheFlush) {
    RecordingArchive archive;
    archive.counter.FailAt(1, -7);
    BytePacker packer(&archive);
    packer.Put<4>(0x01020304);
    packer.Put<1>(5);
    EXPECT_EQ(0, packer.Flush());
    EXPECT_EQ((Calls{"Long 01020304", "Long 05000000"}), archive.calls);
}

TEST(BytePackerTest, AFailedWordIsForgottenWhenALaterFullOneIsWritten) {
    RecordingArchive archive;
    archive.counter.FailAt(1, -7);
    BytePacker packer(&archive);
    packer.Put<4>(0x01020304);
    packer.Put<4>(0x05060708);
    EXPECT_EQ(0, packer.Flush());
}

TEST(BytePackerTest, APositiveResultOfTheLastWordIsPassedOn) {
    RecordingArchive archive;
    archive.counter.FailAt(1, 3);
    BytePacker packer(&archive);
    packer.Put<4>(0x01020304);
    EXPECT_EQ(3, packer.Flush());
}

}  // namespace
}  // namespace KivGenerics::Testing
