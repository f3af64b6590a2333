#pragma once

#include <filesystem>
#include <string>

namespace KivStorage {

/// How messages name a file: `file "name"`, the name in UTF-8. Throws std::bad_alloc.
std::string FilePlace(const std::filesystem::path& path);

/// The same with the system's own words: `file "name": No space left on device`.
std::string FilePlace(const std::filesystem::path& path, const std::error_code& error);

/// What the system says of an error, in UTF-8, without a full stop. Throws std::bad_alloc.
std::string SystemText(const std::error_code& error);

}  // namespace KivStorage
