#pragma once

#include <string>

#include "Ratios.h"

namespace Peers {

/// "build", "walk", ...
const char* GetName(Operation operation);

/// With this many digits behind the point.
std::string Format(double value, int digits);

/// One row for each system: the medians, and the bytes a node takes.
std::string MakeFigureTable(const Request& request, const std::vector<Cell>& row);

/// Every figure with its quartiles, one line each, with a head line.
std::string MakeCsv(const Request& request, const Cells& cells);

/// The table of ratios, then one table of medians for each workload.
std::string MakeMarkdown(const Request& request, const Cells& cells);

}  // namespace Peers
