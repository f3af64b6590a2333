#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "kivtree/system/ScratchFile.h"

namespace KivTree {
namespace {

constexpr int Signals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGQUIT};

// What a signal removes: a handler may read nothing but plain memory.
char pathToRemove[4096];
std::atomic<bool> removes{false};

void RemoveAndDie(int signal) {
    if (removes.load()) {
        ::unlink(pathToRemove);
    }
    std::signal(signal, SIG_DFL);
    ::raise(signal);
}

void RemoveWhenInterrupted(const std::string& path) {
    if (path.size() >= sizeof pathToRemove) {
        return;
    }
    std::memcpy(pathToRemove, path.c_str(), path.size() + 1);
    removes = true;
    for (const int signal : Signals) {
        // What whoever started the program has told it to ignore stays ignored.
        if (std::signal(signal, RemoveAndDie) == SIG_IGN) {
            std::signal(signal, SIG_IGN);
        }
    }
}

std::string LastError() {
    return std::system_category().message(errno);
}

bool IsSpecial(const char* path) {
    struct stat status = {};
    return ::stat(path, &status) == 0 && !S_ISREG(status.st_mode);
}

int ToDescriptor(std::intptr_t handle) {
    return static_cast<int>(handle);
}

/// A file that is replaced hands its mode on.
void TakeMode(int descriptor, const char* from) {
    struct stat status = {};
    if (::stat(from, &status) == 0) {
        ::fchmod(descriptor, status.st_mode & 07777U);
    }
}

}  // namespace

ScratchFile::ScratchFile(std::filesystem::path target) : target_(std::move(target)) {}

ScratchFile::~ScratchFile() {
    Close();
    if (exists_) {
        ::unlink(path_.c_str());
    }
    removes = false;
}

std::string ScratchFile::Open() {
    if (IsSpecial(target_.c_str())) {
        handle_ = ::open(target_.c_str(), O_WRONLY | O_CLOEXEC);
        return handle_ < 0 ? LastError() : std::string();
    }
    path_ = ScratchPathFor(target_);
    RemoveWhenInterrupted(path_.native());
    const int descriptor = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        return LastError();
    }
    handle_ = descriptor;
    exists_ = true;
    TakeMode(descriptor, target_.c_str());
    return {};
}

std::string ScratchFile::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(ToDescriptor(handle_), bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return LastError();
        }
        bytes.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return {};
}

std::string ScratchFile::Finish() {
    const bool durable = path_.empty() || ::fsync(ToDescriptor(handle_)) == 0;
    std::string problem = durable ? std::string() : LastError();
    Close();
    return problem;
}

std::string ScratchFile::Place(bool replace) {
    if (path_.empty()) {
        return {};
    }
    // A link refuses to replace; some file systems have none.
    const bool linked = !replace && ::link(path_.c_str(), target_.c_str()) == 0;
    if (linked) {
        ::unlink(path_.c_str());
    } else if (!replace && errno == EEXIST) {
        return LastError();
    } else if (::rename(path_.c_str(), target_.c_str()) != 0) {
        return LastError();
    }
    exists_ = false;
    removes = false;
    return {};
}

void ScratchFile::Close() {
    if (handle_ >= 0) {
        ::close(ToDescriptor(handle_));
        handle_ = -1;
    }
}

}  // namespace KivTree
