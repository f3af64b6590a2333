#pragma once

#include <stdexcept>

namespace KivFuzz {

/// Throws std::logic_error where a promise of the library is broken. The sentence says what is wrong.
inline void Require(bool holds, const char* otherwise) {
    if (!holds) {
        throw std::logic_error(otherwise);
    }
}

}  // namespace KivFuzz
