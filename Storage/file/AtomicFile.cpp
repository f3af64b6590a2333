#include "file/AtomicFile.h"

#include <random>
#include <system_error>

#include "file/PathText.h"
#include "format/Failure.h"

namespace KivStorage {
namespace {

constexpr int kMaxLinks = 40;
// Each try has a new random name, so a second one is already out of the ordinary.
constexpr int kMaxNames = 100;

/// Short whatever the file's own name is, so that it never outgrows what a folder takes.
std::filesystem::path TemporaryName() {
    std::random_device random;
    constexpr char digits[] = "0123456789abcdef";
    std::string name = ".saving-";
    for (int word = 0; word < 2; ++word) {
        std::uint32_t bits = random();
        for (int digit = 0; digit < 8; ++digit, bits >>= 4) {
            name += digits[bits & 15];
        }
    }
    return name;
}

}  // namespace

Result AtomicFile::Failure(std::int32_t code, int systemError) {
    return Fail(code, FilePlace(path_, std::error_code(systemError, std::system_category())));
}

/// The links are followed by hand, since the last one may name a file that is yet to be made.
Result AtomicFile::FollowLinks() {
    target_ = path_;
    for (int links = 0; links <= kMaxLinks; ++links) {
        std::error_code error;
        const std::filesystem::file_type type = std::filesystem::symlink_status(target_, error).type();
        if (type == std::filesystem::file_type::none) {
            // What cannot be asked may be a link, which a new file would replace.
            return Fail(StorageFileNotCreated, FilePlace(path_, error));
        }
        if (type != std::filesystem::file_type::symlink) {
            return {};
        }
        const std::filesystem::path next = std::filesystem::read_symlink(target_, error);
        if (error) {
            return Fail(StorageFileNotCreated, FilePlace(path_, error));
        }
        target_ = target_.parent_path() / next;
    }
    return Fail(StorageFileNotCreated,
                FilePlace(path_, std::make_error_code(std::errc::too_many_symbolic_link_levels)));
}

Result AtomicFile::Open(const std::filesystem::path& path) {
    path_ = path;
    if (Result result = FollowLinks(); !result.Ok()) {
        return result;
    }
    if (Result result = CheckTarget(); !result.Ok()) {
        return result;
    }
    folder_ = target_.has_parent_path() ? target_.parent_path() : std::filesystem::path(".");
    Result result;
    for (int tries = 0; tries < kMaxNames; ++tries) {
        temporary_ = folder_ / TemporaryName();
        result = CreateTemporary();
        if (handle_ != kClosed || !result.Ok()) {
            break;
        }
    }
    if (result.Ok() && handle_ == kClosed) {
        result = Fail(StorageFileNotCreated, FilePlace(path_, std::make_error_code(std::errc::file_exists)));
    }
    if (!result.Ok()) {
        Abandon();
    }
    return result;
}

Result AtomicFile::Commit() {
    if (handle_ == kClosed) {
        return Fail(StorageAlreadyFinished, FilePlace(path_));
    }
    Result result = Replace();
    Abandon();
    return result;
}

void AtomicFile::Abandon() noexcept {
    if (handle_ != kClosed || !temporary_.empty()) {
        RemoveTemporary();
    }
    handle_ = kClosed;
    temporary_.clear();
}

}  // namespace KivStorage
