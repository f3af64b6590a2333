#include "WorkersPosix.h"

#include <new>
#include <stdexcept>
#include <utility>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void OpenPipe(int (&ends)[2]) {
    if (::pipe(ends) != 0) {
        throw std::runtime_error("There is no pipe to give orders through: close other programs and run this again.");
    }
}

}  // namespace

Meeting::Meeting() {
    void* const memory = ::mmap(nullptr, sizeof *arrived_, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    arrived_ = new (memory) std::atomic<int>(0);
}

Meeting::~Meeting() {
    ::munmap(arrived_, sizeof *arrived_);
}

void Meeting::Arrive(int members) noexcept {
    ++*arrived_;
    while (*arrived_ < members) {
        std::this_thread::yield();
    }
}

Worker::Worker(In in, Work work) : work_(std::move(work)) {
    OpenPipe(orders_);
    OpenPipe(answers_);
    if (in == In::Thread) {
        thread_ = std::thread([this] { CarryOutOrders(); });
        return;
    }
    process_ = ::fork();
    if (process_ < 0) {
        throw std::runtime_error(
            "There is no process to measure beside threads: close other programs and run this again.");
    }
    if (process_ == 0) {
        ::close(orders_[1]);
        ::close(answers_[0]);
        // In a thread here, too: a process without any needs no locks for its heap.
        std::thread([this] { CarryOutOrders(); }).join();
        ::_exit(0);
    }
    ::close(orders_[0]);
    ::close(answers_[1]);
}

Worker::~Worker() {
    ::close(orders_[1]);
    if (thread_.joinable()) {
        thread_.join();
        ::close(orders_[0]);
        ::close(answers_[1]);
    } else {
        ::waitpid(process_, nullptr, 0);
    }
    ::close(answers_[0]);
}

/// Until nobody can give one any more.
void Worker::CarryOutOrders() {
    Order order;
    while (::read(orders_[0], &order, sizeof order) == sizeof order) {
        const double seconds = work_(order);
        if (::write(answers_[1], &seconds, sizeof seconds) != sizeof seconds) {
            return;
        }
    }
}

void Worker::Begin(const Order& order) {
    if (::write(orders_[1], &order, sizeof order) != sizeof order) {
        throw std::runtime_error("A worker of the measurement takes no order: run it again.");
    }
}

double Worker::Await() {
    double seconds = 0;
    if (::read(answers_[0], &seconds, sizeof seconds) != sizeof seconds) {
        throw std::runtime_error("A worker of the measurement has ended before its work: run it again.");
    }
    return seconds;
}
