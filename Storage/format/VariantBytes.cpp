#include "format/VariantBytes.h"

#include <cstring>

#include "format/LittleEndian.h"

namespace KivStorage {
namespace {

// A variant is the system's own record on Windows, where the header that completes it is a heavy one; all that is needed
// here is that on every system its type is the first two bytes, and its value begins at the eighth.
constexpr std::size_t kValueOffset = 8;

/// The bytes of a value of this type; -1 for types that are no plain number. The types have the system's numbers.
int ValueSize(std::uint16_t type) noexcept {
    switch (type) {
        case 0:  // empty
        case 1:  // null
            return 0;
        case 16:  // signed and unsigned, 8 bits
        case 17: return 1;
        case 2:  // signed and unsigned, 16 bits, and the 16-bit boolean
        case 18:
        case 11: return 2;
        case 3:  // signed and unsigned, 32 bits, twice, the 32-bit floating point number and the error code
        case 19:
        case 22:
        case 23:
        case 4:
        case 10: return 4;
        case 20:  // signed and unsigned, 64 bits, the floating point number, currency and date
        case 21:
        case 5:
        case 6:
        case 7: return 8;
        default: return -1;
    }
}

template <class Unsigned>
std::uint64_t Load(const unsigned char* from) noexcept {
    Unsigned value = 0;
    std::memcpy(&value, from, sizeof value);
    return value;
}

template <class Unsigned>
void Store(unsigned char* to, std::uint64_t bits) noexcept {
    const auto value = static_cast<Unsigned>(bits);
    std::memcpy(to, &value, sizeof value);
}

}  // namespace

bool PutVariantBytes(std::uint8_t* to, const VARIANT* value) noexcept {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(value);
    const auto type = static_cast<std::uint16_t>(Load<std::uint16_t>(bytes));
    const unsigned char* const from = bytes + kValueOffset;
    std::uint64_t bits = 0;
    switch (ValueSize(type)) {
        case 0: break;
        case 1: bits = Load<std::uint8_t>(from); break;
        case 2: bits = Load<std::uint16_t>(from); break;
        case 4: bits = Load<std::uint32_t>(from); break;
        case 8: bits = Load<std::uint64_t>(from); break;
        default: return false;
    }
    PutLittle16(to, type);
    PutLittle64(to + 2, bits);
    return true;
}

bool GetVariantBytes(const std::uint8_t* from, VARIANT* value) noexcept {
    const std::uint16_t type = GetLittle16(from);
    const std::uint64_t bits = GetLittle64(from + 2);
    const int size = ValueSize(type);
    if (size < 0 || (size < 8 && (bits >> (8 * size)) != 0)) {
        return false;
    }
    VariantInit(value);
    auto* const bytes = reinterpret_cast<unsigned char*>(value);
    Store<std::uint16_t>(bytes, type);
    unsigned char* const to = bytes + kValueOffset;
    switch (size) {
        case 1: Store<std::uint8_t>(to, bits); break;
        case 2: Store<std::uint16_t>(to, bits); break;
        case 4: Store<std::uint32_t>(to, bits); break;
        case 8: Store<std::uint64_t>(to, bits); break;
        default: break;
    }
    return true;
}

}  // namespace KivStorage
