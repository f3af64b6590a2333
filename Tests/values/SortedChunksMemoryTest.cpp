// What sorted chunks take of the memory, and what happens when there is none.

#include <cstdint>
#include <memory>
#include <new>
#include <random>

#include "support/TestBuffer.h"
#include "values/SortedChunksFixture.h"

namespace KivGenerics::Testing {
namespace {

TEST_F(SortedChunksTest, ManyKeysTakeAtMostEightBytesEachHoweverTheyCome) {
    std::mt19937 random = MakeRandom(1);
    for (const bool descending : {false, true}) {
        Chunks chunks(NewBuffer());
        const KivBase::Buffer& buffer = *buffers_.back();
        for (std::int32_t i = 0; i < 5000; ++i) {
            chunks.Add(descending ? -i : i);
            ASSERT_TRUE(i < 64 || buffer.BytesInUse() <= 8 * chunks.size())
                << buffer.BytesInUse() << " for " << chunks.size();
        }
    }
    for (int round = 0; round < 20; ++round) {
        Chunks chunks(NewBuffer());
        const KivBase::Buffer& buffer = *buffers_.back();
        for (std::int32_t i = 0; i < 5000; ++i) {
            chunks.Add(static_cast<std::int32_t>(random()));
            ASSERT_TRUE(i < 64 || buffer.BytesInUse() <= 8 * chunks.size())
                << buffer.BytesInUse() << " for " << chunks.size();
        }
    }
}

TEST_F(SortedChunksTest, AWindowThatMovesThroughTheNumbersTakesNoMoreAndMoreMemory) {
    std::size_t most = 0;
    for (std::int32_t i = 0; i < 200000; ++i) {
        chunks_.Add(i);
        chunks_.Remove(i - 1000);
        most = i == 3000 ? BytesInUse() : most;
        ASSERT_TRUE(i < 3000 || BytesInUse() <= most + 2048) << i;
    }
    EXPECT_EQ(1000U, chunks_.size());
    EXPECT_EQ(0, Check(chunks_));
    EXPECT_LE(LevelsOf(chunks_), 2);
    EXPECT_LE(buffers_.front()->BytesReserved(), 65536U);
}

TEST_F(SortedChunksTest, WhatIsLeftOfManyKeysTakesLittleMemory) {
    for (std::int32_t i = 0; i < 100000; ++i) {
        chunks_.Add(i);
    }
    for (std::int32_t i = 0; i < 100000; ++i) {
        if (i % 1000 != 0) {
            chunks_.Remove(i);
        }
    }
    EXPECT_EQ(100U, chunks_.size());
    EXPECT_EQ(0, Check(chunks_));
    EXPECT_LE(BytesInUse(), 5000U);
    for (std::int32_t i = 0; i < 100000; i += 1000) {
        EXPECT_TRUE(chunks_.Remove(i));
    }
    EXPECT_EQ(0U, BytesInUse());
}

TEST_F(SortedChunksTest, ClearingGivesAllMemoryBack) {
    for (std::int32_t i = 0; i < 100000; ++i) {
        chunks_.Add(i);
    }
    chunks_.Clear();
    EXPECT_TRUE(chunks_.empty());
    EXPECT_EQ(0U, BytesInUse());
    chunks_.Add(4);
    EXPECT_EQ(Numbers{4}, ElementsOf(chunks_));
}

TEST_F(SortedChunksTest, ACopyIsDenseHoweverItsSourceCameToBe) {
    std::mt19937 random = MakeRandom(2);
    for (int i = 0; i < 100000; ++i) {
        chunks_.Add(static_cast<std::int32_t>(random()));
    }
    Chunks copy(NewBuffer());
    copy.CopyFrom(chunks_);
    EXPECT_EQ(0, Check(copy));
    EXPECT_EQ(ElementsOf(chunks_), ElementsOf(copy));
    EXPECT_LE(static_cast<double>(buffers_.back()->BytesInUse()), 4.2 * static_cast<double>(copy.size()));
}

TEST_F(SortedChunksTest, AnAppenderTakesMemoryForWhatHasComeAlone) {
    Chunks::Appender appender(chunks_);
    for (std::int32_t key = 0; key < 9; ++key) {
        appender.Add(key);
    }
    EXPECT_EQ(0U, BytesInUse()) << "collected";
    appender.Flush();
    EXPECT_EQ(72U, BytesInUse()) << "a head and room for 16";
    EXPECT_EQ((Numbers{0, 1, 2, 3, 4, 5, 6, 7, 8}), ElementsOf(chunks_));
    for (std::int32_t key = 9; key < 10000; ++key) {
        appender.Add(key);
    }
    appender.Flush();
    EXPECT_LE(static_cast<double>(BytesInUse()), 4.3 * 10000);
}

/// Adds keys to chunks of every size up to several chunks, with every request for memory refused in turn.
TEST(SortedChunksMemoryTest, AKeyThatFindsNoMemoryIsNotAddedAndTheOthersStay) {
    KivTests::TestBuffers buffers;
    const std::unique_ptr<KivBase::Buffer> buffer(KivBase::CreateBuffer(0, 0, 65536, false));
    WideChunks chunks(buffer.get());
    std::mt19937 random = MakeRandom(4);
    int failures = 0;
    for (std::size_t size = 0; size < 4000; ++size) {
        std::int32_t number = 0;
        do {
            number = static_cast<std::int32_t>(random() % 100000);
        } while (chunks.Exists({number, {}}));
        for (int served = 0; chunks.size() == size; ++served) {
            buffers.FailAfter(served, KivTests::BufferLog::Refusal::Throw);
            try {
                chunks.Add({number, {}});
            } catch (const std::bad_alloc&) {
                ++failures;
                ASSERT_EQ(size, chunks.size());
                ASSERT_FALSE(chunks.Exists({number, {}}));
                ASSERT_EQ(0, Check(chunks));
            }
            buffers.Recover();
        }
        ASSERT_TRUE(chunks.Exists({number, {}}));
    }
    EXPECT_EQ(0, Check(chunks));
    EXPECT_EQ(3, LevelsOf(chunks));
    EXPECT_LE(100, failures);
}

TEST(SortedChunksMemoryTest, ACopyThatFindsNoMemoryLeavesWhatWasThereAndKeepsNone) {
    KivTests::TestBuffers buffers;
    const std::unique_ptr<KivBase::Buffer> buffer(KivBase::CreateBuffer(0, 0, 65536, false));
    Chunks source(buffer.get());
    for (std::int32_t i = 0; i < 5000; ++i) {
        source.Add(i);
    }
    Chunks target(buffer.get());
    target.Add(7);
    const std::size_t before = buffer->BytesInUse();
    int failures = 0;
    for (int served = 0; target.size() == 1; ++served) {
        buffers.FailAfter(served, KivTests::BufferLog::Refusal::AnswerNull);
        try {
            target.CopyFrom(source);
        } catch (const std::bad_alloc&) {
            ++failures;
            ASSERT_EQ(Numbers{7}, ElementsOf(target));
            ASSERT_EQ(before, buffer->BytesInUse());
        }
        buffers.Recover();
    }
    EXPECT_EQ(ElementsOf(source), ElementsOf(target));
    EXPECT_LE(20, failures);
}

TEST(SortedChunksMemoryTest, RemovingNeedsNoMemory) {
    KivTests::TestBuffers buffers;
    const std::unique_ptr<KivBase::Buffer> buffer(KivBase::CreateBuffer(0, 0, 65536, false));
    Chunks chunks(buffer.get());
    for (std::int32_t i = 0; i < 20000; ++i) {
        chunks.Add(i);
    }
    buffers.FailAfter(0, KivTests::BufferLog::Refusal::Throw);
    for (std::int32_t i = 0; i < 20000; ++i) {
        ASSERT_TRUE(chunks.Remove(i * 7 % 20000));
    }
    EXPECT_TRUE(chunks.empty());
    EXPECT_EQ(0U, buffer->BytesInUse());
}

}  // namespace
}  // namespace KivGenerics::Testing
