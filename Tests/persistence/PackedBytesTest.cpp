// Bytes taken out of words.

#include "persistence/PackedBytes.h"

#include <gtest/gtest.h>

namespace KivGenerics::Testing {
namespace {

TEST(PackedBytesTest, TakesTheMostSignificantByteOfAWordFirst) {
    PackedBytes bytes;
    bytes.Add(0x01020304);
    EXPECT_EQ(bytes.Peek(), 0x01U);
    EXPECT_EQ(bytes.Take(1), 0x01U);
    EXPECT_EQ(bytes.Take(3), 0x020304U);
    EXPECT_EQ(bytes.GetCount(), 0);
}

TEST(PackedBytesTest, TakesANumberThatBeginsInOneWordAndEndsInTheNext) {
    PackedBytes bytes;
    bytes.Add(0x01020304);
    bytes.Take(3);
    bytes.Add(static_cast<std::int32_t>(0x80818283));
    EXPECT_EQ(bytes.Take(4), 0x04808182U);
    EXPECT_EQ(bytes.Peek(), 0x83U);
    EXPECT_EQ(bytes.GetCount(), 1);
}

TEST(PackedBytesTest, HoldsEightBytes) {
    PackedBytes bytes;
    bytes.Add(static_cast<std::int32_t>(0xF1F2F3F4));
    bytes.Add(static_cast<std::int32_t>(0xF5F6F7F8));
    EXPECT_EQ(bytes.GetCount(), 8);
    EXPECT_EQ(bytes.Take(4), 0xF1F2F3F4U);
    EXPECT_EQ(bytes.Take(4), 0xF5F6F7F8U);
}

TEST(PackedBytesTest, ForgetsWhatWaitsWhenCleared) {
    PackedBytes bytes;
    bytes.Add(-1);
    bytes.Take(1);
    bytes.Clear();
    EXPECT_EQ(bytes.GetCount(), 0);
    bytes.Add(0x0A0B0C0D);
    EXPECT_EQ(bytes.Take(4), 0x0A0B0C0DU);
}

}  // namespace
}  // namespace KivGenerics::Testing
