#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>
#include <utility>

#include <KivBase/Buffer.h>
#include <KivGenerics/SortedChunk.h>

namespace KivGenerics {

/// Distinct keys in ascending order, each with a payload or without: what sets keep their elements in, and maps the children
/// beyond their slots.
///
/// A few keys are one sorted array that grows. More than a chunk holds are a tree of chunks:
///
///     root     | 0: | 250: | 500: |          keys are lower bounds; the first one bounds nothing and is not read
///                /      |      \             .
///     leaves  |1..249|250..498|500..731|     all at level 0, each with a size and a capacity of its own
///
/// Lives in:   the buffer that it was made with, or the heap when that is null.
/// Threads:    several may read at a time; one that changes, alone.
/// On failure: throws std::bad_alloc, and holds what it held. Removing needs no memory.
/// Cost:       finding, adding and removing O(log size); the next element O(1).
///
/// Order is a strict total order without state. Every change but that of a payload makes iterators invalid.
template <class Key, class Order, class Payload = NoPayload>
class SortedChunks {
    using Leaf = SortedChunk<Key, Payload>;
    using Inner = SortedChunk<Key, ChunkHead*>;

public:
    class Iterator;
    using value_type = Key;
    using const_iterator = Iterator;

    explicit SortedChunks(KivBase::Buffer* buffer) noexcept : buffer_(buffer) {}
    /// A copy is on the heap, so that it outlives the buffer of what it copies.
    SortedChunks(const SortedChunks& other) : SortedChunks(nullptr) { CopyFrom(other); }
    SortedChunks(SortedChunks&& other) noexcept : SortedChunks(other.buffer_) { Swap(other); }
    // An assignment brings the elements to where this keeps its own.
    SortedChunks& operator=(const SortedChunks& other) {
        if (this != &other) {
            CopyFrom(other);
        }
        return *this;
    }
    SortedChunks& operator=(SortedChunks&& other) {
        if (buffer_ == other.buffer_) {
            Swap(other);
        } else {
            CopyFrom(other);
        }
        return *this;
    }
    ~SortedChunks() { Clear(); }

    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    Iterator begin() const noexcept { return Iterator(this, root_ != nullptr ? GetFirstLeaf(root_) : nullptr, 0); }
    Iterator end() const noexcept { return Iterator(this, nullptr, 0); }
    /// The first element after `key`.
    Iterator After(const Key& key) const noexcept;
    /// Calls `use(entry)` for every element in ascending order until it answers false; false then. `use` may change this: the
    /// first element after the present one is the next, whatever there is by then.
    template <class Use>
    bool ForEach(Use use) const;
    /// The element at a position; O(size / elements of a chunk).
    const Key& Item(std::size_t position) const noexcept;

    bool Exists(const Key& key) const noexcept { return FindPlace(key).found; }
    /// Where the payload of `key` stands; null when there is no such key.
    Payload* Find(const Key& key) const noexcept {
        const Place place = FindPlace(key);
        return place.found ? place.leaf->GetPayloads() + place.at : nullptr;
    }
    /// Adds a key; one that is present changes nothing.
    void Add(const Key& key) { AddPlace(key, 0); }
    /// The payload of `key`, which is added with an empty one when it is absent. `expected` is the number of elements that
    /// are about to be added, this one included, if it can be trusted: memory is taken for them.
    Payload& Need(const Key& key, std::size_t expected = 0) {
        const Place place = CanAppend(key)
                                ? AppendToLeaf(*ToLeaf(root_), key, Payload())
                                : AddPlace(key, static_cast<int>(expected < Leaf::kMost ? expected : Leaf::kMost));
        return place.leaf->GetPayloads()[place.at];
    }
    /// True when Append will do for `key`: it comes after all that are there, and a single chunk has room for it.
    bool CanAppend(const Key& key) const noexcept {
        return root_ != nullptr && root_->level == 0 && !root_->IsFull() &&
               Order()(ToLeaf(root_)->GetKeys()[root_->size - 1], key);
    }
    /// True when there is no chunk, or a single one that is full.
    bool IsFull() const noexcept { return root_ == nullptr || (root_->level == 0 && root_->IsFull()); }
    /// Makes room for `key` in the single chunk that is full, where CanAppend will hold then; else nothing, and false.
    bool MakeAppendable(const Key& key) {
        if (root_ == nullptr || root_->level != 0 || !root_->IsFull() || root_->capacity == Leaf::kMost ||
            !IsAfterAll(key)) {
            return false;
        }
        MakeRoom(key, 0);
        return true;
    }
    /// How many keys in ascending order Append will do for, where it does for the first of them.
    std::size_t CountAppendable() const noexcept { return static_cast<std::size_t>(root_->capacity - root_->size); }
    /// Appends to the single chunk, one behind the other; the chunks have these elements when it ends.
    class AppendRun {
    public:
        /// Where CanAppend for the first key, for at most CountAppendable.
        explicit AppendRun(SortedChunks& chunks) noexcept
            : chunks_(chunks),
              leaf_(*ToLeaf(chunks.root_)),
              next_(leaf_.GetKeys() + leaf_.size),
              nextPayload_(leaf_.GetPayloads() + leaf_.size) {}
        AppendRun(const AppendRun&) = delete;
        AppendRun& operator=(const AppendRun&) = delete;
        ~AppendRun() {
            const auto count = static_cast<std::uint32_t>(next_ - leaf_.GetKeys()) - leaf_.size;
            leaf_.size = static_cast<std::uint16_t>(leaf_.size + count);
            chunks_.size_ += count;
            chunks_.changes_ += count;
        }
        void Append(const Key& key, const Payload& payload) noexcept {
            *next_++ = key;
            *nextPayload_++ = payload;
        }

