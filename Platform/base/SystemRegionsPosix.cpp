#include <sys/mman.h>

#include <cstdint>

#include "base/SystemRegions.h"

namespace KivBase {

// Twice the size always holds an aligned region; what stands before and behind it goes back at once.
void* MapRegion(std::size_t size) noexcept {
    void* const mapped = ::mmap(nullptr, size * 2, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) {
        return nullptr;
    }
    auto* const first = static_cast<char*>(mapped);
    const std::size_t before = (size - reinterpret_cast<std::uintptr_t>(first) % size) % size;
    if (before > 0) {
        ::munmap(first, before);
    }
    if (before < size) {
        ::munmap(first + before + size, size - before);
    }
#if defined(MADV_HUGEPAGE)
    // One page fault instead of hundreds. A system that has no huge pages refuses, and nothing is lost.
    ::madvise(first + before, size, MADV_HUGEPAGE);
#endif
    return first + before;
}

void UnmapRegion(void* region, std::size_t size) noexcept {
    ::munmap(region, size);
}

}  // namespace KivBase
