#pragma once

#include <filesystem>

#include <KivBase/ReturnPtrI.h>
#include <KivStorage/ReadStream.h>

namespace KivStorage {

/// Reads a file that a FileWriteStream wrote, one block at a time.
class KIV_STORAGE_EXPORT FileReadStream final : public ReadStream {
public:
    /// A new stream, held once; empty when there is no memory for it. What went wrong with opening is in GetError and
    /// answered to every call. Only regular files are read.
    static KivBase::ReturnPtrI<FileReadStream> Create(const std::filesystem::path& path,
                                                      const ReadLimits& limits = {}) noexcept;

private:
    FileReadStream(std::unique_ptr<ByteSource> source, const ReadLimits& limits);
    ~FileReadStream() override;
};

}  // namespace KivStorage
