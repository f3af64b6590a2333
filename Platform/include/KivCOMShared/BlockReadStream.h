#pragma once

#include <cstdint>

#include <KivBase/Guid.h>
#include <KivCOMShared/Variant.h>

namespace KivCOMShared {

/// The stream a tree is loaded from: the counterpart of BlockWriteStream.
///
/// Every Get operation returns a 32-bit result, negative for failure; GetObjectTag also 1, no object follows.
class BlockReadStream {
public:
    virtual std::int32_t QueryInterface(const GUID& interfaceId, void** object) = 0;
    virtual std::uint32_t AddRef() = 0;
    virtual std::uint32_t Release() = 0;
    virtual std::int32_t GetLong(std::int32_t* value) = 0;
    virtual std::int32_t GetDouble(double* value) = 0;
    virtual std::int32_t GetShort(std::uint16_t* value) = 0;
    /// The number of 16-bit units of the text that follows; GetStringChars must come next.
    virtual std::int32_t GetStringLength(std::uint32_t* length) = 0;
    /// The units of the text, `length` of them, into a buffer of at least length + 1 units. The stream need not terminate
    /// them: the caller has filled the buffer with zeros.
    virtual std::int32_t GetStringChars(std::uint32_t length, char16_t* buffer) = 0;
    virtual std::int32_t GetGUID(GUID* value) = 0;
    virtual std::int32_t GetVariant(VARIANT* value) = 0;
    /// Enters the next object and gives its tag; 1 when no further object follows in the current one.
    virtual std::int32_t GetObjectTag(std::uint16_t* tag) = 0;
    /// Leaves the current object, whatever of it is still unread.
    virtual std::int32_t GetEndObject() = 0;

protected:
    ~BlockReadStream() = default;
};

}  // namespace KivCOMShared
