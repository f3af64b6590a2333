#pragma once

#include "targets/Targets.h"

namespace KivFuzz {

/// Saves to a file, or loads from one, while a call of the system's fails. The program must define the calls of the system that
/// Tests/system/Calls.h watches.
void RunSystem(const std::uint8_t* bytes, std::size_t count);

inline constexpr Target kSystemTargets[] = {{"system", RunSystem}};

}  // namespace KivFuzz
