#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace KivStorage {

// Byte by byte, so that every machine writes and reads the same; compilers make one move of it.

inline void PutLittle16(std::uint8_t* to, std::uint16_t value) noexcept {
    to[0] = static_cast<std::uint8_t>(value);
    to[1] = static_cast<std::uint8_t>(value >> 8);
}
inline void PutLittle32(std::uint8_t* to, std::uint32_t value) noexcept {
    PutLittle16(to, static_cast<std::uint16_t>(value));
    PutLittle16(to + 2, static_cast<std::uint16_t>(value >> 16));
}
inline void PutLittle64(std::uint8_t* to, std::uint64_t value) noexcept {
    PutLittle32(to, static_cast<std::uint32_t>(value));
    PutLittle32(to + 4, static_cast<std::uint32_t>(value >> 32));
}

inline std::uint16_t GetLittle16(const std::uint8_t* from) noexcept {
    return static_cast<std::uint16_t>(from[0] | (from[1] << 8));
}
inline std::uint32_t GetLittle32(const std::uint8_t* from) noexcept {
    return GetLittle16(from) | (static_cast<std::uint32_t>(GetLittle16(from + 2)) << 16);
}
inline std::uint64_t GetLittle64(const std::uint8_t* from) noexcept {
    return GetLittle32(from) | (static_cast<std::uint64_t>(GetLittle32(from + 4)) << 32);
}

/// Whether this machine keeps its numbers as the format does; compilers know the answer.
inline bool IsLittleEndian() noexcept {
    const std::uint16_t one = 1;
    std::uint8_t first = 0;
    std::memcpy(&first, &one, 1);
    return first == 1;
}

/// Texts are long, and compilers do not make one move of a loop: where the bytes are the same, they are copied at once.
inline void PutLittleUnits(std::uint8_t* to, const char16_t* units, std::size_t count) noexcept {
    if (IsLittleEndian()) {
        std::memcpy(to, units, 2 * count);
        return;
    }
    for (std::size_t i = 0; i < count; ++i) {
        PutLittle16(to + 2 * i, static_cast<std::uint16_t>(units[i]));
    }
}
inline void GetLittleUnits(char16_t* units, const std::uint8_t* from, std::size_t count) noexcept {
    if (IsLittleEndian()) {
        std::memcpy(units, from, 2 * count);
        return;
    }
    for (std::size_t i = 0; i < count; ++i) {
        units[i] = static_cast<char16_t>(GetLittle16(from + 2 * i));
    }
}

}  // namespace KivStorage
