#include <KivStorage/ItemScanner.h>

#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivStorage;
using namespace StorageTest;

namespace {

const char* const OneOfEach =
    "07 34 12 "                                     // object opens
    "01 FE FF FF FF "                               // -2
    "02 00 00 00 00 00 00 F8 3F "                   // 1.5
    "03 07 00 "                                     // short
    "04 02 00 00 00 48 00 69 D8 "                   // text of two units
    "04 00 00 00 00 "                               // empty text
    "05 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F "
    "06 03 00 01 02 03 04 05 06 07 08 "
    "08";

/// Every item, fed in runs of `run` bytes: "type@offset+size".
std::string Items(const Bytes& bytes, std::size_t run) {
    ItemScanner scanner;
    ScannedItem item;
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += run) {
        scanner.Feed(bytes.data() + at, std::min(run, bytes.size() - at), 1000 + at);
        ItemScanner::Step step = scanner.Next(item);
        for (; step == ItemScanner::Step::Item; step = scanner.Next(item)) {
            EXPECT_EQ(item.offset, 1000 + item.position);
            EXPECT_TRUE(std::equal(item.bytes, item.bytes + item.size,
                                   bytes.begin() + static_cast<std::ptrdiff_t>(item.position)));
            text += std::to_string(static_cast<int>(item.type)) + "@" + std::to_string(item.offset) + "+" +
                    std::to_string(item.size) + " ";
        }
        if (step == ItemScanner::Step::Unknown) {
            return text + "unknown";
        }
    }
    return text + std::to_string(scanner.GetPending()) + " pending";
}

TEST(ItemScannerTest, ItemsAreToldApartHoweverTheirBytesAreCut) {
    const Bytes bytes = FromHex(OneOfEach);
    for (std::size_t run = 1; run <= bytes.size(); ++run) {
        EXPECT_EQ("7@1000+3 1@1003+5 2@1008+9 3@1017+3 4@1020+9 4@1029+5 5@1034+17 6@1051+11 8@1062+1 0 pending",
                  Items(bytes, run))
            << run;
    }
}

TEST(ItemScannerTest, AnItemHandsOutItsValue) {
    const Bytes bytes = FromHex(OneOfEach);
    ItemScanner scanner;
    scanner.Feed(bytes.data(), bytes.size(), 0);
    ScannedItem item;
    scanner.Next(item);
    EXPECT_EQ(0x1234, item.GetTag());
    scanner.Next(item);
    EXPECT_EQ(-2, item.GetLong());
    scanner.Next(item);
    EXPECT_EQ(0x3FF8000000000000u, item.GetBits());
    scanner.Next(item);
    scanner.Next(item);
    ASSERT_EQ(2u, item.GetUnits());
    EXPECT_EQ(u'H', item.GetUnit(0));
    EXPECT_EQ(0xD869, item.GetUnit(1));
}

TEST(ItemScannerTest, AnUnknownTypeEndsTheItems) {
    EXPECT_EQ("8@1000+1 unknown", Items(FromHex("08 09 08"), 3));
    EXPECT_EQ("unknown", Items(FromHex("00"), 1));
}

TEST(ItemScannerTest, ATextLongerThanAnyTreeHoldsIsNone) {
    EXPECT_EQ("5 pending", Items(FromHex("04 00 E8 03 00"), 5));  // 256,000 units
    EXPECT_EQ("unknown", Items(FromHex("04 01 E8 03 00"), 5));
    EXPECT_EQ("unknown", Items(FromHex("04 FF FF FF FF"), 2));
}

TEST(ItemScannerTest, WhatIsCutOffIsPendingAndCanBeForgotten) {
    const Bytes bytes = FromHex("01 FE FF 08");
    ItemScanner scanner;
    scanner.Feed(bytes.data(), 3, 0);
    ScannedItem item;
    EXPECT_EQ(ItemScanner::Step::RunEnds, scanner.Next(item));
    EXPECT_EQ(3u, scanner.GetPending());
    scanner.DropPending();
    scanner.Feed(bytes.data() + 3, 1, 3);
    EXPECT_EQ(ItemScanner::Step::Item, scanner.Next(item));
    EXPECT_EQ(ScannedItemType::ObjectEnds, item.type);
    EXPECT_EQ(3u, item.offset);
}

}  // namespace
