#pragma once

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include <KivBase/Buffer.h>
#include <KivGenerics/SortedChunks.h>
#include <gtest/gtest.h>

#include "core/SortedChunksInspector.h"

namespace KivGenerics::Testing {

/// The same numbers each time.
inline std::mt19937 MakeRandom(std::uint32_t seed) {
    return std::mt19937(seed);
}

struct Less {
    bool operator()(std::int32_t left, std::int32_t right) const noexcept { return left < right; }
};
/// Wider than a number, ordered by its first part alone.
struct Wide {
    std::int32_t number;
    std::int32_t other[3];
};
struct WideLess {
    bool operator()(const Wide& left, const Wide& right) const noexcept { return left.number < right.number; }
};

using Chunks = SortedChunks<std::int32_t, Less>;
using WideChunks = SortedChunks<Wide, WideLess>;
using Texts = SortedChunks<std::int32_t, Less, const char*>;

template <class Tested>
int Check(const Tested& chunks) {
    return SortedChunksInspector<Tested>::Check(chunks);
}
template <class Tested>
int LevelsOf(const Tested& chunks) {
    return SortedChunksInspector<Tested>::GetLevels(chunks);
}

inline std::vector<std::int32_t> ElementsOf(const Chunks& chunks) {
    return {chunks.begin(), chunks.end()};
}
using Numbers = std::vector<std::int32_t>;

class SortedChunksTest : public ::testing::Test {
protected:
    KivBase::Buffer* NewBuffer() {
        buffers_.emplace_back(KivBase::CreateBuffer(0, 0, 8192, false));
        return buffers_.back().get();
    }
    std::size_t BytesInUse() const { return buffers_.front()->BytesInUse(); }

    std::vector<std::unique_ptr<KivBase::Buffer>> buffers_;
    Chunks chunks_{NewBuffer()};
};

}  // namespace KivGenerics::Testing
