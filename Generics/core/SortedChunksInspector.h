#pragma once

#include <KivGenerics/SortedChunks.h>

namespace KivGenerics {

/// Tests the invariants of SortedChunks, for tests: the number of the first broken one, else 0.
template <class Chunks>
class SortedChunksInspector;

template <class Key, class Order, class Payload>
class SortedChunksInspector<SortedChunks<Key, Order, Payload>> {
    using Chunks = SortedChunks<Key, Order, Payload>;
    using Leaf = typename Chunks::Leaf;
    using Inner = typename Chunks::Inner;

public:
    static int Check(const Chunks& chunks) {
        SortedChunksInspector inspector;
        if (chunks.root_ != nullptr) {
            if (const int broken = inspector.CheckChunk(chunks.root_, nullptr, nullptr)) {
                return broken;
            }
        }
        return inspector.count_ == chunks.size_ ? 0 : kSize;
    }
    static int GetLevels(const Chunks& chunks) { return chunks.root_ != nullptr ? chunks.root_->level + 1 : 0; }

private:
    static constexpr int kOrder = 1;
    static constexpr int kSize = 2;
    static constexpr int kRoom = 3;
    static constexpr int kLevel = 4;
    static constexpr int kBounds = 5;

    // The keys below `chunk` must not be below `least`, and be below `limit`; null bounds nothing. As deep as the levels.
    int CheckChunk(const ChunkHead* chunk, const Key* least, const Key* limit) {
        const int most = chunk->level > 0 ? Inner::kMost : Leaf::kMost;
        if (chunk->size == 0 || chunk->size > chunk->capacity || chunk->capacity > most) {
            return kRoom;
        }
        if (chunk->level == 0) {
            return CheckLeaf(*static_cast<const Leaf*>(chunk), least, limit);
        }
        const auto& inner = *static_cast<const Inner*>(chunk);
        for (int i = 0; i < inner.size; ++i) {
            const ChunkHead* const child = inner.GetPayloads()[i];
            if (child->level + 1 != inner.level) {
                return kLevel;
            }
            const Key* const from = i > 0 ? inner.GetKeys() + i : least;
            const Key* const to = i + 1 < inner.size ? inner.GetKeys() + i + 1 : limit;
            if (const int broken = CheckChunk(child, from, to)) {
                return broken;
            }
        }
        return 0;
    }
    int CheckLeaf(const Leaf& leaf, const Key* least, const Key* limit) {
        for (int i = 0; i < leaf.size; ++i) {
            const Key* const key = leaf.GetKeys() + i;
            if (last_ != nullptr && !Order()(*last_, *key)) {
                return kOrder;
            }
            if ((least != nullptr && Order()(*key, *least)) || (limit != nullptr && !Order()(*key, *limit))) {
                return kBounds;
            }
            last_ = key;
        }
        count_ += leaf.size;
        return 0;
    }

    const Key* last_ = nullptr;
    std::size_t count_ = 0;
};

}  // namespace KivGenerics
