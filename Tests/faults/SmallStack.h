#pragma once

#include <functional>

/// Runs `work` on a thread with a stack of 1 MiB, the smallest that a system gives by default.
void RunOnSmallStack(std::function<void()> work);
