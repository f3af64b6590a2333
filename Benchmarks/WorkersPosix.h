#pragma once

#include <atomic>
#include <functional>
#include <thread>

#include <sys/types.h>

#include "ThreadWorks.h"

/// What a worker is told: to do so many rounds of a work, so many times, as one of so many members.
struct Order {
    const ThreadWork* work = nullptr;
    int members = 0;
    int rounds = 0;
    int tries = 0;
};

/// Where the workers of one order meet. It lies in memory that processes share.
class Meeting {
public:
    Meeting();
    ~Meeting();
    Meeting(const Meeting&) = delete;
    Meeting& operator=(const Meeting&) = delete;

    void Reset() noexcept { *arrived_ = 0; }
    /// Waits until so many have arrived.
    void Arrive(int members) noexcept;

private:
    std::atomic<int>* arrived_;
};

/// Carries out orders in a thread or a process of its own, which waits for them without using a processor, and ends with it.
/// Workers must be destroyed in the opposite order: a process holds the ends of what was there when it began.
class Worker {
public:
    enum class In { Thread, Process };
    /// Carries out one order, and answers how many seconds it took.
    using Work = std::function<double(const Order&)>;

    Worker(In in, Work work);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    void Begin(const Order& order);
    /// The seconds that the order took. Throws std::runtime_error where the worker is no more.
    double Await();

private:
    void CarryOutOrders();

    Work work_;
    int orders_[2] = {-1, -1};  // read here, written there
    int answers_[2] = {-1, -1};
    pid_t process_ = -1;
    std::thread thread_;
};
