#pragma once

#include <cstddef>

namespace KivBase {

/// Memory of `size` bytes, a power of two and at least a page, from the system, aligned to its size where the system can;
/// null when there is none.
void* MapRegion(std::size_t size) noexcept;

/// Gives what MapRegion(size) returned back to the system.
void UnmapRegion(void* region, std::size_t size) noexcept;

}  // namespace KivBase
