#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace KivTree {

/// A file that is written under a name of its own and gets the right one in the end. It goes with the object, and when the
/// program is interrupted. Only one is open at a time.
///
/// Operations answer what went wrong, in the system's words, or nothing.
class ScratchFile {
public:
    /// For a file that will stand as `target`. What is there and no regular file, a device or a pipe, is written to directly.
    explicit ScratchFile(std::filesystem::path target);
    ~ScratchFile();
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    std::string Open();
    std::string Write(std::string_view bytes);
    /// Makes durable what was written, and closes.
    std::string Finish();
    /// Gives the file its name. Without `replace`, something that has come to stand there meanwhile is a failure.
    std::string Place(bool replace);

    /// Empty when the target is written to directly.
    const std::filesystem::path& GetPath() const noexcept { return path_; }

private:
    void Close();

    std::filesystem::path target_;
    std::filesystem::path path_;
    std::intptr_t handle_ = -1;
    bool exists_ = false;  // under path_
};

/// A name beside `target` that nothing else uses.
std::filesystem::path ScratchPathFor(const std::filesystem::path& target);

}  // namespace KivTree