    private:
        SortedChunks& chunks_;
        Leaf& leaf_;
        Key* next_;
        Payload* nextPayload_;
    };

    /// Adds a key with its payload behind all others, where CanAppend. Needs no memory.
    void Append(const Key& key, const Payload& payload) noexcept { AppendToLeaf(*ToLeaf(root_), key, payload); }
    /// False when `key` is absent.
    bool Remove(const Key& key) noexcept;
    void Clear() noexcept;
    /// Becomes a copy of `other`.
    void CopyFrom(const SortedChunks& other);
    /// Both must have the same buffer.
    void Swap(SortedChunks& other) noexcept {
        std::swap(root_, other.root_);
        std::swap(size_, other.size_);
        ++changes_;
        ++other.changes_;
    }

    KivBase::Buffer* GetBuffer() const noexcept { return buffer_; }
    /// Differs after every change that makes iterators invalid.
    std::uint32_t GetChanges() const noexcept { return changes_; }

    class Appender;

private:
    template <class Chunks>
    friend class SortedChunksInspector;

    struct Place {
        Leaf* leaf;
        int at;
        bool found;
    };

    /// A step on the way from the root: a chunk and the number of the child that was taken.
    struct Step {
        Inner* inner;
        int at;
    };

    static Inner* ToInner(ChunkHead* chunk) noexcept { return static_cast<Inner*>(chunk); }
    static Leaf* ToLeaf(ChunkHead* chunk) noexcept { return static_cast<Leaf*>(chunk); }

    /// The number of the child that `key` belongs to.
    static int FindChild(const Inner& inner, const Key& key) noexcept {
        return CountBefore(inner.GetKeys() + 1, inner.size - 1, [&](const Key& bound) { return !Order()(key, bound); });
    }
    static Leaf* GetFirstLeaf(ChunkHead* chunk) noexcept {
        while (chunk->level > 0) {
            chunk = ToInner(chunk)->GetPayloads()[0];
        }
        return ToLeaf(chunk);
    }
    Leaf* GetLastLeaf() const noexcept {
        ChunkHead* chunk = root_;
        while (chunk->level > 0) {
            chunk = ToInner(chunk)->GetPayloads()[chunk->size - 1];
        }
        return ToLeaf(chunk);
    }
    bool IsAfterAll(const Key& key) const noexcept {
        const Leaf* const last = GetLastLeaf();
        return Order()(last->GetKeys()[last->size - 1], key);
    }
    Leaf* GetLeafAfter(const Leaf& leaf) const noexcept;
    static Place FindInLeaf(Leaf* leaf, const Key& key) noexcept {
        const Key* const keys = leaf->GetKeys();
        if (leaf->size > 0 && Order()(keys[leaf->size - 1], key)) {
            return {leaf, leaf->size, false};  // keys mostly come in ascending order
        }
        const int at = CountBefore(keys, leaf->size, [&](const Key& other) { return Order()(other, key); });
        return {leaf, at, at < leaf->size && !Order()(key, keys[at])};
    }
    Place AppendToLeaf(Leaf& leaf, const Key& key, const Payload& payload) noexcept {
        const int at = leaf.size;
        leaf.Insert(at, key, payload);
        ++size_;
        ++changes_;
        return {&leaf, at, false};
    }
    Place FindPlace(const Key& key) const noexcept;
    Place AddPlace(const Key& key, int expected);
    void MakeRoom(const Key& key, int expected);
    template <class Chunk>
    ChunkHead* Widen(Chunk* chunk, Step place, const Key& key, int expected);
    template <class Chunk>
    void Enlarge(Chunk*& chunk, Step place, int expected);
    template <class Chunk>
    Chunk* Split(Chunk* chunk, Step place, int count, int expected);
    template <class Chunk>
    bool Repair(Chunk* chunk, Step place) noexcept;
    template <class Chunk>
    bool Merge(Inner& parent, int at) noexcept;
    void DropNeedlessRoots() noexcept;
    void Delete(ChunkHead* chunk) noexcept {
        if (chunk->level > 0) {
            Inner::Delete(buffer_, ToInner(chunk));
        } else {
            Leaf::Delete(buffer_, ToLeaf(chunk));
        }
    }

    // What has a payload is as a rule followed by more of its kind: its chunk begins with room for a few, and doubles.
    static constexpr int kFirstRoom = std::is_empty_v<Payload> ? 1 : 2;
    static constexpr bool kDoubles = !std::is_empty_v<Payload>;

