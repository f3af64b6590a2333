#include <KivBase/Buffer.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <KivBase/WString.h>
#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using KivBase::Buffer;
using KivBase::WString;

std::unique_ptr<Buffer> MakeBuffer(std::int32_t blockSize = 1024) {
    return std::unique_ptr<Buffer>(KivBase::CreateBuffer(1, 1, blockSize, false));
}

std::ptrdiff_t Distance(void* from, void* to) {
    return static_cast<char*>(to) - static_cast<char*>(from);
}

TEST(BufferTest, ReservesNothingBeforeTheFirstAllocation) {
    const auto buffer = MakeBuffer();
    EXPECT_EQ(0U, buffer->BytesReserved());
    EXPECT_EQ(0U, buffer->BytesInUse());
}

TEST(BufferTest, ReservesWholeBlocksOfTheSizeAskedFor) {
    const auto buffer = MakeBuffer(65536);
    buffer->Allocate(1, 1);
    EXPECT_EQ(65536U, buffer->BytesReserved());
    EXPECT_EQ(8U, buffer->BytesInUse());
}

TEST(BufferTest, BlockSizesBelow1024CountAs1024) {
    for (const std::int32_t blockSize : {0, -1, std::numeric_limits<std::int32_t>::min(), 1, 1023}) {
        const auto buffer = MakeBuffer(blockSize);
        buffer->Allocate(8, 8);
        EXPECT_EQ(1024U, buffer->BytesReserved()) << blockSize;
    }
}

TEST(BufferTest, IgnoresTheReservedArguments) {
    const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(-7, 99, 2048, true));
    buffer->Allocate(8, 8);
    EXPECT_EQ(2048U, buffer->BytesReserved());
}

TEST(BufferTest, PlacesAllocationsOneBehindTheOtherWithNothingBetween) {
    const auto buffer = MakeBuffer();
    void* const first = buffer->Allocate(24, 8);
    void* const second = buffer->Allocate(20, 4);
    void* const third = buffer->Allocate(1, 1);
    EXPECT_EQ(24, Distance(first, second));
    EXPECT_EQ(24, Distance(second, third));
    EXPECT_EQ(56U, buffer->BytesInUse());
}

TEST(BufferTest, ABlockHolds128WordsOf8Bytes) {
    const auto buffer = MakeBuffer();
    for (int i = 0; i < 128; ++i) {
        buffer->Allocate(8, 8);
    }
    EXPECT_EQ(1024U, buffer->BytesReserved());
    buffer->Allocate(8, 8);
    EXPECT_EQ(2048U, buffer->BytesReserved());
}

TEST(BufferTest, AnAllocationOfNothingIsAPlaceOfItsOwn) {
    const auto buffer = MakeBuffer();
    void* const first = buffer->Allocate(0, 1);
    void* const second = buffer->Allocate(0, 1);
    ASSERT_NE(nullptr, first);
    ASSERT_NE(nullptr, second);
    EXPECT_NE(first, second);
    EXPECT_EQ(16U, buffer->BytesInUse());
    buffer->Free(first, 0, 1);
    buffer->Free(second, 0, 1);
    EXPECT_EQ(0U, buffer->BytesInUse());
}

TEST(BufferTest, FreeingNullDoesNothing) {
    const auto buffer = MakeBuffer();
    buffer->Allocate(16, 8);
    buffer->Free(nullptr, 16, 8);
    buffer->Free(nullptr, 100000, 8);
    buffer->Free(nullptr, 16, 64);
    EXPECT_EQ(16U, buffer->BytesInUse());
}

TEST(BufferTest, HandsFreedMemoryOutAgainForTheSameNumberOfWords) {
    const auto buffer = MakeBuffer();
    void* const freed = buffer->Allocate(40, 8);
    buffer->Allocate(8, 8);
    buffer->Free(freed, 40, 8);
    EXPECT_NE(freed, buffer->Allocate(41, 1));
    EXPECT_NE(freed, buffer->Allocate(32, 8));
    EXPECT_EQ(freed, buffer->Allocate(33, 1));
}

