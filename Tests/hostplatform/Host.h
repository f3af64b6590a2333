#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <KivBase/Export.h>

/// What the host's platform has been asked for, and what it is told to do.
namespace Host {

/// The calls so far, in order: buffers with their arguments, logging, routers.
KIV_PLATFORM_EXPORT std::vector<std::string>& GetCalls();

/// Buffers that are alive, and pieces of memory that they hold.
KIV_PLATFORM_EXPORT std::size_t GetBuffers();
KIV_PLATFORM_EXPORT std::size_t GetPieces();

/// While true, every buffer answers null.
KIV_PLATFORM_EXPORT void RefuseMemory(bool refuse);

}  // namespace Host
