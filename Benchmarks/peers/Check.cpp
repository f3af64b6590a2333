#include "Check.h"

#include <array>
#include <cstdio>
#include <string>

#include "Ratios.h"
#include "Tables.h"

namespace Peers {
namespace {

/// Ratio to the best peer, by operation: build, walk, lookup, path, set, copy, compare, save, load.
constexpr std::array<double, kComparedOperations> kRatioLimits = {2.2, 1.8, 0.7, 0.35, 0.5, 1.5, 2.1, 1.0, 1.2};
constexpr double kAllLimit = 1.38;
constexpr double kReleaseLimit = 1.5;  // ns a node
constexpr double kMemoryLimit = 57;  // bytes a node of the records
constexpr double kGrowthLimit = 1.4;

class Verdict {
public:
    /// `measured` must be there and at most `limit`.
    void Expect(const std::string& what, std::optional<double> measured, double limit) {
        const bool holds = measured && *measured <= limit;
        std::printf("%-44s %10.2f at most %8.2f%s\n", what.c_str(), measured.value_or(0), limit,
                    holds      ? ""
                    : measured ? "  TOO HIGH"
                               : "  NOT MEASURED");
        (holds ? passed_ : failed_) += 1;
    }
    bool Finish() const {
        std::printf("%d passed, %d failed\n", passed_, failed_);
        return failed_ == 0;
    }

private:
    int passed_ = 0;
    int failed_ = 0;
};

void CheckRatios(const Request& request, const Cells& cells, Verdict& verdict) {
    const std::vector<Ratios> ratios = ComputeRatios(request, cells);
    const Ratios& own = ratios.front();
    for (std::size_t i = 0; i < kComparedOperations; ++i) {
        verdict.Expect(std::string(GetName(static_cast<Operation>(i))) + ", ratio to the best peer", own.operations[i],
                       kRatioLimits[i]);
    }
    verdict.Expect("all, ratio to the best peer", own.all, kAllLimit);
    for (std::size_t system = 1; system < ratios.size(); ++system) {
        verdict.Expect(std::string("all, beside that of ") + request.systems[system].name, own.all,
                       ratios[system].all.value_or(0));
    }
}

void CheckOwn(const Request& request, const Cells& cells, Verdict& verdict) {
    constexpr auto kRelease = static_cast<std::size_t>(Operation::Release);
    for (std::size_t work = 0; work < cells.size(); ++work) {
        const Cell& own = cells[work].front();
        const std::string name = request.workloads[work].name;
        if (request.workloads[work].counts) {
            verdict.Expect(name + ", release, ns a node", own.figures[kRelease].median, kReleaseLimit);
        }
        if (request.workloads[work].shape == Shape::Records) {
            verdict.Expect(name + ", bytes in memory a node", own.heldBytes, kMemoryLimit);
        }
    }
}

void CheckGrowth(const Series& series, Verdict& verdict) {
    const Span span = GetComparedSizes(series);
    const std::string sizes =
        std::to_string(series.sizes[span.larger]) + " to " + std::to_string(series.sizes[span.smaller]);
    for (std::size_t i = 0; i < kOperationCount; ++i) {
        const auto operation = static_cast<Operation>(i);
        if (const std::optional<double> times = GetGrowth(series, span, operation)) {
            verdict.Expect(std::string(series.name) + ", " + GetName(operation) + ", " + sizes, times, kGrowthLimit);
        }
    }
}

}  // namespace

bool Check(const Request& request, const Cells& cells, const std::vector<Series>& growth) {
    Verdict verdict;
    CheckRatios(request, cells, verdict);
    CheckOwn(request, cells, verdict);
    for (const Series& series : growth) {
        CheckGrowth(series, verdict);
    }
    return verdict.Finish();
}

}  // namespace Peers
