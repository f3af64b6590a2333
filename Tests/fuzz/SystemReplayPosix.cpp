// The target that lets the system fail runs as the others do.

#include "fuzz/Replay.h"
#include "targets/system/SystemTargets.h"

INSTANTIATE_TEST_SUITE_P(SystemTargets, ReplayTest, testing::ValuesIn(KivFuzz::kSystemTargets), NameOfTarget);
