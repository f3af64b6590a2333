#include "HeapPosix.h"

#include <cstdint>
#include <limits>

#include <dlfcn.h>
#include <malloc.h>
#include <sys/mman.h>

#include <KivBase/SpareMemory.h>

namespace {

std::size_t mappedBytes = 0;

template <class Function>
Function* FindNext(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// Stand in front of the system's for every library of this process, but for the heap itself, which does not call them by
// name: what is mapped beside the heap is counted here.

extern "C" [[gnu::visibility("default")]] void* mmap(void* address, std::size_t length, int protection, int flags,
                                                     int file, off_t offset) noexcept {
    static auto* const next = FindNext<void*(void*, std::size_t, int, int, int, off_t)>("mmap");
    void* const mapped = next(address, length, protection, flags, file, offset);
    mappedBytes += mapped != MAP_FAILED ? length : 0;
    return mapped;
}

extern "C" [[gnu::visibility("default")]] int munmap(void* address, std::size_t length) noexcept {
    static auto* const next = FindNext<int(void*, std::size_t)>("munmap");
    const int result = next(address, length);
    mappedBytes -= result == 0 ? length : 0;
    return result;
}

namespace Peers {

void SetUpHeap(Heap heap) {
    // What the process before the fork has kept would be neither counted nor fresh.
    malloc_trim(0);
    KivBase::SetSpareMemory(0);
    if (heap == Heap::Warm) {
        mallopt(M_MMAP_MAX, 0);
        mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
        // The library's regions come from the system directly; they are kept like the heap.
        KivBase::SetSpareMemory(std::numeric_limits<std::size_t>::max());
    } else {
        KivBase::SetSpareMemory(KivBase::kDefaultSpareMemory);
    }
}

std::size_t GetHeldBytes() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd + mappedBytes;
}

}  // namespace Peers
