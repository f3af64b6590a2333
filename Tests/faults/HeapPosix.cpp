// The operators `new` and `delete` of the whole program, its shared libraries included.

#include <cstdlib>
#include <new>

#include "faults/Heap.h"

namespace {

void* TakeBlock(std::size_t size, std::size_t alignment) noexcept {
    if (Faults::Strikes()) {
        return nullptr;
    }
    void* const block = alignment > alignof(std::max_align_t)
                            ? std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment)
                            : std::malloc(size == 0 ? 1 : size);
    if (block != nullptr) {
        Faults::AddLiveBlock();
    }
    return block;
}

void* NeedBlock(std::size_t size, std::size_t alignment) {
    void* const block = TakeBlock(size, alignment);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void GiveBlock(void* block) noexcept {
    if (block != nullptr) {
        Faults::RemoveLiveBlock();
        std::free(block);
    }
}

}  // namespace

void* operator new(std::size_t size) {
    return NeedBlock(size, 1);
}
void* operator new[](std::size_t size) {
    return NeedBlock(size, 1);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return TakeBlock(size, 1);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return TakeBlock(size, 1);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return NeedBlock(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept {
    GiveBlock(block);
}
void operator delete[](void* block) noexcept {
    GiveBlock(block);
}
void operator delete(void* block, std::size_t) noexcept {
    GiveBlock(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    GiveBlock(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    GiveBlock(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    GiveBlock(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    GiveBlock(block);
}
