#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include <KivCOMShared/BlockReadStream.h>
#include <KivStorage/Export.h>
#include <KivStorage/Options.h>
#include <KivStorage/Result.h>

namespace KivStorage {

class ByteSource;
class ItemReader;

/// What the two read streams share: every block is verified before an item of it is handed out.
///
/// Lives in:   the heap, counted; made by the derived class's Create.
/// Dies with:  its last reference.
/// Threads:    references may be taken and dropped on any thread; everything else by one thread at a time.
/// On failure: the first error is kept and answered to every later call; outputs are untouched.
/// Cost:       one block of 64 KiB in memory, whatever the size of the whole.
class KIV_STORAGE_EXPORT ReadStream : public KivCOMShared::BlockReadStream {
public:
    ReadStream(const ReadStream&) = delete;
    ReadStream& operator=(const ReadStream&) = delete;

    /// Answers BlockReadStreamId and UnknownInterfaceId with a new reference; 0x80004002 for any other, 0x80004003 for
    /// a null place.
    std::int32_t QueryInterface(const GUID& interfaceId, void** object) final;
    std::uint32_t AddRef() final;
    std::uint32_t Release() final;
    std::int32_t GetLong(std::int32_t* value) final;
    std::int32_t GetDouble(double* value) final;
    std::int32_t GetShort(std::uint16_t* value) final;
    /// Refused for more units than the limit, or than the rest of the data can hold.
    std::int32_t GetStringLength(std::uint32_t* length) final;
    /// `length` must be what GetStringLength has just answered. The buffer is not terminated.
    std::int32_t GetStringChars(std::uint32_t length, char16_t* buffer) final;
    std::int32_t GetGUID(GUID* value) final;
    std::int32_t GetVariant(VARIANT* value) final;
    /// 1 where the current object, or the whole, ends; an error where a value stands.
    std::int32_t GetObjectTag(std::uint16_t* tag) final;
    /// Skips what of the current object is unread, nested objects included.
    std::int32_t GetEndObject() final;

    /// Verifies that all was read: no object is open, no item is left, the trailer's totals are right and nothing follows it.
    /// Until then a damage behind what was read is not seen. Further reads are refused.
    Result Finish();
    /// The first error, with the place; a success while there was none.
    const Result& GetError() const noexcept;
    /// Where the next item begins, for messages: `file "name", block 2, byte 65560`. Throws std::bad_alloc.
    std::string GetPlace() const;

protected:
    ReadStream(std::unique_ptr<ByteSource> source, const ReadLimits& limits);
    virtual ~ReadStream();

    /// Keeps `error` as the stream's, unless there is one already; returns the code kept.
    std::int32_t SetError(Result error) noexcept;

private:
    std::atomic<std::uint32_t> references_{1};
    std::unique_ptr<ItemReader> items_;
};

}  // namespace KivStorage
