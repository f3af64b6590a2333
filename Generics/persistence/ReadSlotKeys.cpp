#include "persistence/ReadSlotKeys.h"

#include "persistence/Encoding.h"
#include "persistence/LeafArchive.h"

namespace KivGenerics {
namespace {

std::int32_t ReadCount(ArchiveDecoder& decoder, bool longCount, std::uint32_t& count) {
    if (longCount) {
        count = decoder.GetBytes(4);
    } else {
        const std::uint32_t first = decoder.PeekByte();
        if (!decoder.HasFailed()) {
            count = (first & 0x80) != 0 ? decoder.GetBytes(2) & 0x7FFF : decoder.GetBytes(1);
        }
    }
    return decoder.GetStatus();
}

/// Reads keys, with what waits of the header in the processor's registers: the decoder is realigned behind them.
class KeyReader {
public:
    explicit KeyReader(ArchiveDecoder& decoder) noexcept : words_(decoder), bytes_(decoder.GetPackedBytes()) {}

    /// The next key; false where a word cannot be read.
    bool Read(SlotKey& key) {
        if (!Need(1)) {
            return false;
        }
        // The upper three bits say whether a type byte follows, and how many bytes the index has: 0x one, 10 two, 11 four.
        const std::uint32_t first = bytes_.Peek();
        const bool isLeaf = (first & 0x80) != 0;
        if ((first & 0x40) == 0) {
            return isLeaf ? ReadOfLeaf<1>(0x3F, key) : ReadOfComposite<1>(0x3F, key);
        }
        if ((first & 0x20) == 0) {
            return isLeaf ? ReadOfLeaf<2>(0x1FFF, key) : ReadOfComposite<2>(0x1FFF, key);
        }
        return isLeaf ? ReadOfLeaf<4>(0x1FFFFFFF, key) : ReadOfComposite<4>(0x1FFFFFFF, key);
    }
    /// The result of the last word read.
    std::int32_t GetStatus() const noexcept { return status_; }

private:
    /// A leaf's key: its index in `IndexBytes` bytes, then its type byte, which may be followed by one that counts extra words.
    template <int IndexBytes>
    bool ReadOfLeaf(std::uint32_t indexMask, SlotKey& key) {
        if (!Need(IndexBytes + 1)) {
            return false;
        }
        key.index = static_cast<std::int32_t>(bytes_.Take(IndexBytes) & indexMask);
        key.typeCode = bytes_.Take(1);
        if ((key.typeCode & kTypeMask) >= kFirstTypeWithExtraWords) {
            if (!Need(1)) {
                return false;
            }
            key.typeCode = key.typeCode << 8 | bytes_.Take(1);
        }
        return true;
    }

    template <int IndexBytes>
    bool ReadOfComposite(std::uint32_t indexMask, SlotKey& key) {
        if (!Need(IndexBytes)) {
            return false;
        }
        key.index = static_cast<std::int32_t>(bytes_.Take(IndexBytes) & indexMask);
        key.typeCode = 0;
        return true;
    }

    /// Reads a word unless so many bytes, of which one waits or is asked for, wait already.
    bool Need(int count) {
        if (bytes_.GetCount() < count) {
            std::int32_t word = 0;
            status_ = words_.ReadLong(&word);
            if (status_ < 0) {
                return false;
            }
            bytes_.Add(word);
        }
        return true;
    }

    const ValueReader words_;
    PackedBytes bytes_;
    std::int32_t status_ = ResultSuccess;
};

}  // namespace

std::int32_t ReadSlotKeys(ArchiveDecoder& decoder, bool longCount, SlotKeys& keys) {
    std::uint32_t count = 0;
    const std::int32_t result = ReadCount(decoder, longCount, count);
    if (result < 0) {
        return result;
    }
    KeyReader reader(decoder);
    SlotKey key;
    for (; count > 0 && reader.Read(key); --count) {
        keys.Add(key);
    }
    keys.Close();
    decoder.Realign();
    return reader.GetStatus();
}

}  // namespace KivGenerics
