#include "Measurement.h"

#include <algorithm>
#include <numeric>
#include <random>

#include "ChildPosix.h"

namespace Peers {
namespace {

// A calibration this much slower than the fastest tells of a disturbance.
constexpr double kDisturbed = 1.1;
constexpr std::size_t kLeastSamples = 3;

using Samples = std::vector<Sample>;

/// The fastest calibration of the whole run.
class Calm {
public:
    void Learn(const Sample& sample) {
        for (const double seconds : sample.calibration) {
            fastest_ = seconds > 0 ? (std::min)(fastest_, seconds) : fastest_;
        }
    }
    bool IsDisturbed(double calibration) const { return calibration > fastest_ * kDisturbed; }

private:
    double fastest_ = 1e9;
};

double GetQuantile(const std::vector<double>& sorted, double part) {
    const double place = part * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(place);
    const std::size_t above = (std::min)(below + 1, sorted.size() - 1);
    return sorted[below] + (sorted[above] - sorted[below]) * (place - static_cast<double>(below));
}

Figure MakeFigure(std::vector<double> nanoseconds) {
    std::sort(nanoseconds.begin(), nanoseconds.end());
    Figure figure;
    figure.samples = static_cast<int>(nanoseconds.size());
    figure.lowerQuartile = GetQuantile(nanoseconds, 0.25);
    figure.median = GetQuantile(nanoseconds, 0.5);
    figure.upperQuartile = GetQuantile(nanoseconds, 0.75);
    return figure;
}

/// Of the samples that nothing disturbed; where there are too few, of the half that was disturbed least.
Figure MakeFigure(Samples samples, std::size_t operation, const Calm& calm, double divisor) {
    constexpr double kNanoseconds = 1e9;
    std::stable_sort(samples.begin(), samples.end(), [operation](const Sample& left, const Sample& right) {
        return left.calibration[operation] < right.calibration[operation];
    });
    const auto isCalm = [&](const Sample& sample) { return !calm.IsDisturbed(sample.calibration[operation]); };
    const auto calmOnes = static_cast<std::size_t>(std::count_if(samples.begin(), samples.end(), isCalm));
    const bool disturbed = calmOnes < kLeastSamples && calmOnes < samples.size();
    samples.resize(disturbed ? (samples.size() + 1) / 2 : calmOnes);
    std::vector<double> nanoseconds;
    for (const Sample& sample : samples) {
        nanoseconds.push_back(sample.seconds[operation] * kNanoseconds / divisor);
    }
    if (nanoseconds.front() == 0) {
        return {};
    }
    Figure figure = MakeFigure(std::move(nanoseconds));
    figure.disturbed = disturbed;
    return figure;
}

Cell MakeCell(const Samples& samples, const Plan& plan, const Calm& calm) {
    Cell cell;
    for (std::size_t i = 0; i < kOperationCount; ++i) {
        const auto operation = static_cast<Operation>(i);
        if (plan.Has(operation)) {
            cell.figures[i] = MakeFigure(samples, i, calm, plan.GetDivisor(operation));
        }
    }
    const double nodes = plan.GetDivisor(Operation::Build);
    cell.heldBytes = samples.front().heldBytes / nodes;
    cell.savedBytes = samples.front().savedBytes / nodes;
    return cell;
}

/// Whether every operation of every system has as many undisturbed samples as rounds were asked for.
bool IsEnough(const std::vector<Samples>& systems, int rounds, const Calm& calm) {
    for (const Samples& samples : systems) {
        for (std::size_t i = 0; i < kOperationCount; ++i) {
            const auto good = std::count_if(samples.begin(), samples.end(), [&](const Sample& sample) {
                return !calm.IsDisturbed(sample.calibration[i]);
            });
            if (good < rounds) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

Cells Measure(const Request& request, const Progress& progress, const std::function<void(const Cells&)>& keep) {
    std::mt19937 random(20261121);
    Calm calm;
    Cells cells;
    for (const Workload& workload : request.workloads) {
        const Plan plan(workload);
        std::vector<Samples> systems(request.systems.size());
        std::vector<std::size_t> order(request.systems.size());
        std::iota(order.begin(), order.end(), 0);
        for (int round = 1; round <= request.rounds * 2; ++round) {
            std::shuffle(order.begin(), order.end(), random);
            for (const std::size_t each : order) {
                systems[each].push_back(TakeSample(request.systems[each], plan, request.heap));
                calm.Learn(systems[each].back());
            }
            progress(workload, round);
            if (round >= request.rounds && IsEnough(systems, request.rounds, calm)) {
                break;
            }
        }
        cells.emplace_back();
        for (const Samples& samples : systems) {
            cells.back().push_back(MakeCell(samples, plan, calm));
        }
        keep(cells);
    }
    return cells;
}

}  // namespace Peers
