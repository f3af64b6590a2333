#pragma once

#include <filesystem>
#include <string>

namespace KivStorage {

/// The path as the system's calls take it, whatever its length: one of more than 260 units must be whole and behind a prefix.
std::wstring SystemPath(const std::filesystem::path& path);

}  // namespace KivStorage
