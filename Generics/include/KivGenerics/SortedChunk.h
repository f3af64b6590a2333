#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <KivBase/Allocator.h>
#include <KivBase/Buffer.h>

namespace KivGenerics {

// The standard header that has these does not compile behind a system header that defines min and max.
template <class Number>
constexpr Number GetLesser(Number left, Number right) noexcept {
    return right < left ? right : left;
}
template <class Number>
constexpr Number GetGreater(Number left, Number right) noexcept {
    return left < right ? right : left;
}

/// What stands beside a key where nothing does.
struct NoPayload {};

/// The head of a chunk, behind which its keys and payloads lie. It says which kind of chunk follows.
struct alignas(std::uint64_t) ChunkHead {
    std::uint16_t size;
    std::uint16_t capacity;
    std::uint16_t level;  // 0 holds elements, any other level chunks of the level below

    bool IsFull() const noexcept { return size == capacity; }

    /// Asks for the memory of a chunk that is about to be searched, all of it at once: a search that waits for one line of
    /// it after the other takes three times as long where the chunks do not fit the processor's cache.
    void Fetch() const noexcept {
        constexpr int kChunk = 1024;
        constexpr int kLine = 64;
        for (int i = 0; i < kChunk; i += kLine) {
            __builtin_prefetch(reinterpret_cast<const char*>(this) + i);
        }
    }
};

/// The number of keys, all at the front of `keys`, for which `isBefore` holds. The steps depend on the count alone, and each
/// answer is used as a number, so that a processor has no branch to guess; the last few questions need not wait for each
/// other.
template <class Key, class IsBefore>
int CountBefore(const Key* keys, int count, IsBefore isBefore) noexcept {
    constexpr std::size_t kFew = 8;
    auto left = static_cast<std::size_t>(count);
    std::size_t before = 0;
    while (left > kFew) {
        const std::size_t half = left / 2;
        before += half & (std::size_t{0} - static_cast<std::size_t>(isBefore(keys[before + half - 1])));
        left -= half;
    }
    const Key* const few = keys + before;
    for (std::size_t i = 0; i < left; ++i) {
        before += isBefore(few[i]) ? 1 : 0;
    }
    return static_cast<int>(before);
}

/// An array of sorted keys, and one of what belongs to each, in one allocation of at most 1 KiB:
///
///     | head, 8 bytes | keys [capacity] | up to 8 bytes' alignment | payloads [capacity] |
///
/// Nothing in it is constructed or destroyed. The caller sees to the order of the keys and to room.
template <class Key, class Payload>
class SortedChunk : public ChunkHead {
    static_assert(std::is_trivially_copyable_v<Key> && std::is_trivially_copyable_v<Payload>);
    static_assert(alignof(Key) <= alignof(ChunkHead) && alignof(Payload) <= alignof(ChunkHead));

    using Word = std::uint64_t;

    static constexpr bool kHasPayload = !std::is_empty_v<Payload>;
    static constexpr std::size_t GetWordsOf(std::size_t bytes) noexcept {
        return (bytes + sizeof(Word) - 1) / sizeof(Word);
    }
    static constexpr std::size_t GetWords(std::size_t capacity) noexcept {
        return 1 + GetWordsOf(capacity * sizeof(Key)) + (kHasPayload ? GetWordsOf(capacity * sizeof(Payload)) : 0);
    }
    static constexpr int GetCapacityOf(std::size_t words) noexcept {
        auto capacity = words * sizeof(Word) / (sizeof(Key) + (kHasPayload ? sizeof(Payload) : 0));
        while (GetWords(capacity) > words + 1) {
            --capacity;
        }
        return static_cast<int>(capacity);
    }

    /// By the words behind the head. What a chunk leaves when it grows serves others of the same few sizes.
    static constexpr int kCapacities[] = {
        GetCapacityOf(1),  GetCapacityOf(2),  GetCapacityOf(4),  GetCapacityOf(8),
        GetCapacityOf(12), GetCapacityOf(16), GetCapacityOf(24), GetCapacityOf(32),
        GetCapacityOf(48), GetCapacityOf(64), GetCapacityOf(96), GetCapacityOf(127),
    };

public:
    /// What the largest chunk holds.
    static constexpr int kMost = GetCapacityOf(127);

