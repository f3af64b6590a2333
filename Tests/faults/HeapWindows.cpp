// The heap below the operators `new` and `delete` of the whole program, its shared libraries included.

#include <cstdlib>
#include <new>

#include <malloc.h>

#include "faults/Heap.h"
#include "support/RuntimeHeapWindows.h"

namespace {

void* Counted(void* block) noexcept {
    if (block != nullptr) {
        Faults::AddLiveBlock();
    }
    return block;
}

void* Take(std::size_t size) noexcept {
    return Faults::Strikes() ? nullptr : Counted(std::malloc(size));
}

void* TakeAligned(std::size_t size, std::size_t alignment) noexcept {
    return Faults::Strikes() ? nullptr : Counted(_aligned_malloc(size, alignment));
}

void* TakeZeros(std::size_t count, std::size_t size) noexcept {
    return Faults::Strikes() ? nullptr : Counted(std::calloc(count, size));
}

void Give(void* block) noexcept {
    if (block != nullptr) {
        Faults::RemoveLiveBlock();
        std::free(block);
    }
}

void GiveAligned(void* block) noexcept {
    if (block != nullptr) {
        Faults::RemoveLiveBlock();
        _aligned_free(block);
    }
}

// Without these the tests would fail nothing but what the program itself allocates.
const bool replaced = [] {
    using KivTests::ReplaceInRuntime;
    const bool done = ReplaceInRuntime("malloc", Take) && ReplaceInRuntime("_aligned_malloc", TakeAligned) &&
                      ReplaceInRuntime("calloc", TakeZeros) && ReplaceInRuntime("free", Give) &&
                      ReplaceInRuntime("_aligned_free", GiveAligned);
    return done ? done : throw std::bad_alloc();
}();

}  // namespace
