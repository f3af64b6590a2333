#pragma once

#include <cstdint>

namespace KivInspect {

/// Ways to fail beyond those of KivStorage::StorageCode. The numbers are kept: a host may log them.
enum InspectCode : std::int32_t {
    InspectReadFailed = -0x5FABFFFF,   ///< 0xA0540001, the source of bytes failed
    InspectMalformed = -0x5FABFFFE,    ///< 0xA0540002, the document is not of the form
    InspectTooDeep = -0x5FABFFFD,      ///< 0xA0540003, more levels than the limit
    InspectTextTooLong = -0x5FABFFFC,  ///< 0xA0540004, a text of more units than the limit
    InspectTooManyBytes = -0x5FABFFFB,  ///< 0xA0540005, more bytes than the limit
};

}  // namespace KivInspect
