#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include <KivStorage/Result.h>

namespace KivStorage {

/// A file that is replaced as a whole: written beside the old one under another name, made durable, renamed.
///
/// Goes without a trace unless committed. Any failure removes the temporary file at once; every further call then fails
/// with StorageAlreadyFinished.
class AtomicFile {
public:
    AtomicFile() = default;
    ~AtomicFile() { Abandon(); }
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Follows symbolic links and makes the temporary file.
    Result Open(const std::filesystem::path& path);
    Result Write(const std::uint8_t* bytes, std::size_t count);
    Result Commit();
    /// Removes the temporary file; nothing when there is none.
    void Abandon() noexcept;

    /// As given to Open.
    const std::filesystem::path& GetPath() const noexcept { return path_; }

private:
    Result FollowLinks();
    // What differs by system.
    Result CheckTarget();
    Result CreateTemporary();
    Result Replace();
    void RemoveTemporary() noexcept;
    Result Failure(std::int32_t code, int systemError);

    static constexpr std::intptr_t kClosed = -1;

    std::filesystem::path path_;
    std::filesystem::path target_;  // behind the links
    std::filesystem::path folder_;  // that of the target
    std::filesystem::path temporary_;  // empty when there is none
    std::intptr_t handle_ = kClosed;  // the system's number for the open temporary file
    bool replaces_ = false;  // the target exists; then:
    std::uint32_t mode_ = 0;  //   its access bits, owner and group, where a system has them
    std::uint32_t owner_ = 0;
    std::uint32_t group_ = 0;
};

}  // namespace KivStorage
