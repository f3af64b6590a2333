#include "Plots.h"

#include <algorithm>
#include <cmath>

#include "Ratios.h"
#include "Svg.h"
#include "Tables.h"

namespace Peers {
namespace {

struct Bar {
    std::string name;
    double value;
};

constexpr double kWidth = 720;
constexpr double kLabelWidth = 190;
constexpr double kBarHeight = 24;
constexpr double kTop = 44;
constexpr double kMargin = 60;
constexpr const char* kOwnColor = "#1f6fb4";
constexpr const char* kPeerColor = "#9aa7b2";
constexpr const char* kAxisColor = "#444444";

/// Horizontal bars with their values, and a line at 1.
std::string PlotBars(const std::string& title, const std::vector<Bar>& bars, std::size_t ownBars) {
    double largest = 1;
    for (const Bar& bar : bars) {
        largest = (std::max)(largest, bar.value);
    }
    const double scale = (kWidth - kLabelWidth - kMargin) / largest;
    Svg svg(kWidth, kTop + static_cast<double>(bars.size()) * kBarHeight + kBarHeight);
    svg.Text(kWidth / 2, kTop / 2, "middle", title);
    double top = kTop;
    for (std::size_t i = 0; i < bars.size(); ++i) {
        const double width = bars[i].value * scale;
        constexpr double kGap = 4;
        constexpr double kBaseline = 16;
        svg.Text(kLabelWidth - kGap, top + kBaseline, "end", bars[i].name);
        svg.Rectangle(kLabelWidth, top + kGap / 2, width, kBarHeight - kGap, i < ownBars ? kOwnColor : kPeerColor);
        svg.Text(kLabelWidth + width + kGap, top + kBaseline, "start", Format(bars[i].value, 2));
        top += kBarHeight;
    }
    svg.Line({kLabelWidth + scale, kTop}, {kLabelWidth + scale, top}, kAxisColor);
    return svg.Finish();
}

/// Where a size and a cost stand in a plot whose axes are both logarithmic.
class Scales {
public:
    Scales(const Series& series, double lowest, double highest)
        : firstSize_(std::log10(series.sizes.front())),
          lastSize_(std::log10(series.sizes.back())),
          lowest_(std::log10(lowest)),
          highest_(std::log10(highest)) {}

    Point At(double size, double cost) const {
        const double x = (std::log10(size) - firstSize_) / (lastSize_ - firstSize_);
        const double y = (highest_ - std::log10(cost)) / (highest_ - lowest_);
        return {kMargin + x * (kWidth - kMargin - kLabelWidth), kTop + y * kPlotHeight};
    }

    static constexpr double kPlotHeight = 360;

private:
    double firstSize_;
    double lastSize_;
    double lowest_;
    double highest_;
};

constexpr double kLowestCost = 1;
constexpr double kHighestCost = 1000;

void PlotAxes(Svg& svg, const Series& series, const Scales& scales) {
    constexpr double kGap = 6;
    constexpr double kLineHeight = 16;
    for (double cost = kLowestCost; cost <= kHighestCost; cost *= 10) {
        const Point left = scales.At(series.sizes.front(), cost);
        svg.Line(left, scales.At(series.sizes.back(), cost), "#dddddd");
        svg.Text(left.x - kGap, left.y, "end", Format(cost, 0) + " ns");
    }
    for (const int size : series.sizes) {
        const Point bottom = scales.At(size, kLowestCost);
        svg.Text(bottom.x, bottom.y + kLineHeight, "middle", std::to_string(size));
    }
}

}  // namespace

std::string PlotSystems(const Request& request, const Cells& cells) {
    const std::vector<Ratios> ratios = ComputeRatios(request, cells);
    std::vector<Bar> bars;
    for (std::size_t system = 0; system < ratios.size(); ++system) {
        bars.push_back({request.systems[system].name, ratios[system].all.value_or(0)});
    }
    std::stable_sort(bars.begin() + 1, bars.end(),
                     [](const Bar& left, const Bar& right) { return left.value < right.value; });
    return PlotBars("All cells: ratio to the best peer of each, geometric mean", bars, 1);
}

std::string PlotOperations(const Request& request, const Cells& cells) {
    const Ratios own = ComputeRatios(request, cells).front();
    std::vector<Bar> bars;
    for (std::size_t i = 0; i < kComparedOperations; ++i) {
        bars.push_back({GetName(static_cast<Operation>(i)), own.operations[i].value_or(0)});
    }
    return PlotBars("This library by operation: ratio to the best peer, which is 1", bars, bars.size());
}

std::string PlotGrowth(const Series& series) {
    static constexpr std::array<const char*, kOperationCount> colors = {"#1f6fb4", "#d1495b", "#66a182", "#edae49",
                                                                        "#8d6cab", "#00798c", "#b5651d", "#4c956c",
                                                                        "#2e4057", "#999999"};
    Svg svg(kWidth, kTop + Scales::kPlotHeight + kMargin / 2);
    svg.Text(kWidth / 2, kTop / 2, "middle",
             std::string(series.name) + ": this library, cost of a node by the number of " + series.unit);
    const Scales scales(series, kLowestCost, kHighestCost);
    PlotAxes(svg, series, scales);
    for (std::size_t i = 0; i < kOperationCount; ++i) {
        std::vector<Point> points;
        for (std::size_t size = 0; size < series.sizes.size(); ++size) {
            const Figure& figure = series.cells[size].front().figures[i];
            if (figure.samples > 0) {
                const double cost = (std::min)((std::max)(figure.median, kLowestCost), kHighestCost);
                points.push_back(scales.At(series.sizes[size], cost));
            }
        }
        if (points.size() > 1) {
            svg.Path(points, colors[i]);
            svg.Text(points.back().x + 4, points.back().y + 4, "start", GetName(static_cast<Operation>(i)));
        }
    }
    return svg.Finish();
}

}  // namespace Peers
