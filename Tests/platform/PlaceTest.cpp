#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>

#include <KivBase/Buffer.h>
#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using KivBase::Buffer;

struct alignas(64) Wide {
    explicit Wide(int number) : value(number) {}
    int value;
};

struct Refuser {
    Refuser() { throw std::runtime_error("no"); }
    char bytes[40];
};

struct alignas(64) WideRefuser {
    WideRefuser() { throw std::runtime_error("no"); }
    char bytes[64];
};

class NullBuffer final : public Buffer {
public:
    void* Allocate(std::size_t, std::size_t) override { return nullptr; }
    std::size_t BytesReserved() const override { return 0; }
    std::size_t BytesInUse() const override { return 0; }
    void Free(void*, std::size_t, std::size_t) noexcept override { ++freed; }
    int freed = 0;
};

TEST(PlaceTest, NewPutsAnObjectIntoABuffer) {
    const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(1, 1, 1024, false));
    auto* const number = new (KivBase::In<std::int64_t>(*buffer)) std::int64_t(77);
    EXPECT_EQ(77, *number);
    EXPECT_EQ(8U, buffer->BytesInUse());
}

TEST(PlaceTest, NewAlignsAsTheTypeAsks) {
    const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(1, 1, 1024, false));
    buffer->Allocate(8, 8);
    const Wide* const wide = new (KivBase::In<Wide>(*buffer)) Wide(5);
    EXPECT_EQ(0U, reinterpret_cast<std::uintptr_t>(wide) % 64);
    EXPECT_EQ(5, wide->value);
    EXPECT_EQ(72U, buffer->BytesInUse());
}

TEST(PlaceTest, AThrowingConstructorGivesTheMemoryBack) {
    const std::unique_ptr<Buffer> buffer(KivBase::CreateBuffer(1, 1, 1024, false));
    EXPECT_THROW(new (KivBase::In<Refuser>(*buffer)) Refuser, std::runtime_error);
    EXPECT_EQ(0U, buffer->BytesInUse());
    EXPECT_THROW(new (KivBase::In<WideRefuser>(*buffer)) WideRefuser, std::runtime_error);
    EXPECT_EQ(0U, buffer->BytesInUse());
    EXPECT_EQ(1024U, buffer->BytesReserved());
}

TEST(PlaceTest, ABufferThatAnswersNullBecomesBadAlloc) {
    NullBuffer buffer;
    EXPECT_THROW(new (KivBase::In<Wide>(buffer)) Wide(1), std::bad_alloc);
    EXPECT_EQ(0, buffer.freed);
}

}  // namespace
}  // namespace KivPlatform::Testing
