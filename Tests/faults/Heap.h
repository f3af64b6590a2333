#pragma once

#include <cstddef>

// How the heap of the program, which differs by system, asks whether an allocation is to fail, and counts.
namespace Faults {

/// Counts one allocation; true when it is to fail.
bool Strikes() noexcept;
void AddLiveBlock() noexcept;
void RemoveLiveBlock() noexcept;

}  // namespace Faults
