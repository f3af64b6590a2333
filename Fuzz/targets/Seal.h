#pragma once

#include <cstddef>
#include <cstdint>

#include "storage/Support.h"

namespace KivFuzz {

using StorageTest::Bytes;

/// Follows the lengths of the blocks from the front, and makes the checksums of the header, of every block and of the trailer
/// right, as far as the bytes reach. What the trailer says of the whole stays as it is.
void SealInPlace(Bytes& file);

/// How many items these bytes begin with, up to the first that is cut off or unknown.
std::uint64_t CountItems(const std::uint8_t* items, std::size_t count);

}  // namespace KivFuzz
