#include "file/PathText.h"

#include <cwctype>
#include <system_error>

#include <windows.h>

namespace KivStorage {
namespace {

/// The system's own words, without the line's end that they come with.
std::wstring Words(DWORD error) {
    wchar_t text[512];
    DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                                    sizeof text / sizeof text[0], nullptr);
    while (length > 0 && (std::iswspace(text[length - 1]) != 0 || text[length - 1] == L'.')) {
        --length;
    }
    return {text, length};
}

}  // namespace

/// The runtime's own message would come in the code page of the process.
std::string SystemText(const std::error_code& error) {
    if (error.category() != std::system_category()) {
        return error.message();
    }
    const auto number = static_cast<DWORD>(error.value());
    // What the system says of these two names no one who could do something about it.
    if (number == ERROR_SHARING_VIOLATION || number == ERROR_LOCK_VIOLATION) {
        return "another program has it open";
    }
    const auto utf8 = std::filesystem::path(Words(number)).u8string();
    return utf8.empty() ? "error " + std::to_string(number) : std::string(utf8.begin(), utf8.end());
}

}  // namespace KivStorage
