#include "platform/CountedHeap.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace KivPlatform::Testing {
namespace {

std::atomic<std::ptrdiff_t> live{0};
std::atomic<std::ptrdiff_t> leftToFailure{-1};

void* Count(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    ++live;
    return memory;
}

void FailWhenAsked() {
    if (leftToFailure.load() >= 0 && leftToFailure.fetch_sub(1) == 0) {
        throw std::bad_alloc();
    }
}

}  // namespace

std::ptrdiff_t CountedHeap::GetLive() noexcept {
    return live.load();
}

void CountedHeap::FailAfter(std::ptrdiff_t count) noexcept {
    leftToFailure.store(count);
}

}  // namespace KivPlatform::Testing

using namespace KivPlatform::Testing;

void* operator new(std::size_t size) {
    FailWhenAsked();
    return Count(std::malloc(size != 0 ? size : 1));
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    FailWhenAsked();
    const auto step = static_cast<std::size_t>(alignment);
    return Count(std::aligned_alloc(step, (size + step - 1) / step * step));
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        --live;
        std::free(memory);
    }
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept {
    operator delete(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    operator delete(memory);
}
