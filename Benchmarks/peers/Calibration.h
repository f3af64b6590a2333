#pragma once

namespace Peers {

/// The CPU time of this process.
double GetCpuSeconds();

/// The CPU time that a fixed piece of work takes just now: steps through memory of the size of a second-level cache, and as much
/// arithmetic at once as the processor can do. When it takes longer than usual, something else disturbs the processor, be it
/// only a neighbour with which it shares a core.
double Calibrate();

}  // namespace Peers