TEST(BufferTest, HandsTheLastFreedOutFirst) {
    const auto buffer = MakeBuffer();
    void* const first = buffer->Allocate(64, 8);
    void* const second = buffer->Allocate(64, 8);
    buffer->Free(first, 64, 8);
    buffer->Free(second, 64, 8);
    EXPECT_EQ(second, buffer->Allocate(64, 8));
    EXPECT_EQ(first, buffer->Allocate(64, 8));
    EXPECT_EQ(1024U, buffer->BytesReserved());
}

struct SizeClassRow {
    std::size_t size;
    std::size_t inUse;
};

// Every multiple of 8 up to 1024, then four steps to each doubling.
constexpr SizeClassRow kSizeClasses[] = {
    {0, 8},       {1, 8},       {8, 8},       {9, 16},      {1016, 1016},  {1017, 1024},   {1024, 1024},
    {1025, 1280}, {1280, 1280}, {1281, 1536}, {1537, 1792}, {1793, 2048},  {2048, 2048},   {2049, 2560},
    {2561, 3072}, {3073, 3584}, {3585, 4096}, {4097, 5120}, {9000, 10240}, {16384, 16384},
};

TEST(BufferTest, RoundsSizesUpToTheirClass) {
    for (const SizeClassRow& row : kSizeClasses) {
        const auto buffer = MakeBuffer(65536);
        void* const memory = buffer->Allocate(row.size, 8);
        EXPECT_EQ(row.inUse, buffer->BytesInUse()) << row.size;
        buffer->Free(memory, row.size, 8);
        EXPECT_EQ(0U, buffer->BytesInUse()) << row.size;
        EXPECT_EQ(memory, buffer->Allocate(row.inUse, 8)) << row.size;
        EXPECT_EQ(65536U, buffer->BytesReserved()) << row.size;
    }
}

TEST(BufferTest, AllocateInlineTakesAsMuchAsAllocate) {
    for (const SizeClassRow& row : kSizeClasses) {
        const auto buffer = MakeBuffer(65536);
        buffer->Allocate(8, 8);  // from now on there is a block to take from
        void* const memory = buffer->AllocateInline(row.size, 8);
        EXPECT_EQ(8 + row.inUse, buffer->BytesInUse()) << row.size;
        buffer->Free(memory, row.size, 8);
        EXPECT_EQ(8U, buffer->BytesInUse()) << row.size;
        EXPECT_EQ(memory, buffer->AllocateInline(row.size, 8)) << row.size;
    }
}

TEST(BufferTest, AllocateInlineHandsOutAgainWhatCameBack) {
    const auto buffer = MakeBuffer();
    void* const first = buffer->AllocateInline(40, 8);
    void* const second = buffer->AllocateInline(40, 8);
    buffer->Free(first, 40, 8);
    buffer->Free(second, 40, 8);
    EXPECT_EQ(second, buffer->AllocateInline(33, 4));
    EXPECT_EQ(first, buffer->AllocateInline(40, 8));
    EXPECT_EQ(Distance(first, second) * 2, Distance(first, buffer->AllocateInline(40, 8)));
}

TEST(BufferTest, AllocateInlineAlignsAsAsked) {
    const auto buffer = MakeBuffer();
    for (std::size_t alignment = 1; alignment <= 256; alignment *= 2) {
        void* const memory = buffer->AllocateInline(24, alignment);
        EXPECT_EQ(0U, reinterpret_cast<std::uintptr_t>(memory) % alignment);
        buffer->Free(memory, 24, alignment);
    }
}

/// A host's buffer, which shows its memory and counts how often it is asked.
class AskedBuffer final : public Buffer {
public:
    explicit AskedBuffer(void* const* returned) {
        cursor_ = memory_;
        end_ = memory_ + sizeof memory_;
        returned_ = returned;
    }
    void* Allocate(std::size_t, std::size_t) override {
        ++asked;
        return nullptr;
    }
    std::size_t BytesReserved() const override { return sizeof memory_; }
    std::size_t BytesInUse() const override { return static_cast<std::size_t>(cursor_ - memory_); }
    void Free(void*, std::size_t, std::size_t) noexcept override {}

