#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include <KivCOMShared/BlockWriteStream.h>
#include <KivStorage/Export.h>
#include <KivStorage/Result.h>

namespace KivStorage {

class ByteSink;
class ItemWriter;

/// What the two write streams share: items go into checksummed blocks, whatever keeps the bytes.
///
/// Lives in:   the heap, counted; made by the derived class's Create.
/// Dies with:  its last reference.
/// Threads:    references may be taken and dropped on any thread; everything else by one thread at a time.
/// On failure: the first error is kept and answered to every later call; nothing more is written.
/// Cost:       one copy into the block for each item, one checksum and one write for each block of 64 KiB.
class KIV_STORAGE_EXPORT WriteStream : public KivCOMShared::BlockWriteStream {
public:
    WriteStream(const WriteStream&) = delete;
    WriteStream& operator=(const WriteStream&) = delete;

    /// Answers BlockWriteStreamId and UnknownInterfaceId with a new reference; 0x80004002 for any other, 0x80004003 for
    /// a null place.
    std::int32_t QueryInterface(const GUID& interfaceId, void** object) final;
    std::uint32_t AddRef() final;
    std::uint32_t Release() final;
    std::int32_t PutLong(std::int32_t value) final;
    std::int32_t PutDouble(double value) final;
    std::int32_t PutShort(std::uint16_t value) final;
    /// Null units are taken for a text of length 0 only.
    std::int32_t PutWideString(const char16_t* units, std::uint32_t length) final;
    std::int32_t PutGUID(const GUID& value) final;
    /// Empty, null and the plain numbers; a variant that points anywhere is refused.
    std::int32_t PutVariant(const VARIANT* value) final;
    std::int32_t PutBeginObject(std::uint16_t tag) final;
    std::int32_t PutEndObject() final;

    /// The first error, with the place; a success while there was none.
    const Result& GetError() const noexcept;
    /// The bytes of framing and items so far, the present block included; after the end the size of the whole.
    std::uint64_t GetByteCount() const noexcept;

protected:
    explicit WriteStream(std::unique_ptr<ByteSink> sink);
    virtual ~WriteStream();

    /// Closes the data with the trailer; refused while objects are open.
    std::int32_t FinishItems();
    /// Keeps `error` as the stream's, unless there is one already; returns the code kept.
    std::int32_t SetError(Result error) noexcept;

private:
    std::atomic<std::uint32_t> references_{1};
    std::unique_ptr<ItemWriter> items_;
};

}  // namespace KivStorage
