// Small numbers taken back out of words, and the tags of objects.

#include "persistence/ArchiveDecoder.h"

#include <gtest/gtest.h>

#include "persistence/Archives.h"

namespace KivGenerics::Testing {
namespace {

struct Row {
    int offset;  // bytes taken before
    int width;
    std::uint32_t number;
    int words;  // read in all
};

TEST(ArchiveDecoderTest, EveryWidthAtEveryOffsetIsTakenMostSignificantByteFirst) {
    const Row rows[] = {
        {0, 1, 0xF1, 1},       {0, 2, 0xF1F2, 1},     {0, 4, 0xF1F2F3F4, 1}, {1, 1, 0xF2, 1},
        {1, 2, 0xF2F3, 1},     {1, 4, 0xF2F3F4F5, 2}, {2, 1, 0xF3, 1},       {2, 2, 0xF3F4, 1},
        {2, 4, 0xF3F4F5F6, 2}, {3, 1, 0xF4, 1},       {3, 2, 0xF4F5, 2},     {3, 4, 0xF4F5F6F7, 2},
        {4, 1, 0xF5, 2},       {4, 2, 0xF5F6, 2},     {4, 4, 0xF5F6F7F8, 2},
    };
    for (const Row& row : rows) {
        Reading reading({"Long F1F2F3F4", "Long F5F6F7F8"});
        for (int i = 0; i < row.offset; ++i) {
            EXPECT_EQ(0xF1 + static_cast<std::uint32_t>(i), reading.decoder.GetBytes(1));
        }
        EXPECT_EQ(row.number, reading.decoder.GetBytes(row.width))
            << "offset " << row.offset << ", width " << row.width;
        EXPECT_EQ(0, reading.decoder.GetStatus());
        EXPECT_EQ(row.words, reading.archive.counter.GetCount());
    }
}

TEST(ArchiveDecoderTest, GoesOnAfterANumberThatCrossesWords) {
    Reading reading({"Long 01020304", "Long 05060708", "Long 090A0B0C"});
    EXPECT_EQ(0x01U, reading.decoder.GetBytes(1));
    EXPECT_EQ(0x02030405U, reading.decoder.GetBytes(4));
    EXPECT_EQ(0x0607U, reading.decoder.GetBytes(2));
    EXPECT_EQ(0x08090A0BU, reading.decoder.GetBytes(4));
    EXPECT_EQ(0x0CU, reading.decoder.GetBytes(1));
    EXPECT_EQ(3, reading.archive.counter.GetCount());
}

TEST(ArchiveDecoderTest, APeekedByteStaysUntaken) {
    Reading reading({"Long 81020304"});
    EXPECT_EQ(0x81U, reading.decoder.PeekByte());
    EXPECT_EQ(0x81U, reading.decoder.PeekByte());
    EXPECT_EQ(0x8102U, reading.decoder.GetBytes(2));
    EXPECT_EQ(0x03U, reading.decoder.PeekByte());
    EXPECT_EQ(0x03U, reading.decoder.GetBytes(1));
    EXPECT_EQ(0x04U, reading.decoder.PeekByte());
    EXPECT_EQ(1, reading.archive.counter.GetCount());
}

TEST(ArchiveDecoderTest, APeekReadsAWordOnlyWhereNoneIsLeft) {
    Reading reading({"Long 01020304", "Long 05060708"});
    EXPECT_EQ(0, reading.archive.counter.GetCount());
    EXPECT_EQ(0x01020304U, reading.decoder.GetBytes(4));
    EXPECT_EQ(1, reading.archive.counter.GetCount());
    EXPECT_EQ(0x05U, reading.decoder.PeekByte());
    EXPECT_EQ(2, reading.archive.counter.GetCount());
}

TEST(ArchiveDecoderTest, RealigningDropsTheRestOfTheWord) {
    Reading reading({"Long 01020304", "Long 05060708"});
    EXPECT_EQ(0x01U, reading.decoder.GetBytes(1));
    reading.decoder.Realign();
    EXPECT_EQ(0x0506U, reading.decoder.GetBytes(2));
}

TEST(ArchiveDecoderTest, RealigningAtTheStartOfAWordReadsNothing) {
    Reading reading({"Long 01020304", "Long 05060708"});
    reading.decoder.Realign();
    EXPECT_EQ(0x01020304U, reading.decoder.GetBytes(4));
    reading.decoder.Realign();
    EXPECT_EQ(1, reading.archive.counter.GetCount());
    EXPECT_EQ(0x05U, reading.decoder.PeekByte());
}

TEST(ArchiveDecoderTest, AFailedWordGivesZeroAndTakesNothing) {
    Reading reading({"Long 01020304", "Long 05060708"});
    reading.archive.counter.FailAt(2, -9);
    EXPECT_EQ(0x0102U, reading.decoder.GetBytes(2));
    EXPECT_EQ(0U, reading.decoder.GetBytes(4));
    EXPECT_EQ(-9, reading.decoder.GetStatus());
    EXPECT_EQ(0x0304U, reading.decoder.GetBytes(2));
    EXPECT_EQ(-9, reading.decoder.GetStatus());
    EXPECT_EQ(0x05U, reading.decoder.GetBytes(1));
    EXPECT_EQ(0, reading.decoder.GetStatus());
}

TEST(ArchiveDecoderTest, AFailedPeekGivesZeroAndTheArchivesCode) {
    Reading reading({"Long 01020304"});
    reading.archive.counter.FailAt(1, -9);
    EXPECT_EQ(0U, reading.decoder.PeekByte());
    EXPECT_EQ(-9, reading.decoder.GetStatus());
    EXPECT_EQ(0x01U, reading.decoder.PeekByte());
    EXPECT_EQ(0, reading.decoder.GetStatus());
}

TEST(ArchiveDecoderTest, StartsWithoutFailureAndKnowsItsArchive) {
    Reading reading({});
    EXPECT_EQ(0, reading.decoder.GetStatus());
    EXPECT_EQ(&reading.archive, reading.decoder.GetArchive());
}

TEST(ArchiveDecoderTest, ASemanticTagTakesTwoBytesOrFourByItsFirstBit) {
    struct TagRow {
        Calls words;
        std::int32_t tag;
        std::uint32_t next;
    };
    const TagRow rows[] = {
        {{"Long 0000AB00"}, 0, 0xAB},
        {{"Long 7FFFAB00"}, 32767, 0xAB},
        {{"Long 80008000", "Long AB000000"}, 32768, 0xAB},
        {{"Long FFFFFFFF", "Long AB000000"}, 0x7FFFFFFF, 0xAB},
    };
    for (const TagRow& row : rows) {
        Reading reading(row.words);
        EXPECT_EQ(row.tag, reading.decoder.GetSemanticTag());
        EXPECT_EQ(0, reading.decoder.GetStatus());
        EXPECT_EQ(row.next, reading.decoder.GetBytes(1));
    }
}

TEST(ArchiveDecoderTest, ASemanticTagThatCannotBeReadLeavesTheArchivesCode) {
    Reading whole({});
    EXPECT_EQ(0, whole.decoder.GetSemanticTag());
    EXPECT_EQ(kScriptIsOver, whole.decoder.GetStatus());
    EXPECT_EQ(1, whole.archive.counter.GetCount());

    Reading half({"Long 010203F0"});
    EXPECT_EQ(0x010203U, half.decoder.GetBytes(2) << 8 | half.decoder.GetBytes(1));
    half.decoder.GetSemanticTag();
    EXPECT_EQ(kScriptIsOver, half.decoder.GetStatus());
}

TEST(ArchiveDecoderTest, AnObjectsTagHoldsKindAndTemporality) {
    struct ObjectRow {
        std::uint16_t tag;
        int type;
        int temporality;
        bool longCount;
    };
    const ObjectRow rows[] = {
        {0x0006, 6, 0, false},  {0x0206, 6, 1, false}, {0x0407, 7, 2, false},  {0x07FE, 6, 3, true},
        {0x09FF, 7, 4, true},   {0x0001, 1, 0, false}, {0x000D, 13, 0, false}, {0x01FD, 509, 0, false},
        {0x0000, 0, 0, false},  {0x0FFF, 7, 7, true},  {0xF407, 7, 2, false},  {0x0E06, 6, 7, false},
        {0x040B, 11, 2, false},
    };
    for (const ObjectRow& row : rows) {
        const ObjectKind kind = DecodeObjectTag(row.tag);
        EXPECT_EQ(row.type, kind.type) << row.tag;
        EXPECT_EQ(row.temporality, kind.temporality) << row.tag;
        EXPECT_EQ(row.longCount, kind.longCount) << row.tag;
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