    /// The capacity of the smallest chunk that holds `count`; at most kMost.
    static int GetCapacityFor(int count) noexcept {
        for (const int capacity : kCapacities) {
            if (capacity >= count) {
                return capacity;
            }
        }
        return kMost;
    }

    /// An empty chunk from the buffer, or from the heap when that is null. Throws std::bad_alloc.
    static SortedChunk* New(KivBase::Buffer* buffer, int capacity, int level) {
        const std::size_t words = GetWords(static_cast<std::size_t>(capacity));
        void* const memory = KivBase::Allocator<Word>(buffer).allocate(words);
        KivBase::Buffer::PrefetchForWriting(static_cast<const char*>(memory), words * sizeof(Word));
        auto* const chunk = ::new (memory) SortedChunk;
        chunk->size = 0;
        chunk->capacity = static_cast<std::uint16_t>(capacity);
        chunk->level = static_cast<std::uint16_t>(level);
        return chunk;
    }
    /// Gives `chunk` back to where it came from.
    static void Delete(KivBase::Buffer* buffer, SortedChunk* chunk) noexcept {
        const std::size_t words = GetWords(chunk->capacity);
        KivBase::Allocator<Word>(buffer).deallocate(reinterpret_cast<Word*>(chunk), words);
    }

    Key* GetKeys() noexcept { return reinterpret_cast<Key*>(this + 1); }
    const Key* GetKeys() const noexcept { return reinterpret_cast<const Key*>(this + 1); }
    Payload* GetPayloads() noexcept {
        return reinterpret_cast<Payload*>(reinterpret_cast<Word*>(this + 1) + GetWordsOf(capacity * sizeof(Key)));
    }
    const Payload* GetPayloads() const noexcept { return const_cast<SortedChunk*>(this)->GetPayloads(); }

    void Insert(int at, const Key& key, const Payload& payload) noexcept {
        const Key copy = key;
        if (at != size) {
            Shift(at, at + 1);
        }
        GetKeys()[at] = copy;
        if constexpr (kHasPayload) {
            GetPayloads()[at] = payload;
        }
        ++size;
    }
    void Erase(int at) noexcept {
        Shift(at + 1, at);
        --size;
    }
    /// Takes `count` entries of `source` from `from` on, before all of its own or after them; the source keeps them.
    void CopyFront(const SortedChunk& source, int from, int count) noexcept {
        Shift(0, count);
        Copy(0, source, from, count);
    }
    void CopyBack(const SortedChunk& source, int from, int count) noexcept { Copy(size, source, from, count); }
    /// The same with keys alone.
    void CopyBack(const Key* keys, int count) noexcept {
        std::memcpy(GetKeys() + size, keys, static_cast<std::size_t>(count) * sizeof(Key));
        size = static_cast<std::uint16_t>(size + count);
    }

private:
    // Moves the entries from `from` on to `to` on; the size stays.
    void Shift(int from, int to) noexcept {
        const auto count = static_cast<std::size_t>(size - from);
        std::memmove(GetKeys() + to, GetKeys() + from, count * sizeof(Key));
        if constexpr (kHasPayload) {
            std::memmove(GetPayloads() + to, GetPayloads() + from, count * sizeof(Payload));
        }
    }
    void Copy(int to, const SortedChunk& source, int from, int count) noexcept {
        std::memcpy(GetKeys() + to, source.GetKeys() + from, static_cast<std::size_t>(count) * sizeof(Key));
        if constexpr (kHasPayload) {
            std::memcpy(GetPayloads() + to, source.GetPayloads() + from,
                        static_cast<std::size_t>(count) * sizeof(Payload));
        }
        size = static_cast<std::uint16_t>(size + count);
    }
};

}  // namespace KivGenerics
