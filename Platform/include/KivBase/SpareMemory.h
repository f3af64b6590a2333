#pragma once

#include <cstddef>

#include <KivBase/Export.h>

namespace KivBase {

/// How much memory of buffers that are gone is kept for the next ones unless SetSpareMemory says otherwise, in bytes.
inline constexpr std::size_t kDefaultSpareMemory = std::size_t{64} << 20;

/// Sets how many bytes of large buffers that are gone are kept, in whole regions of 2 MiB, instead of going back to the
/// system at once; returns what stood before. 0 gives back what is kept and keeps nothing from now on. Buffers below 1 MiB
/// are on the heap and do not count. Threads: any, at any time.
KIV_PLATFORM_EXPORT std::size_t SetSpareMemory(std::size_t bytes) noexcept;

}  // namespace KivBase
