#pragma once

#include <cstdlib>

/// Whether the tests are to take their time: everything instead of a part that stands for it. `./check soak` asks for it.
inline bool IsSoak() {
    return std::getenv("KIV_SOAK") != nullptr;
}
