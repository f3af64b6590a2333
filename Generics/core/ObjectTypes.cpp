#include <cstddef>

#include "core/ForestImpl.h"

namespace KivGenerics {
namespace {

constexpr std::int32_t kSmallestBlock = 1024;

// Block sizes by object type, in bytes.
constexpr std::int32_t kBlockSizes[] = {
    4096, 4096, 4096, 4096, 4096, 4096,  4096, 4096, 1024, 4096,  //  0 ..  9
    4096, 4096, 4096, 4096, 4096, 4096,  4096, 4096, 1024, 4096,  // 10 .. 19
    4096, 1024, 4096, 4096, 1024, 1024,  1024, 4096, 4096, 1024,  // 20 .. 29
    1024, 1024, 4096, 4096, 1024, 1024,  4096, 1024, 4096, 4096,  // 30 .. 39
    4096, 4096, 4096, 4096, 1024, 4096,  4096, 4096, 4096, 1024,  // 40 .. 49
    4096, 1024, 1024, 4096, 4096, 16384, 4096, 4096, 4096, 4096,  // 50 .. 59
    4096, 4096, 4096, 4096, 4096, 1024,  4096, 1024, 1024, 1024,  // 60 .. 69
    1024, 0,    0,    0,    0,    0,     0,                        // 70 .. 76; 0 stands for the smallest block
};
constexpr std::size_t kObjectTypes = sizeof kBlockSizes / sizeof kBlockSizes[0];
static_assert(kObjectTypes == 77, "one block size for each object type");
static_assert(kBlockSizes[55] == 16384 && kBlockSizes[8] == 1024 && kBlockSizes[37] == 1024 && kBlockSizes[66] == 4096);

}  // namespace

std::int32_t GetBlockSize(EnumOrvObjectType type) noexcept {
    const auto row = static_cast<std::uint32_t>(type);
    const std::int32_t size = kBlockSizes[row < kObjectTypes ? row : 0];
    return size <= 0 ? kSmallestBlock : size;
}

}  // namespace KivGenerics
