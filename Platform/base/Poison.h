#pragma once

#include <cstddef>

// The address sanitizer is told which memory of a buffer nobody may touch: what has not been handed out, and what has come
// back. Without the sanitizer both operations do nothing.

#if defined(__SANITIZE_ADDRESS__)
#define KIV_HAS_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KIV_HAS_ASAN 1
#endif
#endif

#if defined(KIV_HAS_ASAN)
#include <sanitizer/asan_interface.h>
#endif

namespace KivBase {

#if defined(KIV_HAS_ASAN)
inline constexpr bool kPoisons = true;
#else
inline constexpr bool kPoisons = false;
#endif

inline void Poison([[maybe_unused]] const void* memory, [[maybe_unused]] std::size_t size) noexcept {
#if defined(KIV_HAS_ASAN)
    __asan_poison_memory_region(memory, size);
#endif
}

inline void Unpoison([[maybe_unused]] const void* memory, [[maybe_unused]] std::size_t size) noexcept {
#if defined(KIV_HAS_ASAN)
    __asan_unpoison_memory_region(memory, size);
#endif
}

}  // namespace KivBase
