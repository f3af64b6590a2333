#include "file/AtomicFile.h"

#include <algorithm>

#include <windows.h>

#include "file/PathText.h"
#include "file/SystemPathWindows.h"
#include "format/Failure.h"

namespace KivStorage {
namespace {

// A virus scanner or an indexer may hold a file for a moment.
constexpr int kMaxTries = 20;
constexpr DWORD kPauseMilliseconds = 25;

HANDLE Handle(std::intptr_t handle) noexcept {
    return reinterpret_cast<HANDLE>(handle);
}

bool IsPassing(DWORD error) noexcept {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED || error == ERROR_LOCK_VIOLATION;
}

/// ERROR_SUCCESS when nobody keeps the file to himself, else the system's error.
DWORD CanBeReplaced(const wchar_t* file) noexcept {
    const HANDLE handle = ::CreateFileW(file, DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return ::GetLastError();
    }
    ::CloseHandle(handle);
    return ERROR_SUCCESS;
}

bool IsGone(const wchar_t* file) noexcept {
    return ::GetFileAttributesW(file) == INVALID_FILE_ATTRIBUTES && ::GetLastError() == ERROR_FILE_NOT_FOUND;
}

/// One step, in which the old file gives way to the new one. ERROR_SUCCESS or the system's error.
DWORD PutInPlace(const wchar_t* from, const wchar_t* to, bool replaces) noexcept {
    if (replaces) {
        // What cannot be done is not begun, since a replacement that fails half way can leave a file of its own behind.
        const DWORD error = CanBeReplaced(to);
        if (IsPassing(error)) {
            return error;
        }
        // This keeps the old file's attributes and access rights, and goes on below those who read it, but wants it to be
        // there.
        if (::ReplaceFileW(to, from, nullptr, 0, nullptr, nullptr) != 0) {
            return ERROR_SUCCESS;
        }
    }
    const BOOL done = ::MoveFileExW(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    return done != 0 ? ERROR_SUCCESS : ::GetLastError();
}

}  // namespace

Result AtomicFile::CheckTarget() {
    target_ = SystemPath(target_);
    const DWORD attributes = ::GetFileAttributesW(target_.c_str());
    replaces_ = attributes != INVALID_FILE_ATTRIBUTES;
    if (replaces_ && (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) != 0) {
        return Fail(StorageNotAFile, FilePlace(path_));
    }
    return {};
}

/// A success without a handle: the name is taken.
Result AtomicFile::CreateTemporary() {
    temporary_ = SystemPath(temporary_);
    const HANDLE handle = ::CreateFileW(temporary_.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        const DWORD error = ::GetLastError();
        temporary_.clear();
        return error == ERROR_FILE_EXISTS ? Result{} : Failure(StorageFileNotCreated, static_cast<int>(error));
    }
    handle_ = reinterpret_cast<std::intptr_t>(handle);
    return {};
}

Result AtomicFile::Write(const std::uint8_t* bytes, std::size_t count) {
    if (handle_ == kClosed) {
        return Fail(StorageAlreadyFinished, FilePlace(path_));
    }
    while (count > 0) {
        const auto part = static_cast<DWORD>(std::min<std::size_t>(count, 1u << 30));
        DWORD written = 0;
        if (::WriteFile(Handle(handle_), bytes, part, &written, nullptr) == 0 || written == 0) {
            const DWORD error = ::GetLastError();
            Abandon();
            return Failure(StorageFileNotWritten, static_cast<int>(error));
        }
        bytes += written;
        count -= written;
    }
    return {};
}

Result AtomicFile::Replace() {
    if (::FlushFileBuffers(Handle(handle_)) == 0) {
        return Failure(StorageFileNotSynced, static_cast<int>(::GetLastError()));
    }
    const BOOL closed = ::CloseHandle(Handle(handle_));
    handle_ = kClosed;
    if (closed == 0) {
        return Failure(StorageFileNotWritten, static_cast<int>(::GetLastError()));
    }
    DWORD error = PutInPlace(temporary_.c_str(), target_.c_str(), replaces_);
    for (int tries = 1; tries < kMaxTries && IsPassing(error); ++tries) {
        ::Sleep(kPauseMilliseconds);
        error = PutInPlace(temporary_.c_str(), target_.c_str(), replaces_);
    }
    if (error != ERROR_SUCCESS && replaces_ && IsGone(target_.c_str())) {
        // A replacement that failed half way has taken the old file's name: the new one is all there is, and stays.
        const std::filesystem::path kept = temporary_;
        temporary_.clear();
        Result result = Failure(StorageFileNotReplaced, static_cast<int>(error));
        result.sentence += " The new content is whole, in " + FilePlace(kept) + ".";
        return result;
    }
    if (error != ERROR_SUCCESS) {
        return Failure(StorageFileNotReplaced, static_cast<int>(error));
    }
    temporary_.clear();
    return {};
}

void AtomicFile::RemoveTemporary() noexcept {
    if (handle_ != kClosed) {
        ::CloseHandle(Handle(handle_));
    }
    if (!temporary_.empty()) {
        ::DeleteFileW(temporary_.c_str());
    }
}

}  // namespace KivStorage
