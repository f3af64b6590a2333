// Prints what the load of hostile files costs, by their size: `hostile_table` for a look, `hostile_table --check` to fail where a
// file of twice the size costs more than it should.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>

#include <KivStorage/LoadTree.h>

#include "targets/HostileItems.h"
#include "targets/PeakBuffer.h"

namespace {

constexpr std::size_t kSizes[] = {std::size_t{1} << 18, std::size_t{1} << 20, std::size_t{1} << 22};
constexpr int kRounds = 3;
// Four times the size takes four times as long, and on a machine that does other things, too, somewhat more.
constexpr double kMostTimePerSize = 4 * 2.5;

struct Cost {
    std::size_t file = 0;
    std::size_t reserved = 0;
    double milliseconds = 0;  // of the processor, the least of several loads
    bool loads = false;
};

Cost Measure(const KivFuzz::HostileFamily& family, std::size_t bytes) {
    const KivFuzz::Bytes file = KivFuzz::FrameItems(family.make(bytes));
    Cost cost;
    cost.file = file.size();
    for (int round = 0; round < kRounds; ++round) {
        const KivFuzz::PeakBuffers buffers;
        const std::clock_t start = std::clock();
        cost.loads = KivStorage::LoadTreeFromMemory(file.data(), file.size()).result.Ok();
        const double milliseconds = 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        cost.milliseconds = round == 0 ? milliseconds : std::min(cost.milliseconds, milliseconds);
        cost.reserved = buffers.GetReserved();
    }
    return cost;
}

bool IsWithinLimits(const Cost& cost, const Cost& quarter) {
    const bool holds = cost.reserved <= 64 * cost.file + (std::size_t{1} << 20);
    // Below some milliseconds the clock says little.
    return holds && (quarter.file == 0 || cost.milliseconds <= kMostTimePerSize * std::max(quarter.milliseconds, 2.0));
}

/// The number of sizes that cost too much.
int PrintFamily(const KivFuzz::HostileFamily& family) {
    int dear = 0;
    Cost before;
    for (const std::size_t size : kSizes) {
        const Cost cost = Measure(family, size);
        const bool good = IsWithinLimits(cost, before);
        const auto perByte = static_cast<double>(cost.reserved) / static_cast<double>(cost.file);
        std::printf("| %-33s | %9zu | %11zu | %6.1f | %8.2f | %-7s |%s\n", family.name, cost.file, cost.reserved,
                    perByte, cost.milliseconds, cost.loads ? "loads" : "refused", good ? "" : " TOO MUCH");
        std::fflush(stdout);
        dear += good ? 0 : 1;
        before = cost;
    }
    return dear;
}

}  // namespace

int main(int count, char** words) {
    const bool check = count == 2 && std::strcmp(words[1], "--check") == 0;
    if (count > 1 && !check) {
        std::fprintf(stderr, "usage: hostile_table [--check]\n");
        return 2;
    }
    std::printf("| %-33s | %9s | %11s | %6s | %8s | %-7s |\n", "file of", "bytes", "held", "a byte", "ms", "");
    std::printf("|:----------------------------------|----------:|------------:|-------:|---------:|:--------|\n");
    int dear = 0;
    for (const KivFuzz::HostileFamily& family : KivFuzz::GetHostileFamilies()) {
        dear += PrintFamily(family);
    }
    return check && dear > 0 ? 1 : 0;
}
