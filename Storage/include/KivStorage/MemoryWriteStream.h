#pragma once

#include <cstdint>
#include <vector>

#include <KivBase/ReturnPtrI.h>
#include <KivStorage/WriteStream.h>

namespace KivStorage {

class MemorySink;

/// Saves into memory: the bytes are those that a file would hold.
class KIV_STORAGE_EXPORT MemoryWriteStream final : public WriteStream {
public:
    /// A new stream, held once; empty when there is no memory for it.
    static KivBase::ReturnPtrI<MemoryWriteStream> Create() noexcept;

    /// Closes the data; refused while objects are open. No Put is taken afterwards, a second Finish is refused.
    Result Finish();
    /// What is complete so far: whole blocks until Finish, then everything. Before Finish it copies what has come since it was
    /// last asked, and throws std::bad_alloc when there is no memory for that.
    const std::vector<std::uint8_t>& GetBytes() const;
    /// Hands the bytes over; the stream has none afterwards. Throws as GetBytes.
    std::vector<std::uint8_t> TakeBytes();

private:
    explicit MemoryWriteStream(std::unique_ptr<MemorySink> sink);
    ~MemoryWriteStream() override;

    MemorySink* sink_;
};

}  // namespace KivStorage
