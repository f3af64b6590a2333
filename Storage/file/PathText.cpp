#include "file/PathText.h"

#include <system_error>

namespace KivStorage {

std::string FilePlace(const std::filesystem::path& path) {
    const auto utf8 = path.u8string();
    return "file \"" + std::string(utf8.begin(), utf8.end()) + "\"";
}

std::string FilePlace(const std::filesystem::path& path, const std::error_code& error) {
    return FilePlace(path) + ": " + SystemText(error);
}

}  // namespace KivStorage
