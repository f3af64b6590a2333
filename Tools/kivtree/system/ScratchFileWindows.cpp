#include <atomic>
#include <cstring>
#include <system_error>
#include <utility>

#include <windows.h>

#include "kivtree/system/ScratchFile.h"

namespace KivTree {
namespace {

// What an interruption removes.
wchar_t pathToRemove[32768];
std::atomic<HANDLE> handleToClose{INVALID_HANDLE_VALUE};
std::atomic<bool> removes{false};

BOOL WINAPI RemoveAndDie(DWORD /*event*/) {
    if (removes.load()) {
        // An open file cannot be removed.
        const HANDLE open = handleToClose.exchange(INVALID_HANDLE_VALUE);
        if (open != INVALID_HANDLE_VALUE) {
            ::CloseHandle(open);
        }
        ::DeleteFileW(pathToRemove);
    }
    return FALSE;
}

void RemoveWhenInterrupted(const std::wstring& path) {
    if (path.size() < sizeof pathToRemove / sizeof pathToRemove[0]) {
        std::memcpy(pathToRemove, path.c_str(), (path.size() + 1) * sizeof(wchar_t));
        removes = true;
        ::SetConsoleCtrlHandler(RemoveAndDie, TRUE);
    }
}

std::string LastError() {
    return std::system_category().message(static_cast<int>(::GetLastError()));
}

HANDLE ToHandle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

}  // namespace

ScratchFile::ScratchFile(std::filesystem::path target) : target_(std::move(target)) {}

ScratchFile::~ScratchFile() {
    Close();
    if (exists_) {
        ::DeleteFileW(path_.c_str());
    }
    removes = false;
}

std::string ScratchFile::Open() {
    path_ = ScratchPathFor(target_);
    RemoveWhenInterrupted(path_.native());
    const HANDLE handle = ::CreateFileW(path_.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return LastError();
    }
    handle_ = reinterpret_cast<std::intptr_t>(handle);
    handleToClose = handle;
    exists_ = true;
    return {};
}

std::string ScratchFile::Write(std::string_view bytes) {
    constexpr std::size_t most = 1U << 24U;
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(bytes.size() < most ? bytes.size() : most);
        if (::WriteFile(ToHandle(handle_), bytes.data(), count, &written, nullptr) == 0) {
            return LastError();
        }
        bytes.remove_prefix(written);
    }
    return {};
}

std::string ScratchFile::Finish() {
    std::string problem = ::FlushFileBuffers(ToHandle(handle_)) != 0 ? std::string() : LastError();
    Close();
    return problem;
}

std::string ScratchFile::Place(bool replace) {
    const DWORD flags = MOVEFILE_WRITE_THROUGH | (replace ? MOVEFILE_REPLACE_EXISTING : 0U);
    if (::MoveFileExW(path_.c_str(), target_.c_str(), flags) == 0) {
        return LastError();
    }
    exists_ = false;
    removes = false;
    return {};
}

void ScratchFile::Close() {
    const HANDLE open = handleToClose.exchange(INVALID_HANDLE_VALUE);
    if (open != INVALID_HANDLE_VALUE) {
        ::CloseHandle(open);
    }
    handle_ = -1;
}

}  // namespace KivTree
