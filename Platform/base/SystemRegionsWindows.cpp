#include <windows.h>

#include "base/SystemRegions.h"

namespace KivBase {

void* MapRegion(std::size_t size) noexcept {
    return ::VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void UnmapRegion(void* region, std::size_t) noexcept {
    ::VirtualFree(region, 0, MEM_RELEASE);
}

}  // namespace KivBase
