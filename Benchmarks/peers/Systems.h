#pragma once

#include <vector>

#include "System.h"
#include "Workload.h"

namespace Peers {

/// This library.
SystemEntry GetOwn();

/// The others, in the order of the tables.
std::vector<SystemEntry> GetPeers();

std::vector<Workload> GetWorkloads();

}  // namespace Peers
