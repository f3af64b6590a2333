#pragma once

#include <cstdint>
#include <filesystem>

#include "format/ByteSink.h"

namespace KivStorage {

/// A regular file, read from its beginning.
class InputFile final : public ByteSource {
public:
    InputFile() = default;
    ~InputFile() override { Close(); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    Result Open(const std::filesystem::path& path);
    /// Nothing when the file is not open.
    Result Read(std::uint8_t* bytes, std::size_t count, std::size_t& got) override;
    /// When it was opened.
    std::uint64_t GetSize() const override { return size_; }
    std::string GetPlace() const override;

private:
    void Close() noexcept;
    Result Failure(std::int32_t code, int systemError) const;

    static constexpr std::intptr_t kClosed = -1;

    std::filesystem::path path_;
    std::uint64_t size_ = 0;
    std::intptr_t handle_ = kClosed;  // the system's number for the open file
};

}  // namespace KivStorage
