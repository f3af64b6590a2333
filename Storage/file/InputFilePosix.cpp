#include "file/InputFile.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "file/PathText.h"
#include "format/Failure.h"

namespace KivStorage {

Result InputFile::Open(const std::filesystem::path& path) {
    path_ = path;
    // Without O_NONBLOCK the open would wait for somebody to write into a named pipe.
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) {
        const int error = errno;
        return Failure(error == ENOENT ? StorageFileNotFound : StorageFileNotOpened, error);
    }
    handle_ = descriptor;
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) {
        return Failure(StorageFileNotOpened, errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return Fail(StorageNotAFile, FilePlace(path_));
    }
    size_ = static_cast<std::uint64_t>(status.st_size);
    return {};
}

Result InputFile::Read(std::uint8_t* bytes, std::size_t count, std::size_t& got) {
    got = 0;
    while (handle_ != kClosed && got < count) {
        const ssize_t part = ::read(static_cast<int>(handle_), bytes + got, count - got);
        if (part == 0) {
            break;
        }
        if (part < 0) {
            if (errno == EINTR) {
                continue;
            }
            return Failure(StorageFileNotRead, errno);
        }
        got += static_cast<std::size_t>(part);
    }
    return {};
}

void InputFile::Close() noexcept {
    if (handle_ != kClosed) {
        ::close(static_cast<int>(handle_));
        handle_ = kClosed;
    }
}

}  // namespace KivStorage
