#include <KivCOMShared/Variant.h>

#include <cstring>

#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

TEST(VariantTest, IsATypeThreeWordsAndSixteenBytes) {
    EXPECT_EQ(24U, sizeof(VARIANT));
    EXPECT_EQ(0U, offsetof(VARIANT, vt));
    EXPECT_EQ(8U, offsetof(VARIANT, llVal));
    EXPECT_EQ(8U, offsetof(VARIANT, bytes));
}

TEST(VariantTest, InitMakesItEmptyWhateverItHeld) {
    VARIANT variant;
    std::memset(&variant, 0xEE, sizeof variant);
    VariantInit(&variant);
    EXPECT_EQ(0, variant.vt);
    EXPECT_EQ(0, variant.wReserved1);
    EXPECT_EQ(0, variant.wReserved2);
    EXPECT_EQ(0, variant.wReserved3);
    EXPECT_EQ(0, variant.llVal);
}

}  // namespace
}  // namespace KivPlatform::Testing
