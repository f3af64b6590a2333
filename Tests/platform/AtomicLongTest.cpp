#include <KivSynch/AtomicLong.h>

#include <cstdint>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using KivSynch::AtomicLong;

TEST(AtomicLongTest, CountsFromZeroOrFromWhatItIsGiven) {
    EXPECT_EQ(0, AtomicLong().Get());
    EXPECT_EQ(-5, AtomicLong(-5).Get());
}

TEST(AtomicLongTest, CountingReturnsTheNewValue) {
    AtomicLong counter(1);
    EXPECT_EQ(2, counter.Increment());
    EXPECT_EQ(3, counter.Increment());
    EXPECT_EQ(2, counter.Decrement());
    EXPECT_EQ(1, counter.Decrement());
    EXPECT_EQ(0, counter.Decrement());
    EXPECT_EQ(-1, counter.Decrement());
    EXPECT_EQ(-1, counter.Get());
}

TEST(AtomicLongTest, ExchangeReturnsTheOldValue) {
    AtomicLong word;
    EXPECT_EQ(0, word.Exchange(0x12345678));
    EXPECT_EQ(0x12345678, word.Exchange(0x12345678));
    word.Set(7);
    EXPECT_EQ(7, word.Get());
}

TEST(AtomicLongTest, CountsWithSeveralThreadsAtOnce) {
    AtomicLong counter;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&counter] {
            for (int j = 0; j < 20000; ++j) {
                counter.Increment();
                counter.Increment();
                counter.Decrement();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(80000, counter.Get());
}

TEST(AtomicLongTest, WhoeverCountsToZeroSeesWhatTheOthersDid) {
    for (int round = 0; round < 500; ++round) {
        AtomicLong references(2);
        int first = 0;
        int second = 0;
        int sum = 0;
        const auto release = [&](int& mine) {
            mine = 1;
            if (references.Decrement() == 0) {
                sum = first + second;
            }
        };
        std::thread other([&] { release(first); });
        release(second);
        other.join();
        ASSERT_EQ(2, sum) << "round " << round;
    }
}

}  // namespace
}  // namespace KivPlatform::Testing
