#include "Ratios.h"

#include <algorithm>
#include <cmath>

namespace Peers {
namespace {

class GeometricMean {
public:
    void Add(double value) {
        logarithms_ += std::log(value);
        ++count_;
    }
    std::optional<double> Get() const {
        return count_ > 0 ? std::optional<double>(std::exp(logarithms_ / count_)) : std::nullopt;
    }

private:
    double logarithms_ = 0;
    int count_ = 0;
};

Ratios ComputeFor(std::size_t system, const Request& request, const Cells& cells) {
    std::array<GeometricMean, kComparedOperations> means;
    GeometricMean all;
    for (std::size_t work = 0; work < cells.size(); ++work) {
        for (std::size_t i = 0; i < kComparedOperations && request.workloads[work].counts; ++i) {
            const auto operation = static_cast<Operation>(i);
            const std::optional<double> best = FindBest(request, cells[work], operation);
            const Figure& figure = cells[work][system].figures[i];
            if (best && figure.samples > 0 && request.systems[system].IsCounted(operation)) {
                means[i].Add(figure.median / *best);
                all.Add(figure.median / *best);
            }
        }
    }
    Ratios ratios;
    for (std::size_t i = 0; i < kComparedOperations; ++i) {
        ratios.operations[i] = means[i].Get();
    }
    ratios.all = all.Get();
    return ratios;
}

}  // namespace

std::optional<double> FindBest(const Request& request, const std::vector<Cell>& row, Operation operation) {
    std::optional<double> best;
    for (std::size_t system = 1; system < row.size(); ++system) {
        const Figure& figure = row[system].figures[static_cast<std::size_t>(operation)];
        if (figure.samples > 0 && request.systems[system].IsCounted(operation)) {
            best = (std::min)(best.value_or(figure.median), figure.median);
        }
    }
    return best;
}

std::vector<Ratios> ComputeRatios(const Request& request, const Cells& cells) {
    std::vector<Ratios> ratios;
    for (std::size_t system = 0; system < request.systems.size(); ++system) {
        ratios.push_back(ComputeFor(system, request, cells));
    }
    return ratios;
}

}  // namespace Peers
