#pragma once

#include <cstdint>

namespace KivSynch {

/// The rank of a lock in the host's order of locks; a host gives its own values names.
enum EnumOrvLockStackCategory : std::int32_t {};

}  // namespace KivSynch
