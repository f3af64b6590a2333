#include "file/InputFile.h"

#include <algorithm>

#include <windows.h>

#include "file/PathText.h"
#include "file/SystemPathWindows.h"
#include "format/Failure.h"

namespace KivStorage {
namespace {

HANDLE Handle(std::intptr_t handle) noexcept {
    return reinterpret_cast<HANDLE>(handle);
}

}  // namespace

Result InputFile::Open(const std::filesystem::path& path) {
    path_ = path;
    const std::wstring name = SystemPath(path);
    const DWORD attributes = ::GetFileAttributesW(name.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return Fail(StorageNotAFile, FilePlace(path_));
    }
    // Those who replace the file meanwhile are not held up: what is open here stays the old one.
    const HANDLE handle = ::CreateFileW(name.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        const DWORD error = ::GetLastError();
        const bool missing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
        return Failure(missing ? StorageFileNotFound : StorageFileNotOpened, static_cast<int>(error));
    }
    handle_ = reinterpret_cast<std::intptr_t>(handle);
    if (::GetFileType(handle) != FILE_TYPE_DISK) {
        return Fail(StorageNotAFile, FilePlace(path_));
    }
    LARGE_INTEGER size = {};
    if (::GetFileSizeEx(handle, &size) == 0) {
        return Failure(StorageFileNotOpened, static_cast<int>(::GetLastError()));
    }
    size_ = static_cast<std::uint64_t>(size.QuadPart);
    return {};
}

Result InputFile::Read(std::uint8_t* bytes, std::size_t count, std::size_t& got) {
    got = 0;
    while (handle_ != kClosed && got < count) {
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(count - got, 1u << 30));
        DWORD part = 0;
        if (::ReadFile(Handle(handle_), bytes + got, wanted, &part, nullptr) == 0) {
            return Failure(StorageFileNotRead, static_cast<int>(::GetLastError()));
        }
        if (part == 0) {
            break;
        }
        got += part;
    }
    return {};
}

void InputFile::Close() noexcept {
    if (handle_ != kClosed) {
        ::CloseHandle(Handle(handle_));
        handle_ = kClosed;
    }
}

}  // namespace KivStorage
