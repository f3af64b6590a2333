#include <algorithm>
#include <cstdint>
#include <iterator>
#include <random>
#include <utility>

#include "values/SortedChunksFixture.h"

namespace KivGenerics::Testing {
namespace {

TEST_F(SortedChunksTest, ANewOneIsEmptyAndTakesNoMemory) {
    EXPECT_TRUE(chunks_.empty());
    EXPECT_EQ(0U, chunks_.size());
    EXPECT_TRUE(chunks_.begin() == chunks_.end());
    EXPECT_TRUE(chunks_.After(3) == chunks_.end());
    EXPECT_FALSE(chunks_.Exists(0));
    EXPECT_FALSE(chunks_.Remove(0));
    EXPECT_EQ(0, LevelsOf(chunks_));
    EXPECT_EQ(0, Check(chunks_));
    EXPECT_EQ(0U, BytesInUse());
}

TEST_F(SortedChunksTest, KeepsKeysAscendingAndOnce) {
    for (const std::int32_t key : {5, -3, 9, 5, 0, -3, 7}) {
        chunks_.Add(key);
    }
    EXPECT_EQ((Numbers{-3, 0, 5, 7, 9}), ElementsOf(chunks_));
    EXPECT_EQ(5U, chunks_.size());
    EXPECT_TRUE(chunks_.Exists(7));
    EXPECT_FALSE(chunks_.Exists(8));
    EXPECT_FALSE(chunks_.Exists(-4));
    EXPECT_FALSE(chunks_.Exists(10));
    EXPECT_EQ(1, LevelsOf(chunks_));
    EXPECT_EQ(0, Check(chunks_));
}

TEST_F(SortedChunksTest, RemovesWhatIsThere) {
    for (const std::int32_t key : {1, 2, 3}) {
        chunks_.Add(key);
    }
    EXPECT_TRUE(chunks_.Remove(2));
    EXPECT_FALSE(chunks_.Remove(2));
    EXPECT_FALSE(chunks_.Remove(4));
    EXPECT_EQ((Numbers{1, 3}), ElementsOf(chunks_));
    EXPECT_TRUE(chunks_.Remove(1));
    EXPECT_TRUE(chunks_.Remove(3));
    EXPECT_TRUE(chunks_.empty());
    EXPECT_EQ(0U, BytesInUse()) << "the last element takes the memory with it";
}

TEST_F(SortedChunksTest, FindsTheElementAfterAKeyThatIsThereOrNot) {
    for (std::int32_t key = 0; key < 10000; key += 10) {
        chunks_.Add(key);
    }
    EXPECT_EQ(0, *chunks_.After(-1));
    EXPECT_EQ(10, *chunks_.After(0));
    EXPECT_EQ(10, *chunks_.After(9));
    for (std::int32_t key = 0; key < 9990; key += 10) {
        ASSERT_EQ(key + 10, *chunks_.After(key));
        ASSERT_EQ(key + 10, *chunks_.After(key + 5));
    }
    EXPECT_TRUE(chunks_.After(9990) == chunks_.end());
    EXPECT_TRUE(chunks_.After(20000) == chunks_.end());
}

TEST_F(SortedChunksTest, CountsItemsFromTheSmallest) {
    for (std::int32_t key = 2000; key > 0; --key) {
        chunks_.Add(key * 3);
    }
    for (std::size_t i = 0; i < 2000; ++i) {
        ASSERT_EQ(static_cast<std::int32_t>(i + 1) * 3, chunks_.Item(i));
    }
}

TEST_F(SortedChunksTest, AddsAKeyThatLiesInAChunkOfItsOwn) {
    for (std::int32_t key = 0; key < 254; ++key) {
        chunks_.Add(key);
    }
    chunks_.Remove(7);
    const std::int32_t& own = *chunks_.begin();
    chunks_.Add(own);
    EXPECT_EQ(253U, chunks_.size());
    WideChunks wide(buffers_.front().get());
    for (std::int32_t key = 0; key < 500; ++key) {
        wide.Add({key, {}});
        wide.Add(*wide.begin());
    }
    EXPECT_EQ(500U, wide.size());
    EXPECT_EQ(0, Check(wide));
}

TEST_F(SortedChunksTest, AMillionAscendingKeysTakeThreeLevels) {
    for (std::int32_t key = 0; key < 1000000; ++key) {
        chunks_.Add(key);
    }
    EXPECT_EQ(3, LevelsOf(chunks_));
    EXPECT_EQ(0, Check(chunks_));
    EXPECT_EQ(1000000U, chunks_.size());
    std::int32_t next = 0;
    for (const std::int32_t key : chunks_) {
        ASSERT_EQ(next++, key);
    }
    EXPECT_EQ(1000000, next);
}

TEST_F(SortedChunksTest, AChunkOfWhichLittleIsLeftJoinsTheOneBeforeIt) {
    std::int32_t full = 0;
    for (; LevelsOf(chunks_) < 2; ++full) {
        chunks_.Add(full);
    }
    --full;  // the last one has gone into a second chunk
    for (std::int32_t i = full; i < 2 * full; ++i) {
        chunks_.Add(i);
    }
    // From the front, so that the chunk behind has no room as long as there is anything to join.
    for (std::int32_t i = 0; i < 2 * full; ++i) {
        if (i % 20 != 0) {
            chunks_.Remove(i);
        }
        ASSERT_TRUE(i >= full || LevelsOf(chunks_) == 2) << i;
    }
    EXPECT_EQ(0, Check(chunks_));
    EXPECT_EQ(1, LevelsOf(chunks_)) << chunks_.size() << " of " << 2 * full << " keys are left";
}

// Ranges go, and some of their keys come back: chunks of every level lose their first ones, get others and join.
TEST_F(SortedChunksTest, ThreeLevelsOfWideKeysShrinkToOneHoweverTheyGo) {
    constexpr std::int32_t kKeys = 20'000;
    WideChunks chunks(NewBuffer());
    for (std::int32_t number = 0; number < kKeys; ++number) {
        chunks.Add(Wide{number, {}});
    }
    ASSERT_EQ(3, LevelsOf(chunks));
    std::mt19937 random = MakeRandom(2);
    for (std::int32_t length = 3000; length > 0; length -= 10) {
        const auto first = static_cast<std::int32_t>(random() % kKeys);
        for (std::int32_t i = first; i < first + length; ++i) {
            chunks.Remove(Wide{i, {}});
        }
        for (std::int32_t i = first; i < (std::min)(first + length, kKeys); i += 40) {
            chunks.Add(Wide{i, {}});
        }
        ASSERT_EQ(0, Check(chunks)) << length;
    }
    EXPECT_LE(LevelsOf(chunks), 2);
    for (std::int32_t number = 0; number < kKeys; ++number) {
        chunks.Remove(Wide{number, {}});
    }
    EXPECT_EQ(0U, chunks.size());
}

TEST_F(SortedChunksTest, EveryChangeIsCounted) {
    std::uint32_t before = chunks_.GetChanges();
    const auto changed = [&] { return std::exchange(before, chunks_.GetChanges()) != chunks_.GetChanges(); };
    chunks_.Add(1);
    EXPECT_TRUE(changed());
    chunks_.Add(1);
    EXPECT_FALSE(changed());
    chunks_.Remove(2);
    EXPECT_FALSE(changed());
    chunks_.Remove(1);
    EXPECT_TRUE(changed());
    Chunks other(buffers_.front().get());
    chunks_.Swap(other);
    EXPECT_TRUE(changed());
}

TEST_F(SortedChunksTest, ACopyIsOnTheHeapAndAnAssignmentWhereItsTargetIs) {
    for (std::int32_t i = 0; i < 1000; ++i) {
        chunks_.Add(i * 7 % 1000);
    }
    const Numbers expected = ElementsOf(chunks_);
    const std::size_t before = BytesInUse();
    const Chunks copy(chunks_);
    EXPECT_EQ(nullptr, copy.GetBuffer());
    EXPECT_EQ(expected, ElementsOf(copy));
    EXPECT_EQ(0, Check(copy));
    EXPECT_EQ(before, BytesInUse());
    Chunks target(NewBuffer());
    target.Add(5000);
    target = chunks_;
    EXPECT_EQ(expected, ElementsOf(target));
    EXPECT_EQ(buffers_.back().get(), target.GetBuffer());
    EXPECT_LE(4000U, buffers_.back()->BytesInUse());
    target = *&target;
    EXPECT_EQ(expected, ElementsOf(target));
    target = std::move(chunks_);
    EXPECT_EQ(expected, ElementsOf(target));
    EXPECT_EQ(buffers_.back().get(), target.GetBuffer()) << "not the source's";
}

TEST_F(SortedChunksTest, AMoveTakesTheMemoryOver) {
    chunks_.Add(1);
    const std::size_t before = BytesInUse();
    Chunks moved(std::move(chunks_));
    EXPECT_EQ(Numbers{1}, ElementsOf(moved));
    EXPECT_EQ(buffers_.front().get(), moved.GetBuffer());
    Chunks same(buffers_.front().get());
    same = std::move(moved);
    EXPECT_EQ(Numbers{1}, ElementsOf(same));
    EXPECT_EQ(before, BytesInUse());
}

TEST_F(SortedChunksTest, AnAppenderTakesKeysInAnyOrderAndOnce) {
    chunks_.Add(50);
    Chunks::Appender appender(chunks_);
    for (const std::int32_t key : {60, 70, 70, 10, 80, 50, 90, 85}) {
        appender.Add(key);
    }
    appender.Flush();
    EXPECT_EQ((Numbers{10, 50, 60, 70, 80, 85, 90}), ElementsOf(chunks_));
    EXPECT_EQ(0, Check(chunks_));
    for (std::int32_t key = 100; key < 5000; ++key) {
        appender.Add(key);
    }
    appender.Flush();
    appender.Flush();
    EXPECT_EQ(4907U, chunks_.size());
    EXPECT_EQ(0, Check(chunks_));
}

TEST_F(SortedChunksTest, AnAppenderAddsWhatItWasGivenOnce) {
    Chunks::Appender appender(chunks_);
    appender.Add(7);
    appender.Flush();
    chunks_.Clear();
    appender.Flush();
    EXPECT_TRUE(chunks_.empty());
}

TEST_F(SortedChunksTest, GoingThroughMeetsWhatIsAddedAheadAndNotWhatIsRemovedThere) {
    for (std::int32_t key = 0; key < 1000; ++key) {
        chunks_.Add(key * 10);
    }
    Numbers met;
    const bool whole = chunks_.ForEach([&](const auto& entry) {
        const std::int32_t key = *entry;
        met.push_back(key);
        if (key % 100 == 0) {
            chunks_.Add(key + 5);
            chunks_.Add(key - 5);
            chunks_.Remove(key);
            chunks_.Remove(key + 10);
        }
        return true;
    });
    EXPECT_TRUE(whole);
    ASSERT_EQ(1000U, met.size()) << "of each ten one more and one less";
    EXPECT_EQ((Numbers{0, 5, 20, 30, 40, 50, 60, 70, 80, 90, 100, 105}), Numbers(met.begin(), met.begin() + 12));
    EXPECT_EQ(9990, met.back());
}

TEST_F(SortedChunksTest, GoingThroughEndsWhenItIsTold) {
    for (std::int32_t key = 0; key < 10; ++key) {
        chunks_.Add(key);
    }
    Numbers met;
    EXPECT_FALSE(chunks_.ForEach([&](const auto& entry) {
        met.push_back(*entry);
        return *entry < 3;
    }));
    EXPECT_EQ((Numbers{0, 1, 2, 3}), met);
}

TEST_F(SortedChunksTest, GoingThroughWhatIsClearedMeanwhileEnds) {
    chunks_.Add(1);
    chunks_.Add(2);
    int met = 0;
    EXPECT_TRUE(chunks_.ForEach([&](const auto&) {
        chunks_.Clear();
        ++met;
        return true;
    }));
    EXPECT_EQ(1, met);
}

TEST_F(SortedChunksTest, PayloadsStayWithTheirKeys) {
    Texts texts(NewBuffer());
    EXPECT_EQ(nullptr, texts.Find(1));
    EXPECT_EQ(nullptr, texts.Need(3)) << "a new one is empty";
    texts.Need(3) = "three";
    texts.Need(1) = "one";
    texts.Need(2) = "two";
    ASSERT_NE(nullptr, texts.Find(3));
    EXPECT_STREQ("three", *texts.Find(3));
    EXPECT_STREQ("three", texts.Need(3));
    EXPECT_EQ(nullptr, texts.Find(4));
    texts.Remove(1);
    auto entry = texts.begin();
    EXPECT_EQ(2, *entry);
    EXPECT_STREQ("two", entry.Value());
    ++entry;
    EXPECT_EQ(3, *entry);
    EXPECT_STREQ("three", entry.Value());
    EXPECT_TRUE(++entry == texts.end());
}

}  // namespace
}  // namespace KivGenerics::Testing