    int asked = 0;

private:
    alignas(8) char memory_[64] = {};
};

TEST(BufferTest, ABufferThatShowsItsMemoryIsAskedUnlessItShowsWhatHasComeBack) {
    AskedBuffer asked(nullptr);
    EXPECT_EQ(nullptr, asked.AllocateInline(16, 8));
    EXPECT_EQ(1, asked.asked);
    void* returned[65] = {};
    AskedBuffer other(returned);
    EXPECT_NE(nullptr, other.AllocateInline(9, 1));
    EXPECT_EQ(16U, other.BytesInUse());
    returned[2] = returned;
    EXPECT_EQ(nullptr, other.AllocateInline(16, 8)) << "of this size there is some";
    EXPECT_NE(nullptr, other.AllocateInline(48, 8));
    EXPECT_EQ(1, other.asked);
    EXPECT_EQ(nullptr, other.AllocateInline(1, 1)) << "nothing is left";
    EXPECT_EQ(2, other.asked);
}

TEST(BufferTest, TheRestOfABlockServesLaterRequests) {
    const auto buffer = MakeBuffer();
    void* const first = buffer->Allocate(512, 8);
    buffer->Allocate(504, 8);
    buffer->Allocate(512, 8);
    EXPECT_EQ(2048U, buffer->BytesReserved());
    void* const rest = buffer->Allocate(8, 8);
    EXPECT_EQ(512 + 504, Distance(first, rest));
    EXPECT_EQ(2048U, buffer->BytesReserved());
}

TEST(BufferTest, BlocksComeInRunsThatGrowWithTheBuffer) {
    const auto buffer = MakeBuffer();
    // The third and the fourth block of 1024 bytes come in one piece, with nothing between them.
    for (int i = 0; i < 4; ++i) {
        buffer->Allocate(512, 8);
    }
    void* const third = buffer->Allocate(512, 8);
    void* place = third;
    for (int i = 1; i < 4; ++i) {
        place = buffer->Allocate(512, 8);
        EXPECT_EQ(i * 512, Distance(third, place));
    }
    EXPECT_EQ(4096U, buffer->BytesReserved());
}

TEST(BufferTest, ALongRestOfABlockServesSeveralRequests) {
    const auto buffer = MakeBuffer(16384);
    char* place = nullptr;
    for (int i = 0; i < 3; ++i) {
        place = static_cast<char*>(buffer->Allocate(4096, 8));
    }
    buffer->Allocate(3072, 8);
    buffer->Allocate(8, 8);
    buffer->Allocate(4096, 8);
    ASSERT_EQ(32768U, buffer->BytesReserved());
    // Of the first block 16384 - 3 * 4096 - 3072 - 8 = 1016 bytes were left.
    EXPECT_EQ(place + 8 + 4096 + 3072, buffer->Allocate(1016, 8));

    const auto other = MakeBuffer(16384);
    for (int i = 0; i < 3; ++i) {
        other->Allocate(4096, 8);
    }
    const char* const rest = static_cast<char*>(other->Allocate(8, 8)) + 8;
    other->Allocate(4096, 8);
    ASSERT_EQ(32768U, other->BytesReserved());
    // 4088 were left: three times 1024, and 1016.
    void* const last = other->Allocate(1016, 8);
    EXPECT_EQ(rest + 3072, last);
    EXPECT_EQ(rest + 2048, other->Allocate(1024, 8));
    EXPECT_EQ(rest + 1024, other->Allocate(1024, 8));
    EXPECT_EQ(rest, other->Allocate(1024, 8));
    EXPECT_EQ(32768U, other->BytesReserved());
}

TEST(BufferTest, ABlockServesUpToAQuarterOfItself) {
    const auto buffer = MakeBuffer(65536);
    void* const inBlock = buffer->Allocate(16384, 8);
    EXPECT_EQ(65536U, buffer->BytesReserved());
    void* const apart = buffer->Allocate(16385, 8);
    EXPECT_LT(65536U + 16384, buffer->BytesReserved());
    EXPECT_GT(65536U + 16384 + 256, buffer->BytesReserved());
    EXPECT_EQ(16384U + 16385, buffer->BytesInUse());
    buffer->Free(apart, 16385, 8);
    EXPECT_EQ(65536U, buffer->BytesReserved());
    buffer->Free(inBlock, 16384, 8);
    EXPECT_EQ(65536U, buffer->BytesReserved());
    EXPECT_EQ(0U, buffer->BytesInUse());
}

