// How much more two threads with a forest each do than one: twice as much, unless they wait for each other, or the machine has
// not so much to give. What it has, two processes show, which share nothing of the library. `ThreadsReport --check` asserts that
// two threads do 1.9 times what one does or, where two processes do not do twice as much, 95 % of what these do.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <vector>

#include "ThreadWorks.h"
#include "WorkersPosix.h"

namespace {

constexpr double kLeastGain = 1.9;
constexpr double kLeastOfProcesses = kLeastGain / 2;
// So short that what both forests of "reuse nodes" grow to, 25 MiB each, fits into the spare memory of the process: one forest
// must not get all of its memory warm while two have to share.
constexpr double kSecondsOfTry = 0.004;
// What is timed: long enough that starting together does not matter, so short that the three that are compared find the machine in
// the same state.
constexpr int kTriesInRow = 15;
constexpr int kTriesToWarmUp = 2;  // until every worker has a processor of its own
constexpr int kComparisons = 75;

/// Those who do the works. The processes begin before there is any thread, and before the library is used for the first time.
class Team {
public:
    enum Members { OneThread, TwoThreads, TwoProcesses };

    /// The seconds that a row of tries takes, from the common beginning until the last member is done.
    double Measure(Members members, const ThreadWork& work, int rounds, int tries) {
        const Order order = {&work, members == OneThread ? 1 : 2, rounds, tries};
        Worker* const first = members == TwoProcesses ? &firstProcess_ : &firstThread_;
        Worker* const second = members == TwoProcesses ? &secondProcess_ : &secondThread_;
        meeting_.Reset();
        first->Begin(order);
        if (members == OneThread) {
            return first->Await();
        }
        second->Begin(order);
        const double seconds = first->Await();
        return std::max(seconds, second->Await());
    }

private:
    double CarryOut(const Order& order) {
        for (int i = 0; i < kTriesToWarmUp; ++i) {
            order.work->run(order.rounds);
        }
        meeting_.Arrive(order.members);
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < order.tries; ++i) {
            order.work->run(order.rounds);
        }
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    Worker::Work GetWork() {
        return [this](const Order& order) { return CarryOut(order); };
    }

    Meeting meeting_;
    Worker firstProcess_{Worker::In::Process, GetWork()};
    Worker secondProcess_{Worker::In::Process, GetWork()};
    Worker firstThread_{Worker::In::Thread, GetWork()};
    Worker secondThread_{Worker::In::Thread, GetWork()};
};

/// As many rounds as a try takes.
int RoundsFor(Team& team, const ThreadWork& work) {
    constexpr int kTimes = 10;
    for (int rounds = 1;; rounds *= 2) {
        double least = std::numeric_limits<double>::max();
        for (int i = 0; i < kTimes; ++i) {
            least = std::min(least, team.Measure(Team::OneThread, work, rounds, 1));
        }
        if (least >= kSecondsOfTry) {
            return rounds;
        }
    }
}

double MedianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Throughputs, each by another that was measured right beside it, and of these the median: neither what disturbs a row, nor a
/// machine that is another one half a minute later, moves it.
struct Gains {
    double threads;  // of two threads by that of one
    double processes;  // of two processes by that of one thread
    double threadsOfProcesses;  // of two threads by that of two processes
};

Gains Compare(Team& team, const ThreadWork& work) {
    const int rounds = RoundsFor(team, work);
    std::vector<double> threads;
    std::vector<double> processes;
    std::vector<double> threadsOfProcesses;
    for (int i = 0; i < kComparisons; ++i) {
        std::array<double, 3> seconds{};
        // Each is first, second and third as often as the others.
        for (int place = 0; place < 3; ++place) {
            const int members = (i + place) % 3;
            seconds[static_cast<std::size_t>(members)] =
                team.Measure(static_cast<Team::Members>(members), work, rounds, kTriesInRow);
        }
        threads.push_back(2 * seconds[Team::OneThread] / seconds[Team::TwoThreads]);
        processes.push_back(2 * seconds[Team::OneThread] / seconds[Team::TwoProcesses]);
        threadsOfProcesses.push_back(seconds[Team::TwoProcesses] / seconds[Team::TwoThreads]);
    }
    return {MedianOf(threads), MedianOf(processes), MedianOf(threadsOfProcesses)};
}

/// Whether the work passes, and why. What a machine gives that has less than two whole processors is no fault of the threads.
bool Judge(const Gains& gains) {
    if (gains.threads >= kLeastGain) {
        std::printf("at least %.1f times what one does\n", kLeastGain);
        return true;
    }
    const bool isGood = gains.threadsOfProcesses >= kLeastOfProcesses;
    std::printf("%s %.0f %% of two processes, to which this machine gives %.2f times what it gives to one\n",
                isGood ? "at least" : "FAILED: less than", 100 * kLeastOfProcesses, gains.processes);
    return isGood;
}

/// How many of the works fail that are checked.
int Report() {
    int failed = 0;
    std::printf("Throughput of         two threads  two processes  two threads\n");
    std::printf("by that of                     one            one  two processes\n");
    Team team;
    for (const ThreadWork& work : kThreadWorks) {
        const Gains gains = Compare(team, work);
        std::printf("%-20s %12.2f %14.2f %14.3f   ", work.name, gains.threads, gains.processes,
                    gains.threadsOfProcesses);
        failed += Judge(gains) || !work.isChecked ? 0 : 1;
        std::fflush(stdout);
    }
    return failed;
}

}  // namespace

int main(int count, char** words) {
    const bool checks = count == 2 && std::strcmp(words[1], "--check") == 0;
    try {
        return Report() > 0 && checks ? 1 : 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
