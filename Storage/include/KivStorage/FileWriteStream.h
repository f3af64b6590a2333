#pragma once

#include <filesystem>

#include <KivBase/ReturnPtrI.h>
#include <KivStorage/WriteStream.h>

namespace KivStorage {

class FileSink;

/// Saves into a file that is replaced as a whole: until Commit has succeeded the old file stands.
///
/// The bytes go to a temporary file in the same folder, which Commit makes durable and renames. It is removed after any
/// failure and when the stream goes without Commit; only a process that is killed leaves it behind, as
/// ".saving-" and 16 hexadecimal digits. Its size counts against the disk until then.
class KIV_STORAGE_EXPORT FileWriteStream final : public WriteStream {
public:
    /// A new stream, held once; empty when there is no memory for it. A symbolic link is followed: what it names is
    /// replaced, or made. A new file gets the process's usual mode, an old one keeps its own, and its owner where the system
    /// allows. What went wrong with opening is in GetError and answered to every call.
    static KivBase::ReturnPtrI<FileWriteStream> Create(const std::filesystem::path& path) noexcept;

    /// Closes the data, makes them durable and puts the file in the old one's place; refused while objects are open. No Put
    /// is taken afterwards, a second Commit is refused. After StorageDirectoryNotSynced the new file stands, but
    /// might not survive a power failure; after any other failure the old one does.
    Result Commit();

private:
    explicit FileWriteStream(std::unique_ptr<FileSink> sink);
    ~FileWriteStream() override;

    FileSink* sink_;
};

}  // namespace KivStorage
