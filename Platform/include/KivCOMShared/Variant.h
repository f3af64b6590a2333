#pragma once

#include <KivBase/Export.h>

#if defined(_WIN32)
// The system's record; <oaidl.h> completes it for those who look inside.
typedef struct tagVARIANT VARIANT;
extern "C" __declspec(dllimport) void __stdcall VariantInit(VARIANT* variant);
#else
#include <cstdint>

/// A value of one of many types: the type's number, three reserved words and 16 bytes for the value.
struct VARIANT {
    std::uint16_t vt;
    std::uint16_t wReserved1;
    std::uint16_t wReserved2;
    std::uint16_t wReserved3;
    union {
        std::int64_t llVal;
        double dblVal;
        void* byref;
        unsigned char bytes[16];
    };
};

/// Makes the variant empty (type number 0) without looking at what it held.
KIV_PLATFORM_EXPORT void VariantInit(VARIANT* variant) noexcept;
#endif
