#pragma once

#include <string>
#include <vector>

#include "Growth.h"
#include "Measurement.h"

namespace Peers {

/// Bars as an SVG image: one for each system, its geometric mean over all cells.
std::string PlotSystems(const Request& request, const Cells& cells);

/// One bar for each operation, this library's geometric mean against the best peer, which is 1.
std::string PlotOperations(const Request& request, const Cells& cells);

/// Lines: what a node of this library costs in trees of growing size.
std::string PlotGrowth(const Series& series);

}  // namespace Peers
