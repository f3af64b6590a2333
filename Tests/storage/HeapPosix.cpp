// This program's own operators: those of the shared libraries are bound to them where symbols can be replaced.

#include <cstdlib>
#include <new>

#include "storage/Heap.h"

namespace {

void* Take(std::size_t size) noexcept {
    return StorageTest::Strikes() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* Need(std::size_t size) {
    void* const block = Take(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

}  // namespace

void* operator new(std::size_t size) {
    return Need(size);
}
void* operator new[](std::size_t size) {
    return Need(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Take(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Take(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
