#pragma once

#include <array>
#include <optional>
#include <vector>

#include "Measurement.h"

namespace Peers {

/// One system against the best of the others. Index 0 of the request is this library, which is nobody's best.
struct Ratios {
    std::array<std::optional<double>, kOperationCount> operations;  ///< geometric means over the workloads
    std::optional<double> all;  ///< geometric mean over all cells
};

/// The operations that are compared; release is not.
inline constexpr int kComparedOperations = 9;

/// The fastest counted peer's median in a cell; empty where no peer does the operation.
std::optional<double> FindBest(const Request& request, const std::vector<Cell>& row, Operation operation);

/// By system, over the workloads that count (Workload::counts).
std::vector<Ratios> ComputeRatios(const Request& request, const Cells& cells);

}  // namespace Peers
