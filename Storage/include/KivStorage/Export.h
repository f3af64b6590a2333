#pragma once

// The one macro of these streams: what their shared library exports.
#if defined(KIVSTORAGE_STATIC)
#define KIV_STORAGE_EXPORT
#elif defined(_WIN32)
#if defined(KIVSTORAGE_BUILD)
#define KIV_STORAGE_EXPORT __declspec(dllexport)
#else
#define KIV_STORAGE_EXPORT __declspec(dllimport)
#endif
#else
#define KIV_STORAGE_EXPORT __attribute__((visibility("default")))
#endif
