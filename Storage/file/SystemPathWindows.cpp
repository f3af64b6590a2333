#include "file/SystemPathWindows.h"

#include <windows.h>

namespace KivStorage {
namespace {

// Folders must be shorter by the twelve units of a short name, and so must what may become one.
constexpr std::size_t kMostWithoutPrefix = MAX_PATH - 13;

}  // namespace

std::wstring SystemPath(const std::filesystem::path& path) {
    const std::wstring& given = path.native();
    const DWORD room = ::GetFullPathNameW(given.c_str(), 0, nullptr, nullptr);
    if (room <= kMostWithoutPrefix) {
        return given;
    }
    // Behind the prefix nothing is resolved any more, neither slashes nor "..", so that must have been done before.
    std::wstring whole(room, L'\0');
    const DWORD length = ::GetFullPathNameW(given.c_str(), room, whole.data(), nullptr);
    if (length == 0 || length >= room) {
        return given;
    }
    whole.resize(length);
    if (whole.compare(0, 4, L"\\\\?\\") == 0 || whole.compare(0, 4, L"\\\\.\\") == 0) {
        return whole;
    }
    if (whole.compare(0, 2, L"\\\\") == 0) {
        return L"\\\\?\\UNC" + whole.substr(1);
    }
    return L"\\\\?\\" + whole;
}

}  // namespace KivStorage
