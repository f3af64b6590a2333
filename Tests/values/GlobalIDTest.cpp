#include <cstring>

#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

class GlobalIDTest : public ::testing::Test {
protected:
    int Compare(const GUID& left, const GUID& right) {
        left_->Set(left);
        right_->Set(right);
        return left_->Compare(right_, TemporalityTemporary, false);
    }

    ValueTree tree_;
    GlobalID* left_ = tree_.Add<GlobalID>(0);
    GlobalID* right_ = tree_.Add<GlobalID>(1);
};

TEST_F(GlobalIDTest, IsNullWhenNewAndAfterClear) {
    EXPECT_TRUE(left_->IsNull());
    constexpr unsigned char kZeros[16] = {};
    EXPECT_EQ(0, std::memcmp(&left_->Get(), kZeros, 16));
    left_->Set(Guid(1, 2, 3, 4));
    EXPECT_FALSE(left_->IsNull());
    left_->Clear();
    EXPECT_TRUE(left_->IsNull());
    EXPECT_EQ(0, std::memcmp(&left_->Get(), kZeros, 16));
}

TEST_F(GlobalIDTest, IsNotNullWhenAnyOneByteIsSet) {
    for (std::size_t i = 0; i < 16; ++i) {
        unsigned char bytes[16] = {};
        bytes[i] = 0x80;
        GUID id;
        std::memcpy(&id, bytes, 16);
        left_->Set(id);
        EXPECT_FALSE(left_->IsNull()) << i;
    }
}

TEST_F(GlobalIDTest, GetRefersToTheStoredBytes) {
    const GUID& stored = left_->Get();
    left_->Set(Guid(0x01020304, 0x05060708, 0x090A0B0C, 0x0D0E0F10));
    EXPECT_EQ("01020304-0708-0506-0c-0b-0a-09-10-0f-0e-0d", TextOfValue(stored));
    EXPECT_EQ(&stored, &left_->Get());
}

TEST_F(GlobalIDTest, SettingItsOwnValueKeepsIt) {
    left_->Set(Guid(1, 2, 3, 4));
    left_->Set(left_->Get());
    EXPECT_EQ("00000001-0002-0000-03-00-00-00-04-00-00-00", Show(*left_));
}

TEST_F(GlobalIDTest, ComparesWordByWord) {
    // Data1 first; then Data3 before Data2; then Data4 as two little-endian words; all unsigned.
    EXPECT_EQ(-1, Compare(Guid(1, 9, 9, 9), Guid(2, 0, 0, 0)));
    EXPECT_EQ(1, Compare(Guid(0x80000000U), Guid(0x7FFFFFFFU)));
    EXPECT_EQ(-1, Compare(Guid(5, 0x0001FFFF), Guid(5, 0x00020000)));
    EXPECT_EQ(1, Compare(Guid(5, 2, 0, 0), Guid(5, 1, 9, 9)));
    EXPECT_EQ(-1, Compare(Guid(5, 5, 0x01000000), Guid(5, 5, 0x02000000)));
    EXPECT_EQ(-1, Compare(Guid(5, 5, 0x000000FF), Guid(5, 5, 0x01000000)));
    EXPECT_EQ(1, Compare(Guid(5, 5, 5, 0x80000000U), Guid(5, 5, 5, 1)));
    EXPECT_EQ(0, Compare(Guid(5, 5, 5, 5), Guid(5, 5, 5, 5)));
}

TEST_F(GlobalIDTest, MergesWithItsEqualAlone) {
    left_->Set(Guid(1, 2, 3, 4));
    right_->Set(Guid(1, 2, 3, 4));
    EXPECT_TRUE(left_->MergeWith(right_, false));
    right_->Set(Guid(1, 2, 3, 5));
    EXPECT_FALSE(left_->MergeWith(right_, false));
}

}  // namespace
}  // namespace KivGenerics::Testing
