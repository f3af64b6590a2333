#include "Values.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace Peers {

GuidValue MakeGuidValue(const GUID& id) {
    constexpr std::size_t kTextSize = 37;  // 32 digits, 4 hyphens and the 0 at the end
    std::array<char, kTextSize> text{};
    std::array<char, sizeof(GUID)> bytes{};
    std::memcpy(bytes.data(), &id, sizeof id);
    const std::uint8_t* const rest = id.Data4;
    std::snprintf(text.data(), text.size(), "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                  static_cast<unsigned>(id.Data1), static_cast<unsigned>(id.Data2), static_cast<unsigned>(id.Data3),
                  rest[0], rest[1], rest[2], rest[3], rest[4], rest[5], rest[6], rest[7]);
    return {id, std::string(bytes.data(), bytes.size()), text.data()};
}

}  // namespace Peers
