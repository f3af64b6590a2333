#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "targets/Seal.h"

namespace KivFuzz {

/// Items of about `bytes` bytes, made to cost a load as much memory or time for each byte as can be.
struct HostileFamily {
    const char* name;
    Bytes (*make)(std::size_t bytes);
};

/// All that were thought of, and the shapes of those that a fuzzer found.
const std::vector<HostileFamily>& GetHostileFamilies();

/// A file of these items, every checksum right.
Bytes FrameItems(const Bytes& items);

}  // namespace KivFuzz
