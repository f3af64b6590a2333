#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <system_error>

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include "kivtree/system/System.h"

namespace KivTree {
namespace {

std::string ToUtf8(const wchar_t* text) {
    const int size = static_cast<int>(std::wcslen(text));
    std::string utf8(static_cast<std::size_t>(size) * 3, '\0');
    const int length = size == 0 ? 0
                                 : ::WideCharToMultiByte(CP_UTF8, 0, text, size, utf8.data(),
                                                         static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(length));
    return utf8;
}

bool IsConsole(DWORD stream) {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(stream), &mode) != 0;
}

}  // namespace

std::vector<std::string> GetArguments(int /*argc*/, char** /*argv*/) {
    // What main gets is in the code page of the process, in which not every file has a name.
    std::vector<std::string> words;
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    for (int i = 1; arguments != nullptr && i < count; ++i) {
        words.push_back(ToUtf8(arguments[i]));
    }
    ::LocalFree(arguments);
    return words;
}

void PrepareStandardStreams() {
    ::_setmode(::_fileno(stderr), _O_BINARY);
    ::SetConsoleOutputCP(CP_UTF8);
    // Either may go elsewhere.
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        DWORD mode = 0;
        const HANDLE console = ::GetStdHandle(stream);
        if (::GetConsoleMode(console, &mode) != 0) {
            ::SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
        }
    }
}

bool IsOutputTerminal() {
    return IsConsole(STD_OUTPUT_HANDLE);
}

bool IsErrorTerminal() {
    return IsConsole(STD_ERROR_HANDLE);
}

int GetTerminalWidth() {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    const bool known = ::GetConsoleScreenBufferInfo(::GetStdHandle(STD_ERROR_HANDLE), &info) != 0;
    return known ? info.srWindow.Right - info.srWindow.Left + 1 : 80;
}

std::string WriteStandardOutput(std::string_view bytes) {
    constexpr std::size_t most = 1U << 20U;
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(bytes.size() < most ? bytes.size() : most);
        if (::WriteFile(::GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(), count, &written, nullptr) == 0) {
            const DWORD error = ::GetLastError();
            if (error == ERROR_NO_DATA || error == ERROR_BROKEN_PIPE) {
                std::_Exit(0);
            }
            return std::system_category().message(static_cast<int>(error));
        }
        bytes.remove_prefix(written);
    }
    return {};
}

long ReadStandardInputBytes(char* bytes, std::size_t size) {
    DWORD count = 0;
    if (::ReadFile(::GetStdHandle(STD_INPUT_HANDLE), bytes, static_cast<DWORD>(size), &count, nullptr) == 0) {
        return ::GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1;
    }
    return static_cast<long>(count);
}

}  // namespace KivTree
