#pragma once

// The one macro of the library: what its shared object exports.
#if defined(KIVGENERICS_STATIC)
#define KIV_GENERICS_EXPORT
#elif defined(_WIN32)
#if defined(KIVGENERICS_BUILD)
#define KIV_GENERICS_EXPORT __declspec(dllexport)
#else
#define KIV_GENERICS_EXPORT __declspec(dllimport)
#endif
#else
#define KIV_GENERICS_EXPORT __attribute__((visibility("default")))
#endif
