// The keys of maps in maps.

#include "persistence/SlotKeys.h"

#include <gtest/gtest.h>

namespace KivGenerics::Testing {
namespace {

void AddKeys(SlotKeys& keys, int count) {
    for (int i = 0; i < count; ++i) {
        keys.Add({i, static_cast<std::uint32_t>(i) + 7});
    }
    keys.Close();
}

/// The indexes that are not those that AddKeys gave, and the codes.
int CountWrong(const SlotKeys& keys, int count) {
    int wrong = keys.end() - keys.begin() == count ? 0 : 1;
    int expected = 0;
    for (const SlotKey& key : keys) {
        wrong += key.index == expected && key.typeCode == static_cast<std::uint32_t>(expected) + 7 ? 0 : 1;
        ++expected;
    }
    return wrong;
}

TEST(SlotKeysTest, HoldMoreKeysThanTheSharedRoomHas) {
    for (const int count : {0, 1, 255, 256, 257, 100000}) {
        SlotKeyRoom room;
        SlotKeys keys(room);
        AddKeys(keys, count);
        EXPECT_EQ(CountWrong(keys, count), 0) << count;
    }
}

TEST(SlotKeysTest, StayWhereTheyAreWhileMapsInsideAreRead) {
    SlotKeyRoom room;
    SlotKeys outer(room);
    AddKeys(outer, 200);
    const SlotKey* const first = outer.begin();
    for (const int count : {10, 300, 3}) {
        SlotKeys inner(room);
        AddKeys(inner, count);
        SlotKeys innermost(room);
        AddKeys(innermost, 1000);
        EXPECT_EQ(CountWrong(innermost, 1000), 0);
        EXPECT_EQ(CountWrong(inner, count), 0);
    }
    EXPECT_EQ(outer.begin(), first);
    EXPECT_EQ(CountWrong(outer, 200), 0);
}

TEST(SlotKeysTest, GiveTheRoomBackWhateverTheyTook) {
    SlotKeyRoom room;
    const SlotKey* const first = SlotKeys(room).begin();
    for (const int count : {256, 1000, 1}) {
        SlotKeys keys(room);
        EXPECT_EQ(keys.begin(), first);
        AddKeys(keys, count);
    }
    EXPECT_EQ(SlotKeys(room).begin(), first);
}

}  // namespace
}  // namespace KivGenerics::Testing
