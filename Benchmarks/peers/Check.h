#pragma once

#include <vector>

#include "Growth.h"
#include "Measurement.h"

namespace Peers {

/// Asserts what must hold of this library beside its peers, and prints each limit with what was measured; the last line is
/// "N passed, N failed". Returns whether all hold. `cells` and `growth` are those of every system and every workload that
/// counts.
bool Check(const Request& request, const Cells& cells, const std::vector<Series>& growth);

}  // namespace Peers
