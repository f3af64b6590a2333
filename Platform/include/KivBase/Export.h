#pragma once

// The one macro of the platform: what its shared library exports.
#if defined(KIVPLATFORM_STATIC)
#define KIV_PLATFORM_EXPORT
#elif defined(_WIN32)
#if defined(KIVPLATFORM_BUILD)
#define KIV_PLATFORM_EXPORT __declspec(dllexport)
#else
#define KIV_PLATFORM_EXPORT __declspec(dllimport)
#endif
#else
#define KIV_PLATFORM_EXPORT __attribute__((visibility("default")))
#endif
