#pragma once

#include <cstddef>
#include <cstdint>

#include <KivBase/Export.h>
#include <KivBase/Guid.h>
#include <KivBase/WString.h>
#include <KivCOMShared/Variant.h>

namespace KivCOMShared {

/// What a host gives to save into: a sequence of typed values, grouped into objects. The archive decides the bytes.
///
/// Every operation returns a 32-bit result: 0 success, negative failure. The order of the operations is the order of the
/// virtual table, the destructor first.
class KIV_PLATFORM_EXPORT COrvWriteArchive {
public:
    virtual ~COrvWriteArchive();
    virtual std::int32_t WriteShort(std::uint16_t value) = 0;
    virtual std::int32_t WriteDouble(double value) = 0;
    virtual std::int32_t WriteGUID(const GUID& value) = 0;
    virtual std::int32_t WriteLong(std::int32_t value) = 0;
    virtual std::int32_t WriteInt64(std::int64_t value) = 0;
    /// `length` code units, embedded zeros included.
    virtual std::int32_t WriteWideString(const char16_t* units, std::uint32_t length) = 0;
    virtual std::int32_t WriteVariant(const VARIANT* value) = 0;
    /// Opens an object; everything up to its EndObject lies inside it.
    virtual std::int32_t BeginObject(std::uint16_t tag) = 0;
    virtual std::int32_t EndObject() = 0;

    /// WriteWideString of a whole text. A text of 2^32 units or more is refused with 0x80044AEA, nothing written.
    std::int32_t WriteString(const KivBase::WString& text);

protected:
    COrvWriteArchive() = default;
    COrvWriteArchive(const COrvWriteArchive&) = default;
    COrvWriteArchive& operator=(const COrvWriteArchive&) = default;
};

}  // namespace KivCOMShared