    // More levels than size_ could count the keys of: a level comes only when the root is full.
    static constexpr int kMostLevels = 16;

    // Invariants, tested by SortedChunksInspector:
    //   1. keys ascend, through all leaves;
    //   2. there are size_ of them;
    //   3. every chunk has a size from 1 to its capacity, which is at most that of its kind;
    //   4. a child's level is one below its parent's;
    //   5. the keys below a child are not below its bound, nor as far as the next child's; the first child has no bound.
    KivBase::Buffer* buffer_;
    ChunkHead* root_ = nullptr;  // null when empty
    std::uint32_t size_ = 0;
    std::uint32_t changes_ = 0;
};

/// Goes through the elements in ascending order. With payloads, Value is that of the present one.
template <class Key, class Order, class Payload>
class SortedChunks<Key, Order, Payload>::Iterator {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Key;
    using difference_type = std::ptrdiff_t;
    using pointer = const Key*;
    using reference = const Key&;

    Iterator() noexcept = default;

    const Key& operator*() const noexcept { return leaf_->GetKeys()[at_]; }
    const Key* operator->() const noexcept { return &**this; }
    Payload& Value() const noexcept { return leaf_->GetPayloads()[at_]; }
    Iterator& operator++() noexcept {
        if (++at_ == leaf_->size) {
            SkipRun();
        }
        return *this;
    }
    Iterator operator++(int) noexcept {
        Iterator old = *this;
        ++*this;
        return old;
    }

    // From here on so many keys lie side by side, and those after them where SkipRun leads to.
    const Key* GetRun() const noexcept { return leaf_->GetKeys() + at_; }
    Payload* GetRunValues() const noexcept { return leaf_->GetPayloads() + at_; }
    int GetRunLength() const noexcept { return leaf_ != nullptr ? leaf_->size - at_ : 0; }
    void SkipRun() noexcept {
        leaf_ = chunks_->GetLeafAfter(*leaf_);
        at_ = 0;
    }
    /// Goes on by a number of elements, at most the length of the run.
    void Skip(int count) noexcept {
        at_ += count;
        if (at_ == leaf_->size) {
            SkipRun();
        }
    }

    friend bool operator==(const Iterator& left, const Iterator& right) noexcept {
        return left.leaf_ == right.leaf_ && left.at_ == right.at_;
    }
    friend bool operator!=(const Iterator& left, const Iterator& right) noexcept { return !(left == right); }

private:
    friend class SortedChunks;

    Iterator(const SortedChunks* chunks, Leaf* leaf, int at) noexcept : chunks_(chunks), leaf_(leaf), at_(at) {
        if (leaf_ != nullptr && at_ == leaf_->size) {
            SkipRun();
        }
    }

    const SortedChunks* chunks_ = nullptr;
    Leaf* leaf_ = nullptr;  // null at the end
    int at_ = 0;
};

template <class Key, class Order, class Payload>
auto SortedChunks<Key, Order, Payload>::FindPlace(const Key& key) const noexcept -> Place {
    ChunkHead* chunk = root_;
    if (chunk == nullptr) {
        return {nullptr, 0, false};
    }
    while (chunk->level > 0) {
        chunk = ToInner(chunk)->GetPayloads()[FindChild(*ToInner(chunk), key)];
        chunk->Fetch();
    }
    return FindInLeaf(ToLeaf(chunk), key);
}

template <class Key, class Order, class Payload>
auto SortedChunks<Key, Order, Payload>::After(const Key& key) const noexcept -> Iterator {
    const Place place = FindPlace(key);
    return Iterator(this, place.leaf, place.at + (place.found ? 1 : 0));
}

template <class Key, class Order, class Payload>
template <class Use>
bool SortedChunks<Key, Order, Payload>::ForEach(Use use) const {
    for (Iterator entry = begin(); entry != end();) {
        const std::uint32_t changes = changes_;
        const Key key = *entry;
        if (!use(entry)) {
            return false;
        }
        entry = changes == changes_ ? ++entry : After(key);
    }
    return true;
}

template <class Key, class Order, class Payload>
const Key& SortedChunks<Key, Order, Payload>::Item(std::size_t position) const noexcept {
    Iterator element = begin();
    for (; position >= static_cast<std::size_t>(element.GetRunLength()); element.SkipRun()) {
        position -= static_cast<std::size_t>(element.GetRunLength());
    }
    return element.GetRun()[position];
}

template <class Key, class Order, class Payload>
auto SortedChunks<Key, Order, Payload>::GetLeafAfter(const Leaf& leaf) const noexcept -> Leaf* {
    const Key& last = leaf.GetKeys()[leaf.size - 1];
    ChunkHead* next = nullptr;
    for (ChunkHead* chunk = root_; chunk->level > 0;) {
        Inner& inner = *ToInner(chunk);
        const int at = FindChild(inner, last);
        next = at + 1 < inner.size ? inner.GetPayloads()[at + 1] : next;
        chunk = inner.GetPayloads()[at];
    }
    return next != nullptr ? GetFirstLeaf(next) : nullptr;
}

}  // namespace KivGenerics

#include <KivGenerics/SortedChunksChange.h>
