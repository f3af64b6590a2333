#pragma once

#include <cstddef>

namespace KivPlatform::Testing {

/// What the operators `new` and `delete` of the whole test program, the platform's library included, have been asked for.
class CountedHeap {
public:
    /// Allocations that have not been freed.
    static std::ptrdiff_t GetLive() noexcept;
    /// From now on `count` allocations succeed and the next one throws std::bad_alloc, once; negative for never.
    static void FailAfter(std::ptrdiff_t count) noexcept;
};

}  // namespace KivPlatform::Testing
