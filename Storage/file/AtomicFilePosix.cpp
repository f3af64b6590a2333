#include "file/AtomicFile.h"

#include <cerrno>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "file/PathText.h"
#include "format/Failure.h"

namespace KivStorage {
namespace {

int Descriptor(std::intptr_t handle) noexcept {
    return static_cast<int>(handle);
}

/// Runs a system call again when a signal has cut it short.
template <class Call>
auto Retry(Call call) noexcept {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// A file's new name lives in its folder: until the folder is on the disk, a power failure may bring the old file back.
int SyncFolder(const char* folder) noexcept {
    const int descriptor = Retry([&] { return ::open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (descriptor < 0) {
        return errno;
    }
    const int result = Retry([&] { return ::fsync(descriptor); });
    const int error = result < 0 ? errno : 0;
    ::close(descriptor);
    // Some file systems keep their folders durable by themselves and refuse the call.
    return error == EINVAL || error == ENOTSUP ? 0 : error;
}

}  // namespace

Result AtomicFile::CheckTarget() {
    struct stat status = {};
    if (::stat(target_.c_str(), &status) != 0) {
        if (errno == ENOENT) {
            replaces_ = false;
            return {};
        }
        return Failure(StorageFileNotCreated, errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return Fail(StorageNotAFile, FilePlace(path_));
    }
    replaces_ = true;
    mode_ = status.st_mode & 07777;
    owner_ = status.st_uid;
    group_ = status.st_gid;
    return {};
}

/// A success without a handle: the name is taken.
Result AtomicFile::CreateTemporary() {
    // Until it has the old file's mode, nobody else may look into the new one.
    const mode_t mode = replaces_ ? 0600 : 0666;
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const int descriptor = Retry([&] { return ::open(temporary_.c_str(), flags, mode); });
    if (descriptor < 0) {
        const int error = errno;
        temporary_.clear();
        return error == EEXIST ? Result{} : Failure(StorageFileNotCreated, error);
    }
    handle_ = descriptor;
    if (!replaces_) {
        return {};
    }
    // The owner can be kept by the superuser only, the group by its members; the mode goes last, since a change of
    // owner takes bits from it.
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && (status.st_uid != owner_ || status.st_gid != group_)) {
        if (::fchown(descriptor, owner_, group_) != 0 && ::fchown(descriptor, static_cast<uid_t>(-1), group_) != 0) {
            errno = 0;
        }
    }
    return ::fchmod(descriptor, mode_) == 0 ? Result{} : Failure(StorageFileNotCreated, errno);
}

Result AtomicFile::Write(const std::uint8_t* bytes, std::size_t count) {
    if (handle_ == kClosed) {
        return Fail(StorageAlreadyFinished, FilePlace(path_));
    }
    while (count > 0) {
        const ssize_t written = Retry([&] { return ::write(Descriptor(handle_), bytes, count); });
        if (written <= 0) {
            const int error = written < 0 ? errno : EIO;
            Abandon();
            return Failure(StorageFileNotWritten, error);
        }
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return {};
}

Result AtomicFile::Replace() {
    if (Retry([&] { return ::fsync(Descriptor(handle_)); }) != 0) {
        return Failure(StorageFileNotSynced, errno);
    }
    // Not tried again when interrupted: the number is free by then and may be another file's.
    const int closed = ::close(Descriptor(handle_));
    const int closeError = errno;
    handle_ = kClosed;
    if (closed != 0 && closeError != EINTR) {
        return Failure(StorageFileNotWritten, closeError);
    }
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) {
        return Failure(StorageFileNotReplaced, errno);
    }
    // The new file stands: from here on nothing may fail for want of memory but a sentence.
    temporary_.clear();
    const int error = SyncFolder(folder_.c_str());
    if (error == 0) {
        return {};
    }
    try {
        return Failure(StorageDirectoryNotSynced, error);
    } catch (const std::bad_alloc&) {
        return FailQuietly(StorageDirectoryNotSynced, "");
    }
}

void AtomicFile::RemoveTemporary() noexcept {
    if (handle_ != kClosed) {
        ::close(Descriptor(handle_));
    }
    if (!temporary_.empty()) {
        ::unlink(temporary_.c_str());
    }
}

}  // namespace KivStorage
