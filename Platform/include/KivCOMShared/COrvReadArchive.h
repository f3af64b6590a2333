#pragma once

#include <cstdint>

#include <KivBase/Export.h>
#include <KivBase/Guid.h>
#include <KivBase/WString.h>
#include <KivCOMShared/Variant.h>

namespace KivCOMShared {

/// What a host gives to load from: the counterpart of COrvWriteArchive.
///
/// Every operation returns a 32-bit result: 0 success, negative failure; ReadObjectTag also 1, no (or another) object
/// follows. The order of the operations is the order of the virtual table, the destructor first.
class KIV_PLATFORM_EXPORT COrvReadArchive {
public:
    virtual ~COrvReadArchive();
    virtual std::int32_t ReadShort(std::uint16_t* value) = 0;
    virtual std::int32_t ReadDouble(double* value) = 0;
    virtual std::int32_t ReadGUID(GUID* value) = 0;
    virtual std::int32_t ReadLong(std::int32_t* value) = 0;
    virtual std::int32_t ReadInt64(std::int64_t* value) = 0;
    virtual std::int32_t ReadWideString(KivBase::WString& text) = 0;
    virtual std::int32_t ReadVariant(VARIANT* value) = 0;
    /// Enters the next object and gives its tag. `expected` 0 accepts any tag; another tag than the expected one, or no
    /// further object, is result 1, and nothing is entered.
    virtual std::int32_t ReadObjectTag(std::uint16_t expected, std::uint16_t* tag) = 0;
    /// The same, but another tag is a failure.
    virtual std::int32_t ReadExpectedObjectTag(std::uint16_t expected, std::uint16_t* tag) = 0;
    /// Leaves the current object, whatever of it is still unread.
    virtual std::int32_t EndReadObject() = 0;

protected:
    COrvReadArchive() = default;
    COrvReadArchive(const COrvReadArchive&) = default;
    COrvReadArchive& operator=(const COrvReadArchive&) = default;
};

}  // namespace KivCOMShared
