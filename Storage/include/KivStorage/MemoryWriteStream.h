#pragma once

#include <KivBase/ReturnPtrI.h>
#include <KivStorage/SavedBytes.h>
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
    /// What is complete so far: whole blocks until Finish, then everything. Where they stand may change with the next Put.
    const SavedBytes& GetBytes() const noexcept;
    /// Hands the bytes over; the stream has none afterwards. Before Finish it copies them, and throws std::bad_alloc when there is
    /// no memory for that.
    SavedBytes TakeBytes();

private:
    explicit MemoryWriteStream(std::unique_ptr<MemorySink> sink);
    ~MemoryWriteStream() override;

    MemorySink* sink_;
    bool finished_ = false;
};

}  // namespace KivStorage
