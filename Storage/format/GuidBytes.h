#pragma once

#include <cstdint>
#include <cstring>

#include <KivBase/Guid.h>

#include "format/LittleEndian.h"

namespace KivStorage {

/// A GUID as it lies in the memory of a little-endian machine.
inline void PutGuidBytes(std::uint8_t* to, const GUID& value) noexcept {
    PutLittle32(to, static_cast<std::uint32_t>(value.Data1));
    PutLittle16(to + 4, value.Data2);
    PutLittle16(to + 6, value.Data3);
    std::memcpy(to + 8, value.Data4, 8);
}

inline GUID GetGuidBytes(const std::uint8_t* from) noexcept {
    GUID value = {};
    value.Data1 = GetLittle32(from);
    value.Data2 = GetLittle16(from + 4);
    value.Data3 = GetLittle16(from + 6);
    std::memcpy(value.Data4, from + 8, 8);
    return value;
}

}  // namespace KivStorage
