#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Expected.h"
#include "System.h"

namespace Peers {

/// What one workload's passes have in common, for every system.
struct Plan {
    explicit Plan(const Workload& work);

    Workload workload;
    Expected expected;
    std::vector<Place> lookups;  ///< of any field
    std::vector<Place> paths;
    std::vector<Place> sets;  ///< of numbers only
    Expected looked;
    Expected found;
    Expected set;

    /// What the time of an operation is divided by: lookups, paths, what is set; nodes of this library, or elements of sets.
    double GetDivisor(Operation operation) const;
    bool Has(Operation operation) const;
};

/// The figures of one sample.
struct Sample {
    std::array<double, kOperationCount> seconds{};
    std::array<double, kOperationCount> calibration{};  ///< the slower of the two around it
    double heldBytes = 0;
    double savedBytes = 0;
};

/// Whether `system` does the operation in this workload.
bool Does(const System& system, const Plan& plan, Operation operation);

/// Runs every operation once. With `verify`, what they answer is compared with what is expected, outside what is measured.
Sample RunPass(System& system, const Plan& plan, bool verify);

}  // namespace Peers
