#pragma once

#include <cstdint>

#include <KivBase/Guid.h>
#include <KivCOMShared/Variant.h>

namespace KivCOMShared {

/// The stream a tree is saved to: COM-style, reference counted, its layout that of the real thing on 64-bit Windows.
///
/// Every Put operation returns a 32-bit result, negative for failure. The byte layout is the stream's own.
class BlockWriteStream {
public:
    virtual std::int32_t QueryInterface(const GUID& interfaceId, void** object) = 0;
    virtual std::uint32_t AddRef() = 0;
    virtual std::uint32_t Release() = 0;
    virtual std::int32_t PutLong(std::int32_t value) = 0;
    virtual std::int32_t PutDouble(double value) = 0;
    virtual std::int32_t PutShort(std::uint16_t value) = 0;
    /// `length` code units, embedded zeros included.
    virtual std::int32_t PutWideString(const char16_t* units, std::uint32_t length) = 0;
    virtual std::int32_t PutGUID(const GUID& value) = 0;
    virtual std::int32_t PutVariant(const VARIANT* value) = 0;
    virtual std::int32_t PutBeginObject(std::uint16_t tag) = 0;
    virtual std::int32_t PutEndObject() = 0;

protected:
    // Streams go with their last reference, never through this interface.
    ~BlockWriteStream() = default;
};

}  // namespace KivCOMShared
