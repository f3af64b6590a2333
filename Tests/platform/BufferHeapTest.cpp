#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include <KivBase/Buffer.h>
#include <gtest/gtest.h>

#include "platform/CountedHeap.h"

namespace KivPlatform::Testing {
namespace {

using KivBase::Buffer;

TEST(BufferHeapTest, EverythingGoesBackWithTheBuffer) {
    const std::ptrdiff_t before = CountedHeap::GetLive();
    {
        const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(1, 1, 1024, false));
        EXPECT_EQ(before + 1, CountedHeap::GetLive());
        for (int i = 0; i < 100; ++i) {
            std::memset(buffer->Allocate(500, 8), 1, 500);
            std::memset(buffer->Allocate(5000, 8), 2, 5000);
            std::memset(buffer->Allocate(16, 256), 3, 16);
        }
        // The buffer, 50 blocks in runs of 1, 1, 2, 4, 8, 16 and 32, and 200 that stand apart.
        EXPECT_EQ(before + 1 + 7 + 200, CountedHeap::GetLive());
    }
    EXPECT_EQ(before, CountedHeap::GetLive());
}

TEST(BufferHeapTest, FreedLargeMemoryGoesBackAtOnce) {
    const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(1, 1, 1024, false));
    const std::ptrdiff_t before = CountedHeap::GetLive();
    void* const large = buffer->Allocate(100000, 8);
    EXPECT_EQ(before + 1, CountedHeap::GetLive());
    buffer->Free(large, 100000, 8);
    EXPECT_EQ(before, CountedHeap::GetLive());
}

struct Request {
    std::size_t size;
    std::size_t alignment;
};

TEST(BufferHeapTest, WhenTheSystemRefusesNothingHasChanged) {
    for (const Request& request : {Request{512, 8}, Request{100000, 8}, Request{16, 64}}) {
        const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(1, 1, 1024, false));
        auto* const kept = static_cast<char*>(buffer->Allocate(512, 8));
        buffer->Allocate(8, 8);
        std::memset(kept, 0x77, 512);
        const std::size_t reserved = buffer->BytesReserved();
        const std::ptrdiff_t live = CountedHeap::GetLive();
        CountedHeap::FailAfter(0);
        EXPECT_THROW(buffer->Allocate(request.size, request.alignment), std::bad_alloc) << request.size;
        EXPECT_EQ(reserved, buffer->BytesReserved()) << request.size;
        EXPECT_EQ(520U, buffer->BytesInUse()) << request.size;
        EXPECT_EQ(live, CountedHeap::GetLive()) << request.size;
        // The rest of the first block is still to be had, behind what was there.
        EXPECT_EQ(kept + 520, buffer->Allocate(504, 8)) << request.size;
        EXPECT_NE(nullptr, buffer->Allocate(request.size, request.alignment)) << request.size;
        EXPECT_EQ(0x77, kept[511]) << request.size;
    }
}

TEST(BufferHeapTest, ABufferThatCannotBeMadeThrows) {
    const std::ptrdiff_t live = CountedHeap::GetLive();
    CountedHeap::FailAfter(0);
    EXPECT_THROW(KivBase::CreateBuffer(1, 1, 1024, false), std::bad_alloc);
    EXPECT_EQ(live, CountedHeap::GetLive());
}

}  // namespace
}  // namespace KivPlatform::Testing
