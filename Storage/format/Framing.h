#pragma once

#include <cstddef>
#include <cstdint>

namespace KivStorage {

// Docs/file-format.md draws what these numbers mean. All numbers in saved data are little-endian.

/// Not text in any encoding; a transfer that changes line ends, or ends at a Control-Z, destroys it.
inline constexpr std::uint8_t kMagic[8] = {0x89, 'K', 'I', 'V', 0x0D, 0x0A, 0x1A, 0x0A};
inline constexpr std::uint32_t kVersion = 1;

inline constexpr std::size_t kHeaderSize = 24;       // magic 8, version 4, reserved 4, checksum 8
inline constexpr std::size_t kBlockSize = 65536;     // a whole block at most, its length and checksum included
inline constexpr std::size_t kLengthSize = 4;
inline constexpr std::size_t kChecksumSize = 8;
inline constexpr std::size_t kMaxPayload = kBlockSize - kLengthSize - kChecksumSize;
inline constexpr std::size_t kTrailerSize = 44;      // length 0, blocks 8, items 8, bytes 8, chain 8, checksum 8
static_assert(kMaxPayload == 65524, "the size of a full block is part of the format");

/// The first byte of an item.
enum ItemType : std::uint8_t {
    ItemLong = 0x01,         // 4 bytes
    ItemDouble = 0x02,       // 8 bytes
    ItemShort = 0x03,        // 2 bytes
    ItemText = 0x04,         // number of units 4, units of 2 bytes
    ItemGuid = 0x05,         // 16 bytes
    ItemVariant = 0x06,      // type 2, value 8
    ItemBeginObject = 0x07,  // tag 2
    ItemEndObject = 0x08,    // nothing
};

/// An item's bytes behind its type, of a text those before its units; -1 for an unknown type.
constexpr int ItemPayload(std::uint8_t type) noexcept {
    switch (type) {
        case ItemLong: return 4;
        case ItemDouble: return 8;
        case ItemShort: return 2;
        case ItemText: return 4;
        case ItemGuid: return 16;
        case ItemVariant: return 10;
        case ItemBeginObject: return 2;
        case ItemEndObject: return 0;
        default: return -1;
    }
}

/// The size of the whole for so many bytes of items.
constexpr std::uint64_t BlocksFor(std::uint64_t itemBytes) noexcept {
    return itemBytes / kMaxPayload + (itemBytes % kMaxPayload != 0 ? 1 : 0);
}
constexpr std::uint64_t FramedSize(std::uint64_t itemBytes) noexcept {
    return kHeaderSize + itemBytes + BlocksFor(itemBytes) * (kLengthSize + kChecksumSize) + kTrailerSize;
}

}  // namespace KivStorage
