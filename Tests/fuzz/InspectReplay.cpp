// The targets that read for the tools run as the others do.

#include "fuzz/Replay.h"
#include "targets/inspect/InspectTargets.h"

INSTANTIATE_TEST_SUITE_P(InspectTargets, ReplayTest, testing::ValuesIn(KivFuzz::kInspectTargets), NameOfTarget);
