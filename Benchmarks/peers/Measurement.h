#pragma once

#include <array>
#include <functional>
#include <vector>

#include "HeapPosix.h"
#include "Pass.h"

namespace Peers {

/// Nanoseconds a node (a lookup, a path, a set), over the samples that count.
struct Figure {
    double median = 0;
    double lowerQuartile = 0;
    double upperQuartile = 0;
    int samples = 0;  ///< 0 where the system does not do the operation
    bool disturbed = false;  ///< too few samples were undisturbed, so all count
};

/// All figures of one system and one workload.
struct Cell {
    std::array<Figure, kOperationCount> figures;
    double heldBytes = 0;  ///< a node
    double savedBytes = 0;  ///< a node
};

struct Request {
    std::vector<SystemEntry> systems;
    std::vector<Workload> workloads;
    int rounds = 9;
    Heap heap = Heap::Warm;
};

/// Cells by workload, then system, in the order of the request.
using Cells = std::vector<std::vector<Cell>>;

/// Called after each round.
using Progress = std::function<void(const Workload&, int round)>;

/// Measures workload after workload: in each round every system once, in random order. Rounds are added where samples were
/// disturbed, up to twice as many as asked for. Calls `keep` after each workload with the cells so far.
Cells Measure(const Request& request, const Progress& progress, const std::function<void(const Cells&)>& keep);

}  // namespace Peers
