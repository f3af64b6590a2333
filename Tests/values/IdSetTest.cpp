#include <iterator>

#include <KivBase/Guid.h>

#include "values/ValueTree.h"

namespace KivGenerics::Testing {
namespace {

// Ascending: Data1; then Data2 and Data3 as one word, Data3 in the high half; then Data4 as two little-endian words.
const GUID kAscending[] = {
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 1, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 0, 1, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 255, 255, 255, 127}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 128}},
    {0x00000000, 0x0000, 0x0000, {1, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {255, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x0000, {0, 0, 0, 1, 0, 0, 0, 0}},
    {0x00000000, 0x0001, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0xFFFF, 0x0000, {9, 9, 9, 9, 9, 9, 9, 9}},
    {0x00000000, 0x0000, 0x0001, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000000, 0x0000, 0x8000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x00000001, 0xFFFF, 0xFFFF, {255, 255, 255, 255, 255, 255, 255, 255}},
    {0x00000002, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x7FFFFFFF, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
    {0x80000000, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}},
};

/// The GUID of which one bit is set, counted from the one that decides least.
GUID IdOfBit(int bit) {
    GUID id{};
    if (bit < 64) {
        const int byte = bit < 32 ? 4 + bit / 8 : (bit - 32) / 8;
        id.Data4[byte] = static_cast<unsigned char>(1U << bit % 8);
    } else if (bit < 80) {
        id.Data2 = static_cast<std::uint16_t>(1U << bit % 16);
    } else if (bit < 96) {
        id.Data3 = static_cast<std::uint16_t>(1U << bit % 16);
    } else {
        id.Data1 = 1U << bit % 32;
    }
    return id;
}

TEST(IdSetTest, EveryBitDecidesBeforeTheLesserOnes) {
    const ValueTree tree;
    IdSet* const set = tree.Add<IdSet>(0);
    for (int bit = 127; bit >= 0; --bit) {
        set->Add(IdOfBit(bit));
    }
    ASSERT_EQ(128, set->Count());
    for (int bit = 0; bit < 128; ++bit) {
        GUID id{};
        set->Item(bit, id);
        EXPECT_EQ(TextOfValue(IdOfBit(bit)), TextOfValue(id)) << bit;
    }
}

TEST(IdSetTest, OrdersGuidsAsFourUnsignedWords) {
    const ValueTree tree;
    IdSet* const set = tree.Add<IdSet>(0);
    for (auto id = std::rbegin(kAscending); id != std::rend(kAscending); ++id) {
        set->Add(*id);
    }
    ASSERT_EQ(16, set->Count());
    for (int i = 0; i < 16; ++i) {
        GUID id{};
        set->Item(i, id);
        EXPECT_EQ(TextOfValue(kAscending[i]), TextOfValue(id)) << i;
    }
}

TEST(IdSetTest, EveryPairIsOrderedAsInASingleValue) {
    const ValueTree tree;
    IdSet* const left = tree.Add<IdSet>(0);
    IdSet* const right = tree.Add<IdSet>(1);
    for (int i = 0; i < 16; ++i) {
        for (int j = 0; j < 16; ++j) {
            left->Set({kAscending[i]});
            right->Set({kAscending[j]});
            const int order = i < j ? -1 : (i > j ? 1 : 0);
            EXPECT_EQ(order, left->Compare(right, TemporalityTemporary, false)) << i << " " << j;
            EXPECT_EQ(order, KivBase::CompareGUID(kAscending[i], kAscending[j])) << i << " " << j;
        }
    }
}

TEST(IdSetTest, TheFirstWordDecidesWhateverTheOtherBytes) {
    const ValueTree tree;
    IdSet* const set = tree.Add<IdSet>(0);
    set->Add(Guid(2));
    set->Add(Guid(1, 0xFFFFFFFFU, 0xFFFFFFFFU, 0xFFFFFFFFU));
    EXPECT_EQ("{00000001-ffff-ffff-ff-ff-ff-ff-ff-ff-ff-ff,00000002-0000-0000-00-00-00-00-00-00-00-00}", Show(*set));
}

}  // namespace
}  // namespace KivGenerics::Testing
