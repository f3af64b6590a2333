#include <algorithm>

#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivStorage;
using namespace StorageTest;

namespace {

template <class SomeBytes>
KivBase::ReturnPtrI<MemoryReadStream> Read(const SomeBytes& bytes, const ReadLimits& limits = {}) {
    return MemoryReadStream::Create(bytes.data(), bytes.size(), limits);
}

/// The bytes of so many longs.
Bytes Longs(int count) {
    const auto stream = MemoryWriteStream::Create();
    for (int i = 0; i < count; ++i) {
        stream->PutLong(i);
    }
    EXPECT_TRUE(stream->Finish().Ok());
    return stream->GetBytes().ToVector();
}

/// Reads longs to the end; the error, or none.
Result ReadLongs(const Bytes& bytes, int count, const ReadLimits& limits = {}) {
    const auto stream = Read(bytes, limits);
    for (int i = 0; i < count; ++i) {
        std::int32_t value = -1;
        if (stream->GetLong(&value) < 0) {
            return stream->GetError();
        }
        EXPECT_EQ(i, value);
    }
    return stream->Finish();
}

TEST(FramingTest, AnEmptyDocumentIsAHeaderAndATrailer) {
    EXPECT_EQ(
        "89 4B 49 56 0D 0A 1A 0A 01 00 00 00 00 00 00 00 0D 89 6B 9D 75 77 05 9F "
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
        "00 00 00 00 40 2C 1E 80 58 33 4B CC",
        ToHex(Longs(0)));
}

TEST(FramingTest, EveryDocumentIsWhatAnotherImplementationOfTheFormatMakes) {
    for (const int count : {0, 1, 13104, 13105, 26209, 40000}) {
        Bytes items;
        for (int i = 0; i < count; ++i) {
            items.push_back(1);
            for (int shift = 0; shift < 32; shift += 8) {
                items.push_back(static_cast<std::uint8_t>(i >> shift));
            }
        }
        const Bytes expected = Frame(items, static_cast<std::uint64_t>(count));
        EXPECT_TRUE(expected == Longs(count)) << count;
        EXPECT_EQ("", ReadLongs(expected, count).sentence) << count;
    }
}

TEST(FramingTest, ABlockIsAtMost64KiB) {
    // 13104 longs of 5 bytes are 65520; one more crosses the border.
    EXPECT_EQ(24u + 12u + 65520u + 44u, Longs(13104).size());
    EXPECT_EQ(24u + 65536u + 12u + 1u + 44u, Longs(13105).size());
}

TEST(FramingTest, BlocksShorterThanTheyCouldBeAreReadToo) {
    Bytes items;
    for (int i = 0; i < 100; ++i) {
        items.insert(items.end(), {1, static_cast<std::uint8_t>(i), 0, 0, 0});
    }
    for (const std::size_t payload : {1u, 2u, 3u, 7u, 499u}) {
        EXPECT_EQ("", ReadLongs(Frame(items, 100, payload), 100).sentence) << payload;
    }
}

TEST(FramingTest, ATextMayCrossBlocks) {
    KivBase::WString text;
    for (int i = 0; i < 100000; ++i) {
        text += static_cast<char16_t>(i);
    }
    const auto out = MemoryWriteStream::Create();
    ASSERT_EQ(0, out->PutWideString(text.data(), 100000));
    ASSERT_TRUE(out->Finish().Ok());
    EXPECT_EQ(24u + 200005u + 4u * 12u + 44u, out->GetBytes().size());
    const auto in = Read(out->GetBytes());
    std::uint32_t length = 0;
    ASSERT_EQ(0, in->GetStringLength(&length));
    ASSERT_EQ(100000u, length);
    KivBase::WString back(length, u'\0');
    EXPECT_EQ(0, in->GetStringChars(length, &back[0]));
    EXPECT_TRUE(text == back);
    EXPECT_TRUE(in->Finish().Ok());
}

TEST(FramingTest, TheWriteStreamCountsItsBytesAsItGoes) {
    const auto stream = MemoryWriteStream::Create();
    EXPECT_EQ(24u, stream->GetByteCount());
    stream->PutLong(1);
    EXPECT_EQ(24u + 12u + 5u, stream->GetByteCount());
    ASSERT_TRUE(stream->Finish().Ok());
    EXPECT_EQ(24u + 12u + 5u + 44u, stream->GetByteCount());
    EXPECT_EQ(stream->GetByteCount(), stream->GetBytes().size());
    const SavedBytes taken = stream->TakeBytes();
    EXPECT_EQ(85u, taken.size());
    EXPECT_EQ(0u, stream->GetBytes().size());
}

TEST(FramingTest, DataThatBeginOtherwiseAreNoSavedTree) {
    for (const char* text : {"x", "<?xml version='1.0'?>", "\x89KIX", "\x89PNG\r\n\x1A\n________________________"}) {
        const Result result = Read(Text(text))->Finish();
        EXPECT_EQ(StorageNotASavedTree, result.code) << text;
    }
    EXPECT_EQ("These data do not begin as saved trees do (memory, block 0, byte 0). Check that it is the right file.",
              Read(Text("Hello, world"))->Finish().sentence);
}

TEST(FramingTest, AnUnknownVersionOrAReservedByteInUseIsRefusedAsSuch) {
    // The checksums of these headers are right.
    EXPECT_EQ(StorageUnknownVersion,
              Read(FromHex("89 4B 49 56 0D 0A 1A 0A 02 00 00 00 00 00 00 00 E3 41 AD 9A A3 03 AE 17"))->Finish().code);
    EXPECT_EQ(StorageUnknownVersion,
              Read(FromHex("89 4B 49 56 0D 0A 1A 0A 01 00 00 00 01 00 00 00 8F 6C 3D 02 AF 38 90 F8"))->Finish().code);
}

TEST(FramingTest, ADamagedHeaderIsRefused) {
    Bytes bytes = Longs(1);
    bytes[8] ^= 2;
    EXPECT_EQ(StorageHeaderDamaged, Read(bytes)->Finish().code);
}

TEST(FramingTest, ABlockLongerThanBlocksCanBeIsRefused) {
    Bytes bytes = Longs(1);
    bytes[26] = 1;  // 65541
    const Result result = Read(bytes)->Finish();
    EXPECT_EQ(StorageBlockLength, result.code);
    EXPECT_EQ(
        "A block's length is out of range (memory, block 1, byte 24). "
        "The data are damaged: take them from a copy.",
        result.sentence);
    Bytes longest = Longs(13106);
    EXPECT_EQ(0xF4, longest[24]);
    longest[24] = 0xF5;
    EXPECT_EQ(StorageBlockLength, Read(longest)->Finish().code);
}

TEST(FramingTest, ADamagedBlockIsRefusedBeforeAnItemOfItIsHandedOut) {
    Bytes bytes = Longs(20000);
    bytes[24 + 65536 + 10000] ^= 0x10;
    const Result result = ReadLongs(bytes, 20000);
    EXPECT_EQ(StorageBlockDamaged, result.code);
    EXPECT_EQ(
        "A block does not match its checksum (memory, block 2, byte 65560). "
        "The data are damaged: take them from a copy.",
        result.sentence);
}

TEST(FramingTest, SwappedBlocksAreRefused) {
    const Bytes bytes = Longs(30000);
    Bytes swapped = bytes;
    std::swap_ranges(swapped.begin() + 24, swapped.begin() + 24 + 65536, swapped.begin() + 24 + 65536);
    EXPECT_EQ(StorageBlockDamaged, ReadLongs(swapped, 30000).code);
    EXPECT_EQ("", ReadLongs(bytes, 30000).sentence);
}

TEST(FramingTest, ABlockOfAnotherDocumentInTheSamePlaceIsRefusedAtTheEnd) {
    const Bytes bytes = Longs(30000);
    const auto other = MemoryWriteStream::Create();
    for (int i = 0; i < 30000; ++i) {
        other->PutLong(i + 1);
    }
    ASSERT_TRUE(other->Finish().Ok());
    Bytes mixed = bytes;
    std::copy_n(other->GetBytes().begin() + 24 + 65536, 65536, mixed.begin() + 24 + 65536);
    const auto in = Read(mixed);
    std::int32_t value = 0;
    for (int i = 0; i < 30000; ++i) {
        ASSERT_EQ(0, in->GetLong(&value));
    }
    EXPECT_EQ(StorageTotalsDiffer, in->Finish().code);
}

TEST(FramingTest, AMissingBlockIsRefused) {
    Bytes bytes = Longs(30000);
    bytes.erase(bytes.begin() + 24 + 65536, bytes.begin() + 24 + 2 * 65536);
    EXPECT_EQ(StorageBlockDamaged, ReadLongs(bytes, 30000).code);
}

TEST(FramingTest, TotalsOfItemsThatAreNotThoseOfTheDataAreRefused) {
    const Bytes bytes = Frame(FromHex("01 00 00 00 00"), 2);
    EXPECT_EQ(StorageTotalsDiffer, ReadLongs(bytes, 1).code);
}

TEST(FramingTest, ADamagedTrailerIsRefused) {
    const Bytes good = Longs(3);
    for (std::size_t back = 1; back <= 40; ++back) {
        Bytes bytes = good;
        bytes[bytes.size() - back] ^= 1;
        EXPECT_EQ(StorageTrailerDamaged, ReadLongs(bytes, 3).code) << back;
    }
}

TEST(FramingTest, AnythingBehindTheTrailerIsRefused) {
    Bytes bytes = Longs(2);
    bytes.push_back(0);
    const Result result = ReadLongs(bytes, 2);
    EXPECT_EQ(StorageTrailingBytes, result.code);
    EXPECT_EQ(
        "More bytes follow the end of the saved data (memory, byte 90). "
        "Something was appended: take the data from a copy.",
        result.sentence);
    EXPECT_EQ(StorageTrailingBytes, ReadLongs(Join({Longs(2), Longs(2)}), 2).code);
}

TEST(FramingTest, DataLongerThanTheLimitAreRefusedAndDataOfItsLengthAreNot) {
    const Bytes bytes = Longs(20000);
    ReadLimits limits;
    limits.totalBytes = bytes.size();
    EXPECT_EQ("", ReadLongs(bytes, 20000, limits).sentence);
    limits.totalBytes = bytes.size() - 1;
    EXPECT_EQ(StorageTooManyBytes, ReadLongs(bytes, 20000, limits).code);
    limits.totalBytes = 0;
    EXPECT_EQ(StorageTooManyBytes, ReadLongs(bytes, 20000, limits).code);
    limits.totalBytes = 30;
    EXPECT_EQ(StorageTooManyBytes, ReadLongs(bytes, 20000, limits).code);
}

}  // namespace
