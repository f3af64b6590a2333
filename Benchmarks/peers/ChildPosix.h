#pragma once

#include "HeapPosix.h"
#include "Pass.h"

namespace Peers {

/// One sample in a process of its own, so that no system finds another's heap. With a warm heap an unmeasured pass comes first.
/// Ends this process when the child fails.
Sample TakeSample(const SystemEntry& system, const Plan& plan, Heap heap);

}  // namespace Peers
