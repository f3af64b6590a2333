#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Measurement.h"

namespace Peers {

/// The same shape in several sizes.
struct Series {
    const char* name;
    const char* unit;
    std::vector<int> sizes;
    std::vector<std::vector<Cell>> cells = {};  ///< by size, then system; of the largest size this library alone
};

/// One vector of 10,000 to 10,000,000 Integers, and 10,000 to 1,000,000 records. The largest of each is measured with this
/// library alone. Calls `keep` after each size with the series so far.
std::vector<Series> MeasureGrowth(const Request& request, const Progress& progress,
                                  const std::function<void(const std::vector<Series>&)>& keep);

/// Two sizes of a series, as places in it.
struct Span {
    std::size_t smaller;
    std::size_t larger;
};

/// The sizes between which what a node costs is compared: 10,000 and 1,000,000 records, and 1,000,000 and 10,000,000 Integers. Of
/// 10,000 Integers two trees fit into a processor's second-level cache: what they cost says how fast that is.
Span GetComparedSizes(const Series& series);

/// How many times more a node of this library costs in the larger tree than in the smaller; empty for operations that are not done
/// or not done to a whole tree.
std::optional<double> GetGrowth(const Series& series, Span span, Operation operation);

std::string MakeGrowthMarkdown(const Request& request, const std::vector<Series>& growth);

}  // namespace Peers
