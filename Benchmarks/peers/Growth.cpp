#include "Growth.h"

#include <algorithm>

#include "Tables.h"

namespace Peers {
namespace {

constexpr int kSmall = 10'000;
constexpr int kMiddle = 100'000;
constexpr int kLarge = 1'000'000;
constexpr int kHuge = 10'000'000;
// How often a sample goes over the smallest tree, so that the clock sees enough of it. A record is sixteen nodes, and each pass
// looks up as much as in a large tree: few passes do.
constexpr int kPassesOfNumbers = 25;
constexpr int kPassesOfRecords = 3;

void MeasureSeries(const Request& request, Shape shape, int smallPasses, Series& series, const Progress& progress,
                   const std::function<void()>& keep) {
    for (const int size : series.sizes) {
        Request one = request;
        one.workloads = {{series.name, series.unit, shape, size, size == kSmall ? smallPasses : 1}};
        if (size == series.sizes.back()) {
            one.systems.resize(1);
        }
        series.cells.push_back(Measure(one, progress, [](const Cells&) {}).front());
        keep();
    }
}

bool IsOfWholeTree(Operation operation) {
    return operation != Operation::Lookup && operation != Operation::Path && operation != Operation::Set;
}

}  // namespace

std::vector<Series> MeasureGrowth(const Request& request, const Progress& progress,
                                  const std::function<void(const std::vector<Series>&)>& keep) {
    std::vector<Series> all;
    const auto keepAll = [&] { keep(all); };
    all.push_back({"W1", "Integers", {kSmall, kMiddle, kLarge, kHuge}});
    MeasureSeries(request, Shape::Numbers, kPassesOfNumbers, all.back(), progress, keepAll);
    all.push_back({"W2", "records", {kSmall, kMiddle, kLarge}});
    MeasureSeries(request, Shape::Records, kPassesOfRecords, all.back(), progress, keepAll);
    return all;
}

Span GetComparedSizes(const Series& series) {
    const auto large =
        static_cast<std::size_t>(std::find(series.sizes.begin(), series.sizes.end(), kLarge) - series.sizes.begin());
    const std::size_t last = series.sizes.size() - 1;
    return large < last ? Span{large, last} : Span{0, large};
}

std::optional<double> GetGrowth(const Series& series, Span span, Operation operation) {
    constexpr double kClockSteps = 0.5;  // below that much of a nanosecond a node there is only the clock to see
    const auto index = static_cast<std::size_t>(operation);
    const Figure& small = series.cells[span.smaller].front().figures[index];
    const Figure& large = series.cells[span.larger].front().figures[index];
    if (!IsOfWholeTree(operation) || small.samples == 0 || large.samples == 0) {
        return std::nullopt;
    }
    return (large.median + kClockSteps) / (small.median + kClockSteps);
}

std::string MakeGrowthMarkdown(const Request& request, const std::vector<Series>& growth) {
    std::string text;
    for (const Series& series : growth) {
        for (std::size_t size = 0; size < series.cells.size(); ++size) {
            text += std::string("\n") + series.name + " with " + std::to_string(series.sizes[size]) + " " +
                    series.unit + ", ns a node:\n\n" + MakeFigureTable(request, series.cells[size]);
        }
    }
    return text;
}

}  // namespace Peers
