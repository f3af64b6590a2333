#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include <KivInspect/Source.h>
#include <KivStorage/Result.h>

namespace KivInspect {

/// What is called while bytes are read: how many there have been, and how many there will be, 0 when nobody knows.
using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

/// How messages call a file: `file "NAME"`, in UTF-8.
std::string PlaceOf(const std::filesystem::path& path);

/// What reads a source; `place` is how messages call it.
using ReadStep = std::function<KivStorage::Result(Source& source, const std::string& place)>;

/// Opens a file, or whatever else can be read from its beginning to its end, and answers what `read` does; a failure when it
/// cannot be opened, or is a folder. Throws what `read` throws.
KivStorage::Result ReadFile(const std::filesystem::path& path, const ReadStep& read, const Progress& progress = {});

}  // namespace KivInspect
