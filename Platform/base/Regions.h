#pragma once

#include <cstddef>

namespace KivBase {

/// The size and alignment of a region, in bytes: the size of a huge page, so that the system can serve one with a single
/// page fault.
inline constexpr std::size_t kRegionSize = std::size_t{2} << 20;

/// A region for the caller, from what is kept or from the system; null when there is none to be had.
/// Threads: any, at any time.
void* TakeRegion() noexcept;

/// Takes a region back, for the next that is asked for; beyond what SetSpareMemory allows it goes back to the system.
void ReturnRegion(void* region) noexcept;

}  // namespace KivBase
