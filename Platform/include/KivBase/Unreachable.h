#pragma once

#include <cstdlib>

namespace KivBase {

/// Says that no program comes here, so that the compiler leaves out what would come here. Undefined where one does.
[[noreturn]] inline void Unreachable() noexcept {
#if defined(__GNUC__)
    __builtin_unreachable();
#else
    std::abort();
#endif
}

}  // namespace KivBase
