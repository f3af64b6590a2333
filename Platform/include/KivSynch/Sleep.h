#pragma once

#include <KivBase/Export.h>

#if defined(_WIN32)
extern "C" __declspec(dllimport) void __stdcall Sleep(unsigned long milliseconds);
#else
/// Lets the calling thread rest for that many milliseconds; 0 gives the processor to another ready thread.
KIV_PLATFORM_EXPORT void Sleep(unsigned long milliseconds) noexcept;
#endif
