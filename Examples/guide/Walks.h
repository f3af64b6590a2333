#pragma once

#include "../checks/Checks.h"

namespace Guide {

// What the guide says of going through a tree, and of printing one.

void CheckWalking(GuideChecks::Checks& checks);
void CheckPrinting(GuideChecks::Checks& checks);

}  // namespace Guide
