#include <KivBase/SpareMemory.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <set>

#include <KivBase/Buffer.h>
#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using KivBase::Buffer;
using KivBase::SetSpareMemory;

constexpr std::size_t kRegion = std::size_t{2} << 20;
constexpr std::size_t kDefault = std::size_t{64} << 20;

/// Where the regions lie that a buffer of so many blocks of 64 KiB has taken, by the number of their 2 MiB.
std::set<std::uintptr_t> FillBuffer(int blocks) {
    const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(1, 1, 65536, false));
    std::set<std::uintptr_t> regions;
    for (int i = 0; i < blocks * 4; ++i) {
        void* const memory = buffer->Allocate(16000, 8);
        std::memset(memory, i, 16000);
        regions.insert(reinterpret_cast<std::uintptr_t>(memory) / kRegion);
    }
    EXPECT_EQ(static_cast<std::size_t>(blocks) * 65536, buffer->BytesReserved());
    return regions;
}

TEST(SpareMemoryTest, IsSetAndAnswersWhatStoodBefore) {
    EXPECT_EQ(kDefault, SetSpareMemory(5));
    EXPECT_EQ(5U, SetSpareMemory(0));
    EXPECT_EQ(0U, SetSpareMemory(kDefault));
}

TEST(SpareMemoryTest, ALargeBufferGetsTheMemoryOfTheOneThatWent) {
    const std::set<std::uintptr_t> first = FillBuffer(160);
    const std::set<std::uintptr_t> second = FillBuffer(160);
    std::size_t shared = 0;
    for (const std::uintptr_t region : second) {
        shared += first.count(region);
    }
    // 160 blocks are 10 MiB, of which all but the first is in regions.
    EXPECT_LE(4U, shared);
}

TEST(SpareMemoryTest, WithoutSpareMemoryEveryBufferIsServedAllTheSame) {
    SetSpareMemory(0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_LE(5U, FillBuffer(160).size());
    }
    SetSpareMemory(kDefault);
}

TEST(SpareMemoryTest, BlocksLargerThanARegionAreServed) {
    const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(1, 1, 8 << 20, false));
    for (int i = 0; i < 3 * 4; ++i) {
        std::memset(buffer->Allocate(2 << 20, 8), i, 2 << 20);
    }
    EXPECT_EQ(std::size_t{24} << 20, buffer->BytesReserved());
}

}  // namespace
}  // namespace KivPlatform::Testing
