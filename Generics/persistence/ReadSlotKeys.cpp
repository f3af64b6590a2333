#include "persistence/ReadSlotKeys.h"

#include "persistence/Encoding.h"
#include "persistence/LeafArchive.h"

namespace KivGenerics {
namespace {

/// Takes a header apart, with what waits of it in the processor's registers: the decoder is realigned behind it. Its words go to
/// a cached header, where the first `readBefore` of them stand already.
class HeaderReader {
public:
    HeaderReader(ArchiveDecoder& decoder, CachedHeader& cached, std::size_t readBefore) noexcept
        : decoder_(decoder), cached_(cached), readBefore_(readBefore), bytes_(decoder.GetPackedBytes()) {}

    /// The number of keys; false where a word cannot be read.
    bool ReadCount(bool longCount, std::uint32_t& count) {
        if (longCount) {
            return ReadNumber(4, 0xFFFFFFFF, count);
        }
        return Need(1) && ((bytes_.Peek() & 0x80) != 0 ? ReadNumber(2, 0x7FFF, count) : ReadNumber(1, 0x7F, count));
    }
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
    std::size_t GetWordCount() const noexcept { return wordCount_; }

private:
    bool ReadNumber(int size, std::uint32_t mask, std::uint32_t& number) {
        if (!Need(size)) {
            return false;
        }
        number = bytes_.Take(size) & mask;
        return true;
    }

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
            key.typeCode |= bytes_.Take(1) << 8;
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
            if (wordCount_ < readBefore_) {
                word = cached_.GetWords()[wordCount_];
            } else {
                status_ = decoder_.ReadLong(&word);
                if (status_ < 0) {
                    return false;
                }
                cached_.SetWord(wordCount_, word);
            }
            ++wordCount_;
            bytes_.Add(word);
        }
        return true;
    }

    ArchiveDecoder& decoder_;
    CachedHeader& cached_;
    const std::size_t readBefore_;
    std::size_t wordCount_ = 0;
    PackedBytes bytes_;
    std::int32_t status_ = ResultSuccess;
};

/// Reads the rest of a header that is not known, and keeps it where there is room for it.
[[gnu::noinline]] std::int32_t ReadNewHeader(ArchiveDecoder& decoder, bool longCount, CachedHeader& cached,
                                             std::size_t readBefore, SlotKeys& keys) {
    HeaderReader reader(decoder, cached, readBefore);
    std::uint32_t count = 0;
    bool isRead = reader.ReadCount(longCount, count);
    SlotKey key;
    for (; count > 0 && (isRead = reader.Read(key)); --count) {
        keys.Add(key);
    }
    if (isRead) {
        cached.End(decoder.GetPackedBytes(), longCount, reader.GetWordCount(), keys);
    }
    return reader.GetStatus();
}

/// Reads words as long as they are those of a header. `count` is how many have been read then; where the last is another, it has
/// been set in the header. Returns the result of the last.
template <class Values>
std::int32_t ReadKnownWords(Values values, CachedHeader& cached, std::size_t& count) {
    const std::int32_t* const first = cached.GetWords();
    const std::int32_t* const end = first + cached.GetWordCount();
    std::int32_t result = ResultSuccess;
    for (const std::int32_t* next = first; next != end; ++next) {
        std::int32_t word = 0;
        result = values.ReadLong(&word);
        if (result < 0 || word != *next) {
            count = static_cast<std::size_t>(next - first);
            cached.SetWord(count++, word);
            return result;
        }
    }
    return result;
}

}  // namespace

std::int32_t ReadSlotKeys(ArchiveDecoder& decoder, SemanticTag tag, bool longCount, SlotKeys& keys) {
    const PackedBytes start = decoder.GetPackedBytes();
    CachedHeader& cached = decoder.GetHeaders().Find(tag, start);
    std::size_t readBefore = 0;
    std::int32_t result = ResultSuccess;
    bool isKnown = cached.BeginsWith(start, longCount);
    if (isKnown) {
        result = WithValues(decoder, [&](auto values) { return ReadKnownWords(values, cached, readBefore); });
        isKnown = result >= 0 && readBefore == 0;
    }
    if (isKnown) {
        keys.Add(cached.begin(), cached.end());
    } else if (result >= 0) {
        result = ReadNewHeader(decoder, longCount, cached, readBefore, keys);
    }
    keys.Close();
    decoder.Realign();
    return result;
}

}  // namespace KivGenerics
