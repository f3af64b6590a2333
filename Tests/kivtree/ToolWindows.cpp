#include <string>
#include <vector>

#include <windows.h>

#include "kivtree/Tool.h"

namespace ToolTest {
namespace {

/// A word as the command line of a program holds it: in quotes, with what a quote or a quote's end would need.
std::wstring Quoted(const std::wstring& word) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : word) {
        if (c == L'"') {
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L"\"";
}

HANDLE Open(const std::filesystem::path& path, DWORD access, DWORD disposition) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return ::CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, disposition,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

int Start(const std::string& program, const std::vector<std::string>& words, const std::filesystem::path& input,
          const std::filesystem::path& output, const std::filesystem::path& errors) {
    // The program's own path may be one of the system that built it: to this one, it begins with the drive of Z.
    const std::string path = program.rfind('/', 0) == 0 ? "Z:" + program : program;
    std::wstring line = Quoted(std::filesystem::u8path(path).wstring());
    for (const std::string& word : words) {
        line += L' ' + Quoted(std::filesystem::u8path(word).wstring());
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = Open(input, GENERIC_READ, OPEN_EXISTING);
    startup.hStdOutput = Open(output, GENERIC_WRITE, CREATE_ALWAYS);
    startup.hStdError = Open(errors, GENERIC_WRITE, CREATE_ALWAYS);
    PROCESS_INFORMATION process = {};
    const bool started =
        ::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process) != 0;
    DWORD code = static_cast<DWORD>(-1);
    if (started) {
        ::WaitForSingleObject(process.hProcess, INFINITE);
        ::GetExitCodeProcess(process.hProcess, &code);
        ::CloseHandle(process.hProcess);
        ::CloseHandle(process.hThread);
    }
    ::CloseHandle(startup.hStdInput);
    ::CloseHandle(startup.hStdOutput);
    ::CloseHandle(startup.hStdError);
    return static_cast<int>(code);
}

}  // namespace ToolTest
