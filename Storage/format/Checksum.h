#pragma once

#include <cstddef>
#include <cstdint>

namespace KivStorage {

/// XXH3-64 with a seed.
std::uint64_t Checksum(const std::uint8_t* bytes, std::size_t count, std::uint64_t seed) noexcept;

/// The running checksum over the checksums of all blocks so far: `chain` is that of the blocks before, 0 for none.
std::uint64_t ChainChecksum(std::uint64_t chain, std::uint64_t blockChecksum) noexcept;

}  // namespace KivStorage
