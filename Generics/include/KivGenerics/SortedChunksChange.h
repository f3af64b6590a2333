#pragma once

// How SortedChunks changes: adding splits chunks, removing joins them again.

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include <KivGenerics/SortedChunks.h>

namespace KivGenerics {

/// Adds elements that mostly come in ascending order. They are collected until the order breaks or a chunk is full, so that
/// memory is taken for what is there and moved into place at once.
///
/// Nothing else may change the chunks meanwhile. What has been added is in them after Flush.
template <class Key, class Order, class Payload>
class SortedChunks<Key, Order, Payload>::Appender {
    static_assert(std::is_empty_v<Payload>);

public:
    /// `expected` is the number of elements that will come, if it can be trusted: chunks are made large enough for it.
    explicit Appender(SortedChunks& chunks, std::size_t expected = 0) noexcept : chunks_(chunks), expected_(expected) {}

    void Add(const Key& key) {
        if (count_ == Leaf::kMost || (count_ > 0 && !Order()(keys_[count_ - 1], key))) {
            Flush();
        }
        keys_[count_++] = key;
    }
    void Flush() {
        const int count = std::exchange(count_, 0);
        if (count == 0) {
            return;
        }
        if (chunks_.empty() || chunks_.IsAfterAll(keys_[0])) {
            AddRun(keys_, count);
            return;
        }
        for (int i = 0; i < count; ++i) {
            chunks_.Add(keys_[i]);
        }
    }
    /// Adds keys in ascending order, the first of them after all that are there.
    void AddRun(const Key* keys, int count) {
        while (count > 0) {
            const std::size_t left = expected_ - GetLesser(expected_, chunks_.size());
            const std::size_t wanted = GetGreater(left, static_cast<std::size_t>(count));
            chunks_.AddPlace(*keys, static_cast<int>(GetLesser(wanted, std::size_t{Leaf::kMost})));
            Leaf* const last = chunks_.GetLastLeaf();
            const int fits = GetLesser(count - 1, last->capacity - last->size);
            last->CopyBack(keys + 1, fits);
            chunks_.size_ += static_cast<std::uint32_t>(fits);
            keys += fits + 1;
            count -= fits + 1;
        }
    }

private:
    SortedChunks& chunks_;
    std::size_t expected_;
    int count_ = 0;
    Key keys_[Leaf::kMost];  // of which count_ wait
};

template <class Key, class Order, class Payload>
auto SortedChunks<Key, Order, Payload>::AddPlace(const Key& key, int expected) -> Place {
    Place place = FindPlace(key);
    if (place.found) {
        return place;
    }
    if (place.leaf == nullptr || place.leaf->IsFull()) {
        const Key copy = key;  // it may lie in a chunk that is about to be replaced
        MakeRoom(copy, expected);
        place = FindPlace(copy);
        place.leaf->Insert(place.at, copy, Payload());
    } else {
        place.leaf->Insert(place.at, key, Payload());
    }
    ++size_;
    ++changes_;
    return place;
}

// From the root down, so that a chunk that is split always finds room in its parent. Each step leaves the tree whole, with
// the same elements: a later one may fail.
template <class Key, class Order, class Payload>
void SortedChunks<Key, Order, Payload>::MakeRoom(const Key& key, int expected) {
    if (root_ == nullptr) {
        root_ = Leaf::New(buffer_, Leaf::GetCapacityFor(GetGreater(expected, kFirstRoom)), 0);
        return;
    }
    Step place{nullptr, 0};
    for (ChunkHead* chunk = root_;; chunk = place.inner->GetPayloads()[place.at]) {
        if (chunk->IsFull()) {
            chunk =
                chunk->level > 0 ? Widen(ToInner(chunk), place, key, 0) : Widen(ToLeaf(chunk), place, key, expected);
        }
        if (chunk->level == 0) {
            return;
        }
        place = {ToInner(chunk), FindChild(*ToInner(chunk), key)};
    }
}

// Makes a full chunk larger, or splits it, and answers the one that `key` belongs to now. Keys that come in ascending order
// leave full leaves behind; no chunk of chunks is left with less than a quarter, which bounds the levels.
template <class Key, class Order, class Payload>
template <class Chunk>
ChunkHead* SortedChunks<Key, Order, Payload>::Widen(Chunk* chunk, Step place, const Key& key, int expected) {
    if (chunk->capacity < Chunk::kMost) {
        Enlarge(chunk, place, expected);
        return chunk;
    }
    const bool ascending = Order()(chunk->GetKeys()[chunk->size - 1], key);
    const int moved = !ascending ? chunk->size - chunk->size / 2 : (chunk->level == 0 ? 1 : chunk->size / 4);
    Chunk* const right = Split(chunk, place, moved, expected);
    return Order()(key, right->GetKeys()[0]) ? chunk : right;
}

template <class Key, class Order, class Payload>
template <class Chunk>
void SortedChunks<Key, Order, Payload>::Enlarge(Chunk*& chunk, Step place, int expected) {
    Chunk* const old = chunk;
    const int more = GetGreater(expected, kDoubles ? old->size : 1);
    chunk = Chunk::New(buffer_, Chunk::GetCapacityFor(old->size + more), old->level);
    chunk->CopyBack(*old, 0, old->size);
    (place.inner != nullptr ? place.inner->GetPayloads()[place.at] : root_) = chunk;
    Chunk::Delete(buffer_, old);
}

// Moves the last `count` entries into a new chunk behind this one.
template <class Key, class Order, class Payload>
template <class Chunk>
Chunk* SortedChunks<Key, Order, Payload>::Split(Chunk* chunk, Step place, int count, int expected) {
    if (place.inner == nullptr) {
        Inner* const root = Inner::New(buffer_, Inner::GetCapacityFor(2), chunk->level + 1);
        root->Insert(0, chunk->GetKeys()[0], chunk);
        root_ = root;
        place.inner = root;
    }
    const int from = chunk->size - count;
    const int wanted = GetGreater(count + GetGreater(expected, 1), Chunk::kMost / 4);
    Chunk* const right = Chunk::New(buffer_, Chunk::GetCapacityFor(wanted), chunk->level);
    right->CopyBack(*chunk, from, count);
    chunk->size = static_cast<std::uint16_t>(from);
    place.inner->Insert(place.at + 1, right->GetKeys()[0], right);
    return right;
}

template <class Key, class Order, class Payload>
bool SortedChunks<Key, Order, Payload>::Remove(const Key& key) noexcept {
    if (root_ == nullptr) {
        return false;
    }
    Step path[kMostLevels] = {{nullptr, 0}};
    Step* step = path;
    ChunkHead* chunk = root_;
    while (chunk->level > 0) {
        assert(step + 1 < path + kMostLevels);
        *++step = {ToInner(chunk), FindChild(*ToInner(chunk), key)};
        chunk = step->inner->GetPayloads()[step->at];
        chunk->Fetch();
    }
    Leaf* const leaf = ToLeaf(chunk);
    const Place place = FindInLeaf(leaf, key);
    if (!place.found) {
        return false;
    }
    leaf->Erase(place.at);
    --size_;
    ++changes_;
    for (bool changed = Repair(leaf, *step); changed && step->inner != nullptr;) {
        Inner* const inner = step->inner;
        changed = Repair(inner, *--step);
    }
    DropNeedlessRoots();
    return true;
}

// Takes an empty chunk away, and joins one of which little is used with a neighbour that has room or fits into it: no memory
// is needed, and where neither fits, half of both is used. True when the parent lost a child.
template <class Key, class Order, class Payload>
template <class Chunk>
bool SortedChunks<Key, Order, Payload>::Repair(Chunk* chunk, Step place) noexcept {
    if (chunk->size == 0) {
        Chunk::Delete(buffer_, chunk);
        if (place.inner == nullptr) {
            root_ = nullptr;
            return false;
        }
        place.inner->Erase(place.at);
        return true;
    }
    if (place.inner == nullptr || chunk->size > chunk->capacity / 4) {
        return false;
    }
    return Merge<Chunk>(*place.inner, place.at) || Merge<Chunk>(*place.inner, place.at - 1);
}

// Joins the child `at` with the next one, if both are there and one has room for the other.
template <class Key, class Order, class Payload>
template <class Chunk>
bool SortedChunks<Key, Order, Payload>::Merge(Inner& parent, int at) noexcept {
    if (at < 0 || at + 1 >= parent.size) {
        return false;
    }
    auto* const left = static_cast<Chunk*>(parent.GetPayloads()[at]);
    auto* const right = static_cast<Chunk*>(parent.GetPayloads()[at + 1]);
    const int size = left->size + right->size;
    if (size > GetGreater(left->capacity, right->capacity)) {
        return false;
    }
    if (right->level > 0) {
        right->GetKeys()[0] = parent.GetKeys()[at + 1];  // what bounds its first child
    }
    if (size <= left->capacity) {
        left->CopyBack(*right, 0, right->size);
        Chunk::Delete(buffer_, right);
    } else {
        right->CopyFront(*left, 0, left->size);
        Chunk::Delete(buffer_, left);
        parent.GetPayloads()[at] = right;
    }
    parent.Erase(at + 1);
    return true;
}

template <class Key, class Order, class Payload>
void SortedChunks<Key, Order, Payload>::DropNeedlessRoots() noexcept {
    while (root_ != nullptr && root_->level > 0 && root_->size == 1) {
        Inner* const root = ToInner(root_);
        root_ = root->GetPayloads()[0];
        Inner::Delete(buffer_, root);
    }
}

// Takes the last chunk of the last chunk away, until nothing is left.
template <class Key, class Order, class Payload>
void SortedChunks<Key, Order, Payload>::Clear() noexcept {
    while (root_ != nullptr) {
        ChunkHead* parent = nullptr;
        ChunkHead* chunk = root_;
        while (chunk->level > 0 && chunk->size > 0) {
            parent = chunk;
            chunk = ToInner(chunk)->GetPayloads()[chunk->size - 1];
        }
        Delete(chunk);
        if (parent != nullptr) {
            --parent->size;
        } else {
            root_ = nullptr;
        }
    }
    size_ = 0;
    ++changes_;
}

template <class Key, class Order, class Payload>
void SortedChunks<Key, Order, Payload>::CopyFrom(const SortedChunks& other) {
    if (this == &other) {
        return;
    }
    SortedChunks copy(buffer_);
    Appender appender(copy, other.size());
    for (Iterator run = other.begin(); run != other.end(); run.SkipRun()) {
        appender.AddRun(run.GetRun(), run.GetRunLength());
    }
    Swap(copy);
}

}  // namespace KivGenerics
