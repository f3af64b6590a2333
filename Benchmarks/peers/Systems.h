#pragma once

#include <string>
#include <vector>

#include "System.h"
#include "Workload.h"

namespace Peers {

/// This library; `oneByOne`: with the operations that make and show one leaf at a time.
SystemEntry GetOwn(bool oneByOne = false);

/// The others, in the order of the tables.
std::vector<SystemEntry> GetPeers();

/// All but that of a recorded tree, which is made by MakeRecordedWorkload.
std::vector<Workload> GetWorkloads();

/// The tree of a file that this library saved.
Workload MakeRecordedWorkload(const std::string& file);

}  // namespace Peers
