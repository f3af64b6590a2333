// Below the checksums: whatever the items of a file are, it loads or is refused; nothing crashes, and memory and work stay in
// proportion to the file.

#include <KivStorage/LoadTree.h>
#include <gtest/gtest.h>

#include "fuzz/SavedFiles.h"
#include "fuzz/Soak.h"
#include "targets/HostileItems.h"
#include "targets/PeakBuffer.h"
#include "targets/Targets.h"

using StorageTest::Bytes;

namespace {

/// The items of a file of one block, behind the two bytes that tell the target to load them as they are, in one block.
Bytes InputOf(const Bytes& file) {
    Bytes input = {0, 255};
    input.insert(input.end(), file.begin() + 28, file.end() - 8 - 44);
    return input;
}

void Load(const Bytes& input, std::size_t& runs) {
    EXPECT_NO_THROW(KivFuzz::RunItems(input.data(), input.size()));
    ++runs;
}

TEST(ResealedTest, EveryBitOfTheItemsMayFlip) {
    std::size_t runs = 0;
    for (const Bytes& file : MakeSavedFiles(IsSoak() ? 200000 : 4000)) {
        Bytes input = InputOf(file);
        for (std::size_t bit = 16; bit < 8 * input.size(); ++bit) {
            input[bit / 8] = static_cast<std::uint8_t>(input[bit / 8] ^ 1U << bit % 8);
            Load(input, runs);
            input[bit / 8] = static_cast<std::uint8_t>(input[bit / 8] ^ 1U << bit % 8);
        }
    }
    EXPECT_GE(runs, 16000u);
}

TEST(ResealedTest, EveryByteOfTheItemsMayBeAnyOther) {
    std::size_t runs = 0;
    Bytes input = InputOf(MakeFileOf300Bytes());
    for (std::size_t byte = 2; byte < input.size(); ++byte) {
        const std::uint8_t before = input[byte];
        for (unsigned value = 0; value < 256; ++value) {
            input[byte] = static_cast<std::uint8_t>(value);
            Load(input, runs);
        }
        input[byte] = before;
    }
    EXPECT_EQ(runs, (300u - 80) * 256);
}

TEST(ResealedTest, TheItemsMayEndAnywhere) {
    std::size_t runs = 0;
    for (const Bytes& file : MakeSavedFiles(20000)) {
        const Bytes input = InputOf(file);
        for (std::size_t length = 2; length < input.size(); ++length) {
            Load(Bytes(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(length)), runs);
        }
    }
    EXPECT_GE(runs, 15000u);
}

struct Cost {
    std::size_t file = 0;
    std::size_t reserved = 0;
    std::size_t allocations = 0;
};

Cost CostOf(const KivFuzz::HostileFamily& family, std::size_t bytes) {
    const Bytes file = KivFuzz::FrameItems(family.make(bytes));
    const KivFuzz::PeakBuffers buffers;
    static_cast<void>(KivStorage::LoadTreeFromMemory(file.data(), file.size()));
    return {file.size(), buffers.GetReserved(), buffers.GetAllocations()};
}

class HostileFamilyTest : public testing::TestWithParam<KivFuzz::HostileFamily> {};

TEST_P(HostileFamilyTest, HoldsAtMost64BytesForEachByteOfTheFileAnd1MiB) {
    for (const std::size_t bytes : {std::size_t{1000}, std::size_t{60000}, std::size_t{1} << 20}) {
        const Cost cost = CostOf(GetParam(), bytes);
        EXPECT_LE(cost.reserved, 64 * cost.file + (std::size_t{1} << 20)) << cost.file;
    }
}

TEST_P(HostileFamilyTest, TakesMemoryAsOftenAsTheFileIsLong) {
    const Cost small = CostOf(GetParam(), std::size_t{1} << 17);
    const Cost large = CostOf(GetParam(), std::size_t{1} << 20);
    EXPECT_LE(large.allocations * small.file, (small.allocations + 100) * large.file * 11 / 10);
}

INSTANTIATE_TEST_SUITE_P(Families, HostileFamilyTest, testing::ValuesIn(KivFuzz::GetHostileFamilies()),
                         [](const auto& each) { return "Family" + std::to_string(each.index); });

}  // namespace
