// The system's file operations, in front of the system's own. A program's definitions come before those of the libraries
// that it is linked with, also for calls from other libraries.

#include "system/Calls.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <filesystem>
#include <iterator>
#include <map>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace SystemCalls {
namespace {

struct Watched {
    Fault fault;
    int count = 0;
    bool struck = false;
    std::vector<Call> calls;
    std::map<int, std::string> names;
};

thread_local Watched* watched = nullptr;

/// The operation behind ours.
template <class Function>
Function* Behind(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

/// Whether this call is the one that the fault is for, or comes after it when the fault is for good.
bool Strikes(Kind kind) {
    const Fault& fault = watched->fault;
    const int number = ++watched->count;
    const bool cleaning = kind == Kind::Unlink || kind == Kind::Close;
    const bool strikes =
        fault.what != Fault::What::None && (number == fault.at || (number > fault.at && fault.forGood && !cleaning));
    watched->struck = watched->struck || strikes;
    return strikes;
}

void Die() {
    ::kill(::getpid(), SIGKILL);
}

/// Counts a call; true when it is to fail. What is to die dies here.
bool Fails(Kind kind) {
    if (watched == nullptr || !Strikes(kind)) {
        return false;
    }
    if (watched->fault.what == Fault::What::Kill || watched->fault.what == Fault::What::KillHalfway) {
        Die();
    }
    errno = watched->fault.error;
    return watched->fault.what == Fault::What::Fail;
}

void Record(Kind kind, const std::string& path, const std::string& newPath = {}) {
    if (watched != nullptr) {
        watched->calls.push_back({kind, path, newPath, {}, false});
    }
}

const std::string& NameOf(int descriptor) {
    return watched->names[descriptor];
}

/// Runs a call that answers 0 or -1, unless it is to fail, and records it.
template <class Run>
int Do(Kind kind, const std::string& path, const std::string& newPath, Run run) {
    if (Fails(kind)) {
        return -1;
    }
    const int result = run();
    if (result == 0) {
        Record(kind, path, newPath);
    }
    return result;
}

/// How much of a read or write is done: all of it, half of it, or nothing, which is -1.
ssize_t Portion(Kind kind, std::size_t count) {
    if (!Strikes(kind)) {
        return static_cast<ssize_t>(count);
    }
    errno = watched->fault.error;
    switch (watched->fault.what) {
        case Fault::What::DoHalf:
        case Fault::What::KillHalfway: return static_cast<ssize_t>((count + 1) / 2);
        case Fault::What::DoNothing: return 0;
        case Fault::What::Kill: Die(); break;
        case Fault::What::Fail:
        case Fault::What::None: break;
    }
    return -1;
}

}  // namespace

Watch::Watch(const Fault& fault) {
    watched = new Watched;
    watched->fault = fault;
}

Watch::~Watch() {
    delete watched;
    watched = nullptr;
}

bool Watch::HasStruck() const {
    return watched->struck;
}

std::vector<Call> Watch::TakeCalls() const {
    return std::move(watched->calls);
}

int CountOpenFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<int>(std::distance(begin(files), end(files)));
}

}  // namespace SystemCalls

using namespace SystemCalls;

extern "C" {

int open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(arguments, int) : 0;
    va_end(arguments);
    if (Fails(Kind::Open)) {
        return -1;
    }
    const int descriptor = Behind<int(const char*, int, ...)>("open")(path, flags, mode);
    if (watched != nullptr && descriptor >= 0) {
        watched->names[descriptor] = path;
        watched->calls.push_back({Kind::Open, path, {}, {}, (flags & O_CREAT) != 0});
    }
    return descriptor;
}

ssize_t read(int descriptor, void* bytes, std::size_t count) {
    const ssize_t portion = watched != nullptr ? Portion(Kind::Read, count) : static_cast<ssize_t>(count);
    return portion < 0
               ? -1
               : Behind<ssize_t(int, void*, std::size_t)>("read")(descriptor, bytes, static_cast<std::size_t>(portion));
}

ssize_t write(int descriptor, const void* bytes, std::size_t count) {
    const ssize_t portion = watched != nullptr ? Portion(Kind::Write, count) : static_cast<ssize_t>(count);
    if (portion < 0) {
        return -1;
    }
    const ssize_t written =
        Behind<ssize_t(int, const void*, std::size_t)>("write")(descriptor, bytes, static_cast<std::size_t>(portion));
    if (watched != nullptr && watched->struck && watched->fault.what == Fault::What::KillHalfway) {
        Die();
    }
    if (watched != nullptr && written > 0) {
        Record(Kind::Write, NameOf(descriptor));
        const auto* const first = static_cast<const std::uint8_t*>(bytes);
        watched->calls.back().bytes.assign(first, first + written);
    }
    return written;
}

int fsync(int descriptor) {
    const std::string name = watched != nullptr ? NameOf(descriptor) : std::string();
    return Do(Kind::Sync, name, {}, [&] { return Behind<int(int)>("fsync")(descriptor); });
}

// As the system does it: what fails is closed nevertheless.
int close(int descriptor) {
    const bool fails = Fails(Kind::Close);
    const int error = errno;
    const int result = Behind<int(int)>("close")(descriptor);
    if (fails) {
        errno = error;
        return -1;
    }
    if (watched != nullptr) {
        Record(Kind::Close, NameOf(descriptor));
    }
    return result;
}

int rename(const char* from, const char* to) noexcept {
    return Do(Kind::Rename, from, to, [&] { return Behind<int(const char*, const char*)>("rename")(from, to); });
}

int unlink(const char* path) noexcept {
    return Do(Kind::Unlink, path, {}, [&] { return Behind<int(const char*)>("unlink")(path); });
}

int stat(const char* path, struct stat* status) noexcept {
    return Do(Kind::Status, path, {}, [&] { return Behind<int(const char*, struct stat*)>("stat")(path, status); });
}

int lstat(const char* path, struct stat* status) noexcept {
    return Do(Kind::Status, path, {}, [&] { return Behind<int(const char*, struct stat*)>("lstat")(path, status); });
}

int fstat(int descriptor, struct stat* status) noexcept {
    return Do(Kind::Status, {}, {}, [&] { return Behind<int(int, struct stat*)>("fstat")(descriptor, status); });
}

int fchmod(int descriptor, mode_t mode) noexcept {
    return Do(Kind::ChangeMode, {}, {}, [&] { return Behind<int(int, mode_t)>("fchmod")(descriptor, mode); });
}

int fchown(int descriptor, uid_t owner, gid_t group) noexcept {
    return Do(Kind::ChangeOwner, {}, {},
              [&] { return Behind<int(int, uid_t, gid_t)>("fchown")(descriptor, owner, group); });
}
}
