#pragma once

#include <atomic>
#include <cstdint>

namespace KivSynch {

/// A 32-bit counter that several threads may count up and down at once.
class AtomicLong {
public:
    explicit AtomicLong(std::int32_t value = 0) noexcept : value_(value) {}

    /// Returns the new value.
    std::int32_t Increment() noexcept { return value_.fetch_add(1, std::memory_order_relaxed) + 1; }
    /// Returns the new value. Whoever counts to 0 sees everything that other threads did before they counted down.
    std::int32_t Decrement() noexcept { return value_.fetch_sub(1, std::memory_order_acq_rel) - 1; }
    std::int32_t Get() const noexcept { return value_.load(std::memory_order_acquire); }
    /// Stores `value` and returns the old one.
    std::int32_t Exchange(std::int32_t value) noexcept { return value_.exchange(value, std::memory_order_acq_rel); }
    void Set(std::int32_t value) noexcept { value_.store(value, std::memory_order_release); }

private:
    std::atomic<std::int32_t> value_;
};

}  // namespace KivSynch
