#include <KivSynch/Sleep.h>

#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

std::atomic<int> signals{0};

void CountSignal(int) {
    ++signals;
}

TEST(SleepTest, RestsForTheTimeAskedFor) {
    for (const unsigned long time : {1UL, 30UL}) {
        const Clock::time_point start = Clock::now();
        Sleep(time);
        EXPECT_LE(milliseconds(time), Clock::now() - start);
    }
}

TEST(SleepTest, ZeroLetsAnotherThreadRun) {
    std::atomic<bool> done{false};
    std::thread other([&done] { done = true; });
    // On one processor this ends because the other thread gets its turn.
    while (!done) {
        Sleep(0);
    }
    other.join();
    EXPECT_TRUE(done);
}

TEST(SleepTest, ASignalDoesNotShortenIt) {
    struct sigaction action = {};
    action.sa_handler = CountSignal;
    struct sigaction before = {};
    ASSERT_EQ(0, sigaction(SIGUSR1, &action, &before));
    signals = 0;
    const pthread_t sleeper = pthread_self();
    const Clock::time_point start = Clock::now();
    std::thread disturber([sleeper] {
        for (int i = 0; i < 5; ++i) {
            std::this_thread::sleep_for(milliseconds(10));
            pthread_kill(sleeper, SIGUSR1);
        }
    });
    Sleep(100);
    const Clock::duration slept = Clock::now() - start;
    disturber.join();
    sigaction(SIGUSR1, &before, nullptr);
    EXPECT_LE(milliseconds(100), slept);
    EXPECT_LE(1, signals.load());
}

}  // namespace
}  // namespace KivPlatform::Testing
