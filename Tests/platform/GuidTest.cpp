#include <KivBase/Guid.h>

#include <cstring>

#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

// Ascending.
constexpr GUID kAscending[] = {
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 1, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 255, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 0, 1, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 1, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 1}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 255, 255, 255, 127}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 128}},
    {0x00000000, 0x0000, 0x0000, {1, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {255, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 1, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 1, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 1, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 128, 0, 0, 0, 0}},
    {0x00000000, 0x0001, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0100, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0xFFFF, 0x0000, {9, 9, 9, 9, 9, 9, 9, 9}},
    {0x00000000, 0x0000, 0x0001, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x8000, 0x0001, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x8000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000001, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000001, 0xFFFF, 0xFFFF, {255, 255, 255, 255, 255, 255, 255, 255}},
    {0x00000002, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x7FFFFFFF, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x80000000, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0xFFFFFFFF, 0xFFFF, 0xFFFF, {255, 255, 255, 255, 255, 255, 255, 255}},
};

TEST(GuidTest, OrdersEveryPair) {
    int i = 0;
    for (const GUID& left : kAscending) {
        int j = 0;
        for (const GUID& right : kAscending) {
            EXPECT_EQ(i < j ? -1 : (i > j ? 1 : 0), KivBase::CompareGUID(left, right)) << i << " and " << j;
            ++j;
        }
        ++i;
    }
}

TEST(GuidTest, EachOfTheSixteenBytesCounts) {
    const GUID zero{};
    for (std::size_t i = 0; i < 16; ++i) {
        GUID other{};
        unsigned char bytes[16] = {};
        bytes[i] = 0x80;
        std::memcpy(&other, bytes, 16);
        EXPECT_EQ(-1, KivBase::CompareGUID(zero, other)) << i;
        EXPECT_EQ(1, KivBase::CompareGUID(other, zero)) << i;
    }
}

TEST(GuidTest, HoldsSixteenBytesWithoutGaps) {
    EXPECT_EQ(16U, sizeof(GUID));
    EXPECT_EQ(4U, offsetof(GUID, Data2));
    EXPECT_EQ(6U, offsetof(GUID, Data3));
    EXPECT_EQ(8U, offsetof(GUID, Data4));
}

}  // namespace
}  // namespace KivPlatform::Testing
