#include <KivBase/Guid.h>

namespace KivBase {
namespace {

std::uint32_t GetWord(const GUID& id, int word) noexcept {
    if (word == 0) {
        return id.Data1;
    }
    if (word == 1) {
        return static_cast<std::uint32_t>(id.Data3) << 16 | id.Data2;
    }
    const unsigned char* const bytes = id.Data4 + (word - 2) * 4;
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 | static_cast<std::uint32_t>(bytes[2]) << 16 |
           static_cast<std::uint32_t>(bytes[3]) << 24;
}

}  // namespace

int CompareGUID(const GUID& left, const GUID& right) noexcept {
    for (int word = 0; word < 4; ++word) {
        const std::uint32_t a = GetWord(left, word);
        const std::uint32_t b = GetWord(right, word);
        if (a != b) {
            return a < b ? -1 : 1;
        }
    }
    return 0;
}

}  // namespace KivBase