TEST(BufferTest, ASmallBlockServesUpTo512Bytes) {
    const auto buffer = MakeBuffer(1024);
    void* const inBlock = buffer->Allocate(512, 8);
    EXPECT_EQ(1024U, buffer->BytesReserved());
    void* const apart = buffer->Allocate(513, 8);
    EXPECT_LT(1024U + 512, buffer->BytesReserved());
    EXPECT_GT(1024U + 512 + 256, buffer->BytesReserved());
    buffer->Free(apart, 513, 8);
    EXPECT_EQ(1024U, buffer->BytesReserved());
    buffer->Free(inBlock, 512, 8);
}

TEST(BufferTest, LargeMemoryGoesBackInAnyOrder) {
    const auto buffer = MakeBuffer();
    std::vector<void*> large;
    for (std::size_t i = 0; i < 6; ++i) {
        large.push_back(buffer->Allocate(10000 + i, 8));
        std::memset(large.back(), 0x5A, 10000 + i);
    }
    for (const std::size_t i : {2U, 0U, 5U, 4U, 1U, 3U}) {
        buffer->Free(large[i], 10000 + i, 8);
    }
    EXPECT_EQ(0U, buffer->BytesReserved());
    EXPECT_EQ(0U, buffer->BytesInUse());
}

TEST(BufferTest, AlignsAsAsked) {
    const auto buffer = MakeBuffer(4096);
    for (std::size_t alignment = 1; alignment <= 4096; alignment *= 2) {
        for (const std::size_t size : {0U, 1U, 24U, 513U, 1024U, 5000U}) {
            buffer->Allocate(1, 1);
            void* const memory = buffer->Allocate(size, alignment);
            EXPECT_EQ(0U, reinterpret_cast<std::uintptr_t>(memory) % alignment) << size << " at " << alignment;
            std::memset(memory, 0xA5, size);
            buffer->Free(memory, size, alignment);
        }
    }
    // 13 alignments with 6 sizes, each after one word that stays.
    EXPECT_EQ(13U * 6 * 8, buffer->BytesInUse());
}

TEST(BufferTest, MemoryAlignedToMoreThan8BytesGoesBackToTheSystem) {
    const auto buffer = MakeBuffer();
    void* const memory = buffer->Allocate(24, 64);
    EXPECT_LT(24U, buffer->BytesReserved());
    EXPECT_EQ(24U, buffer->BytesInUse());
    buffer->Free(memory, 24, 64);
    EXPECT_EQ(0U, buffer->BytesReserved());
    EXPECT_EQ(0U, buffer->BytesInUse());
}

TEST(BufferTest, RefusesSizesThatNoSystemHas) {
    const auto buffer = MakeBuffer();
    buffer->Allocate(100, 8);
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();
    for (const std::size_t size : {kMost, kMost - 7, kMost - 4095, kMost / 2 + 1, kMost / 2}) {
        for (const std::size_t alignment : {std::size_t{1}, std::size_t{8}, std::size_t{4096}, kMost / 2 + 1}) {
            EXPECT_THROW(buffer->Allocate(size, alignment), std::bad_alloc) << size << " at " << alignment;
        }
    }
    EXPECT_THROW(buffer->Allocate(1, kMost / 2 + 1), std::bad_alloc);
    EXPECT_EQ(1024U, buffer->BytesReserved());
    EXPECT_EQ(104U, buffer->BytesInUse());
    EXPECT_NE(nullptr, buffer->Allocate(100, 8));
}

