#include <cstddef>
#include <cstdint>
#include <vector>

#include <time.h>

#include "Calibration.h"

namespace Peers {
namespace {

constexpr std::size_t kPlaces = 32 * 1024;
constexpr int kSteps = 40'000;

/// A ring through all places in scattered order.
std::vector<std::uint64_t> MakeRing() {
    constexpr std::size_t kStride = 12345;  // odd, so that it comes to every place of a power of two
    std::vector<std::uint64_t> ring(kPlaces);
    for (std::size_t i = 0; i < kPlaces; ++i) {
        ring[i] = (i + kStride) % kPlaces;
    }
    return ring;
}

/// Waits for memory at each step, and for the step before.
std::uint64_t StepThroughMemory() {
    static const std::vector<std::uint64_t> ring = MakeRing();
    std::uint64_t place = 0;
    std::uint64_t mixed = 1;
    for (int i = 0; i < kSteps; ++i) {
        place = ring[place];
        mixed = (mixed ^ place) * 0x9E3779B97F4A7C15U;
    }
    return mixed;
}

template <int First, int Second, int Third>
std::uint64_t Shift(std::uint64_t x) {
    x ^= x << First;
    x ^= x >> Second;
    return x ^ x << Third;
}

/// Gives a processor as much to do at once as it can: where it shares its units with another one that works, it takes twice as long.
std::uint64_t ShiftMuch() {
    std::uint64_t mixed[] = {1, 2, 3, 4};
    for (int i = 0; i < kSteps; ++i) {
        mixed[0] = Shift<13, 7, 17>(mixed[0]);
        mixed[1] = Shift<12, 25, 27>(mixed[1]);
        mixed[2] = Shift<21, 35, 4>(mixed[2]);
        mixed[3] = Shift<11, 5, 45>(mixed[3]);
    }
    return mixed[0] ^ mixed[1] ^ mixed[2] ^ mixed[3];
}

}  // namespace

double GetCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    constexpr double kNanosecond = 1e-9;
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * kNanosecond;
}

double Calibrate() {
    const double start = GetCpuSeconds();
    const std::uint64_t stepped = StepThroughMemory();
    const std::uint64_t shifted = ShiftMuch();
    const double seconds = GetCpuSeconds() - start;
    return stepped == 0 || shifted == 0 ? 0 : seconds;  // both are needed, and so are made
}

}  // namespace Peers
