#pragma once

// xxHash and, where its library chooses by itself what suits the processor, what that asks of its caller.

#ifdef KIV_XXHASH_DISPATCHES

#include <immintrin.h>
#include <xxh_x86dispatch.h>

namespace KivStorage {

[[gnu::target("avx")]] inline void ClearUpperHalves() noexcept {
    _mm256_zeroupper();
}

/// After every call of xxHash that may have gone through many bytes: it leaves the upper halves of the wide registers in use, and
/// as long as they are, code that knows the lower halves only waits for them. Building a tree took half as long again.
inline void LeaveWideRegisters() noexcept {
    static const bool hasWideRegisters = __builtin_cpu_supports("avx") != 0;
    if (hasWideRegisters) {
        ClearUpperHalves();
    }
}

}  // namespace KivStorage

#else

#include <xxhash.h>

namespace KivStorage {

inline void LeaveWideRegisters() noexcept {}

}  // namespace KivStorage

#endif
