#pragma once

// VARIANT for tests that look inside one: on Windows the public header leaves it to the system's own to complete it.

#include <KivCOMShared/Variant.h>

#if defined(_WIN32)
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <oaidl.h>
#endif
