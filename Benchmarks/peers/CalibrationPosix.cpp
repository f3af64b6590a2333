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

}  // namespace

double GetCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    constexpr double kNanosecond = 1e-9;
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * kNanosecond;
}

double Calibrate() {
    static const std::vector<std::uint64_t> ring = MakeRing();
    const double start = GetCpuSeconds();
    std::uint64_t place = 0;
    std::uint64_t mixed = 1;
    for (int i = 0; i < kSteps; ++i) {
        place = ring[place];
        mixed = (mixed ^ place) * 0x9E3779B97F4A7C15U;
    }
    const double seconds = GetCpuSeconds() - start;
    return mixed == 0 ? 0 : seconds;  // the product is needed, and so is made
}

}  // namespace Peers
