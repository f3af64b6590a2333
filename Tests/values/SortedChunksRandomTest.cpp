// Random changes, done to sorted chunks and to a set or a map of the standard library.

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <string>

#include "values/SortedChunksFixture.h"

namespace KivGenerics::Testing {
namespace {

std::int32_t GetNumber(std::int32_t number) {
    return number;
}
std::int32_t GetNumber(const Wide& wide) {
    return wide.number;
}

/// What a random sequence of operations does to chunks and to a set of the standard library.
template <class Tested, class MakeKey>
void CompareWithModel(Tested& chunks, unsigned seed, MakeKey makeKey) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::set<std::int32_t> model;
    const auto range = 1 + static_cast<std::int32_t>(random() % 3000);
    unsigned removals = 1;
    for (int i = 0; i < 20000; ++i) {
        removals = i % 3000 == 0 ? 1 + static_cast<unsigned>(random() % 9) : removals;  // of ten changes
        const std::int32_t number = static_cast<std::int32_t>(random() % static_cast<unsigned>(range)) - range / 2;
        if (random() % 10 < removals) {
            ASSERT_EQ(model.erase(number) != 0, chunks.Remove(makeKey(number)));
        } else {
            chunks.Add(makeKey(number));
            model.insert(number);
        }
        ASSERT_EQ(model.size(), chunks.size());
        const std::int32_t other = static_cast<std::int32_t>(random() % static_cast<unsigned>(range)) - range / 2;
        ASSERT_EQ(model.count(other) != 0, chunks.Exists(makeKey(other)));
        const auto after = model.upper_bound(other);
        ASSERT_EQ(after == model.end(), chunks.After(makeKey(other)) == chunks.end());
        if (i % 500 == 0) {
            ASSERT_EQ(0, Check(chunks)) << i;
            ASSERT_TRUE(std::equal(chunks.begin(), chunks.end(), model.begin(), model.end(),
                                   [](const auto& mine, std::int32_t theirs) { return GetNumber(mine) == theirs; }));
        }
    }
}

TEST_F(SortedChunksTest, RandomChangesLeaveWhatTheyLeaveInASetOfTheStandardLibrary) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        Chunks chunks(NewBuffer());
        CompareWithModel(chunks, seed, [](std::int32_t number) { return number; });
        chunks.Clear();
        EXPECT_EQ(0U, buffers_.back()->BytesInUse()) << "chunks that were joined have given back theirs";
        WideChunks wide(NewBuffer());
        CompareWithModel(wide, seed, [](std::int32_t number) { return Wide{number, {number, 0, 1}}; });
        wide.Clear();
        EXPECT_EQ(0U, buffers_.back()->BytesInUse());
    }
}

TEST_F(SortedChunksTest, PayloadsFollowRandomChangesLikeThoseOfAMapOfTheStandardLibrary) {
    using Squares = SortedChunks<std::int32_t, Less, std::int64_t>;
    std::mt19937 random = MakeRandom(3);
    Squares squares(NewBuffer());
    std::map<std::int32_t, std::int64_t> model;
    for (int i = 0; i < 60000; ++i) {
        const auto key = static_cast<std::int32_t>(random() % 5000);
        if (random() % 3 == 0) {
            squares.Remove(key);
            model.erase(key);
        } else {
            squares.Need(key) = i;
            model[key] = i;
        }
    }
    ASSERT_EQ(model.size(), squares.size());
    EXPECT_EQ(0, Check(squares));
    auto entry = squares.begin();
    for (const auto& [key, value] : model) {
        ASSERT_EQ(key, *entry);
        ASSERT_EQ(value, entry.Value());
        ASSERT_EQ(value, *squares.Find(key));
        ++entry;
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
