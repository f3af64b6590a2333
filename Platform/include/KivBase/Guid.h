#pragma once

#include <cstdint>

#include <KivBase/Export.h>

#if defined(_WIN32)
#include <guiddef.h>
#else
/// The 16-byte globally unique identifier: the system's record on Windows, the same 16 bytes elsewhere.
struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
#endif

static_assert(sizeof(GUID) == 16, "a GUID is 16 bytes on every system");

namespace KivBase {

/// Orders two GUIDs: -1, 0 or 1.
///
/// The order reads a GUID as four unsigned 32-bit words: Data1; then Data3 and Data2 as one word, Data3 in the high
/// half; then the eight bytes of Data4 as two little-endian words. Never fails.
KIV_PLATFORM_EXPORT int CompareGUID(const GUID& left, const GUID& right) noexcept;

}  // namespace KivBase
