#include "targets/Seal.h"

#include "format/Checksum.h"
#include "format/Framing.h"
#include "format/LittleEndian.h"

namespace KivFuzz {

using namespace KivStorage;

void SealInPlace(Bytes& file) {
    if (file.size() < kHeaderSize) {
        return;
    }
    PutLittle64(file.data() + 16, Checksum(file.data(), 16, 0));
    std::uint64_t block = 1;
    for (std::size_t start = kHeaderSize; file.size() - start >= kTrailerSize; ++block) {
        std::uint8_t* const bytes = file.data() + start;
        const std::size_t length = GetLittle32(bytes);
        const std::size_t covered = length == 0 ? kTrailerSize - kChecksumSize : kLengthSize + length;
        if (covered > file.size() - start - kChecksumSize) {
            return;
        }
        PutLittle64(bytes + covered, Checksum(bytes, covered, block));
        if (length == 0) {
            return;
        }
        start += covered + kChecksumSize;
    }
}

std::uint64_t CountItems(const std::uint8_t* items, std::size_t count) {
    std::uint64_t found = 0;
    for (std::size_t next = 0; next < count; ++found) {
        const int payload = ItemPayload(items[next]);
        const std::size_t left = count - next - 1;
        if (payload < 0 || static_cast<std::size_t>(payload) > left) {
            return found;
        }
        const std::size_t units = items[next] == ItemText ? GetLittle32(items + next + 1) : 0;
        if (units > (left - static_cast<std::size_t>(payload)) / 2) {
            return found;
        }
        next += 1 + static_cast<std::size_t>(payload) + 2 * units;
    }
    return found;
}

}  // namespace KivFuzz
