#pragma once

namespace Peers {

/// The CPU time of this process.
double GetCpuSeconds();

/// The CPU time that a fixed piece of work takes just now: arithmetic, and steps through memory of the size of a second-level
/// cache. When it takes longer than usual, something else disturbs the processor.
double Calibrate();

}  // namespace Peers
