#pragma once

#include <KivBase/Guid.h>

namespace KivStorage {

// What the streams answer to QueryInterface, beside the general interface of counted objects.
inline constexpr GUID UnknownInterfaceId = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr GUID BlockWriteStreamId = {0x6B1D5A40,
                                            0x3C92,
                                            0x4E17,
                                            {0x9A, 0x05, 0x51, 0x7E, 0x2B, 0xC4, 0x08, 0xD1}};
inline constexpr GUID BlockReadStreamId = {0x6B1D5A41,
                                           0x3C92,
                                           0x4E17,
                                           {0x9A, 0x05, 0x51, 0x7E, 0x2B, 0xC4, 0x08, 0xD1}};

}  // namespace KivStorage
