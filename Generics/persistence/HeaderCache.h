#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <KivGenerics/SemanticTag.h>

#include "persistence/PackedBytes.h"
#include "persistence/SlotKeys.h"

namespace KivGenerics {

/// The header of a map that has been read: the words that it came in, and the keys that they stand for. Maps that are made alike
/// have the same header, which is known by its words then and need not be taken apart again.
class CachedHeader {
public:
    /// A header of more words or keys is not kept.
    static constexpr std::size_t kMostWords = 40;
    static constexpr std::size_t kMostKeys = 48;

    CachedHeader() noexcept {}  // what is not yet there is not read
    CachedHeader(const CachedHeader&) = delete;
    CachedHeader& operator=(const CachedHeader&) = delete;

    /// True where a header that begins with the bytes in `start` is this one if it goes on with its words.
    bool BeginsWith(const PackedBytes& start, bool longCount) const noexcept {
        return isWhole_ && start_ == start && longCount_ == longCount;
    }
    const std::int32_t* GetWords() const noexcept { return words_; }
    std::size_t GetWordCount() const noexcept { return wordCount_; }
    const SlotKey* begin() const noexcept { return keys_; }
    const SlotKey* end() const noexcept { return keys_ + keyCount_; }

    /// The word at `i` of the header that is to take the place of this one, whose words in front of it are as good. This one is
    /// known no more.
    void SetWord(std::size_t i, std::int32_t word) noexcept {
        isWhole_ = false;
        if (i < kMostWords) {
            words_[i] = word;
        }
    }
    /// All of its `wordCount` words have been set, and these are its keys.
    void End(const PackedBytes& start, bool longCount, std::size_t wordCount, const SlotKeys& keys) noexcept {
        const auto keyCount = static_cast<std::size_t>(keys.end() - keys.begin());
        isWhole_ = wordCount <= kMostWords && keyCount <= kMostKeys;
        if (isWhole_) {
            start_ = start;
            longCount_ = longCount;
            wordCount_ = wordCount;
            keyCount_ = keyCount;
            std::copy(keys.begin(), keys.end(), keys_);
        }
    }

private:
    bool isWhole_ = false;
    bool longCount_ = false;
    PackedBytes start_;  // what waited of the word before the header
    std::size_t wordCount_ = 0;
    std::size_t keyCount_ = 0;
    std::int32_t words_[kMostWords];
    SlotKey keys_[kMostKeys];
};

/// The headers of some of the maps that a load has read.
class HeaderCache {
public:
    /// Where the header of a map of this tag is, if it is known, or will be. Maps of a tag with as many children have one place;
    /// which others share it is left to chance.
    CachedHeader& Find(SemanticTag tag, const PackedBytes& start) noexcept {
        constexpr std::uint64_t kMix = 0x9E3779B1;
        const std::uint64_t mixed = (static_cast<std::uint32_t>(tag) * kMix >> (32 - kBits)) + start.Peek();
        return headers_[mixed % (1U << kBits)];
    }

private:
    static constexpr int kBits = 3;

    CachedHeader headers_[1 << kBits];
};

}  // namespace KivGenerics
