#pragma once

#include <cstdint>

namespace KivGenerics {

/// What a host keeps in a tree. It chooses the block size of the tree's node memory and nothing else: 16384 bytes for 55;
/// 1024 for 8, 18, 21, 24 to 26, 29 to 31, 34, 35, 37, 44, 49, 51, 52, 65, 67 to 76; 4096 for every other value.
enum EnumOrvObjectType : std::int32_t {};

}  // namespace KivGenerics