TEST(BufferTest, AnArrayThatGrowsByDoublingReusesWhatItLeft) {
    const auto buffer = MakeBuffer(65536);
    const auto growAndFree = [&] {
        std::size_t size = 8;
        void* array = buffer->Allocate(size, 8);
        for (; size < 1048576; size *= 2) {
            void* const larger = buffer->Allocate(size * 2, 8);
            buffer->Free(array, size, 8);
            array = larger;
        }
        buffer->Free(array, size, 8);
    };
    growAndFree();
    const std::size_t reserved = buffer->BytesReserved();
    EXPECT_EQ(65536U, reserved);
    for (int i = 0; i < 1000; ++i) {
        growAndFree();
    }
    EXPECT_EQ(reserved, buffer->BytesReserved());
    EXPECT_EQ(0U, buffer->BytesInUse());
}

TEST(BufferTest, AMillionPiecesOfAFewSizesOneAfterTheOtherNeedNoMoreThanTheFirstFew) {
    for (const std::int32_t blockSize : {1024, 65536}) {
        const auto buffer = MakeBuffer(blockSize);
        constexpr std::size_t kSizes[] = {200, 300, 800, 2000, 6000};
        std::size_t size = kSizes[4];
        void* piece = buffer->Allocate(size, 2);
        const std::size_t before = buffer->BytesReserved();
        std::size_t most = before;
        for (std::size_t i = 0; i < 1000000; ++i) {
            // The new one is taken while the old one still stands, as when one text replaces another.
            const std::size_t newSize = kSizes[i % 5];
            void* const newPiece = buffer->Allocate(newSize, 2);
            most = std::max(most, buffer->BytesReserved());
            buffer->Free(piece, size, 2);
            piece = newPiece;
            size = newSize;
        }
        EXPECT_GE(before + 16384, most) << blockSize;
    }
}

TEST(BufferTest, AMillionReplacementsOfOneTextByLongerOnesStayWithin64KiB) {
    const WString source(2200, u'y');
    for (const std::int32_t blockSize : {1024, 65536}) {
        const auto buffer = MakeBuffer(blockSize);
        WString text(200, u'x', KivBase::Allocator<char16_t>(buffer.get()));
        const std::size_t before = buffer->BytesReserved();
        std::size_t most = before;
        for (std::size_t i = 0; i < 1000000; ++i) {
            text.assign(source.data(), 200 + i / 500);
            most = std::max(most, buffer->BytesReserved());
        }
        EXPECT_EQ(2199U, text.size());
        EXPECT_GE(before + 65536, most) << blockSize;
    }
}

Buffer* MakeNoBuffer(int, int, std::int32_t, bool) {
    return nullptr;
}

struct FactoryCall {
    int reserved1;
    int reserved2;
    std::int32_t blockSize;
    bool reserved3;
};
FactoryCall lastCall;

Buffer* RecordAndMake(int reserved1, int reserved2, std::int32_t blockSize, bool reserved3) {
    lastCall = {reserved1, reserved2, blockSize, reserved3};
    return KivBase::CreateDefaultBuffer(reserved1, reserved2, 4096, reserved3);
}

TEST(BufferFactoryTest, AFactoryMakesEveryLaterBuffer) {
    EXPECT_EQ(nullptr, KivBase::SetBufferFactory(RecordAndMake));
    const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(1, 2, 3, true));
    EXPECT_EQ(RecordAndMake, KivBase::SetBufferFactory(MakeNoBuffer));
    EXPECT_EQ(nullptr, KivBase::CreateBuffer(1, 1, 1024, false));
    EXPECT_EQ(MakeNoBuffer, KivBase::SetBufferFactory(nullptr));
    EXPECT_EQ(1, lastCall.reserved1);
    EXPECT_EQ(2, lastCall.reserved2);
    EXPECT_EQ(3, lastCall.blockSize);
    EXPECT_TRUE(lastCall.reserved3);
    buffer->Allocate(1, 1);
    EXPECT_EQ(4096U, buffer->BytesReserved());

    const std::unique_ptr<Buffer> usual(KivBase::CreateBuffer(1, 1, 2048, false));
    usual->Allocate(1, 1);
    EXPECT_EQ(2048U, usual->BytesReserved());
}

}  // namespace
}  // namespace KivPlatform::Testing
