#pragma once

#include <cstdint>

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

}  // namespace KivStorage
