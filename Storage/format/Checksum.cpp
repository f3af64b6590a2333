#include "format/Checksum.h"

#include <xxhash.h>

#include "format/LittleEndian.h"

namespace KivStorage {

std::uint64_t Checksum(const std::uint8_t* bytes, std::size_t count, std::uint64_t seed) noexcept {
    return XXH3_64bits_withSeed(bytes, count, seed);
}

std::uint64_t ChainChecksum(std::uint64_t chain, std::uint64_t blockChecksum) noexcept {
    std::uint8_t bytes[8];
    PutLittle64(bytes, blockChecksum);
    return Checksum(bytes, sizeof bytes, chain);
}

}  // namespace KivStorage
