#include <KivStorage/FileScanner.h>

#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivStorage;
using namespace StorageTest;

namespace {

constexpr std::size_t Payload = 65524;
constexpr std::size_t Header = 24;
constexpr std::size_t Block = 65536;
constexpr std::size_t Trailer = 44;

/// Items of 10 bytes, no two alike.
Bytes Items(std::size_t size) {
    Bytes items;
    for (std::size_t i = 0; i < size; ++i) {
        items.push_back(static_cast<std::uint8_t>(i * 2654435761u >> 13));
    }
    return items;
}

/// Three full blocks and one of 1,000 bytes of items.
Bytes FourBlocks() {
    return Frame(Items(3 * Payload + 1000), 7);
}

/// One line for each stretch: "block 1 at 24, 65536 bytes", and the code where something is wrong.
std::vector<std::string> Scan(const Bytes& bytes) {
    const auto scanner = FileScanner::OpenMemory(bytes.data(), bytes.size());
    std::vector<std::string> lines;
    ScannedPart part;
    std::uint64_t next = 0;
    while (scanner->Next(part)) {
        EXPECT_EQ(next, part.offset);
        EXPECT_TRUE(std::equal(part.bytes, part.bytes + part.size, bytes.begin() + static_cast<std::ptrdiff_t>(next)));
        next += part.size;
        const char* const kinds[] = {"header", "block", "trailer", "unreadable"};
        std::string line = kinds[static_cast<int>(part.kind)];
        line += part.kind == ScanPart::Block ? " " + std::to_string(part.number) : "";
        line += " at " + std::to_string(part.offset) + ", " + std::to_string(part.size) + " bytes";
        if (!part.state.Ok()) {
            line += ": " + part.state.sentence.substr(0, part.state.sentence.find(" ("));
        }
        lines.push_back(line);
    }
    EXPECT_EQ(bytes.size(), next);
    EXPECT_TRUE(scanner->GetError().Ok());
    EXPECT_EQ(bytes.size(), scanner->GetSize());
    return lines;
}

using Lines = std::vector<std::string>;

TEST(FileScannerTest, AWholeFileIsHeaderBlocksAndTrailer) {
    EXPECT_EQ(Lines({"header at 0, 24 bytes", "block 1 at 24, 65536 bytes", "block 2 at 65560, 65536 bytes",
                     "block 3 at 131096, 65536 bytes", "block 4 at 196632, 1012 bytes", "trailer at 197644, 44 bytes"}),
              Scan(FourBlocks()));
    EXPECT_EQ(Lines({"header at 0, 24 bytes", "trailer at 24, 44 bytes"}), Scan(Frame({}, 0)));
}

TEST(FileScannerTest, TheItemsOfABlockStandBetweenItsLengthAndItsChecksum) {
    const Bytes items = Items(1000);
    const Bytes bytes = Frame(items, 3);
    const auto scanner = FileScanner::OpenMemory(bytes.data(), bytes.size());
    ScannedPart part;
    ASSERT_TRUE(scanner->Next(part));
    ASSERT_TRUE(scanner->Next(part));
    ASSERT_EQ(1000u, part.GetItemSize());
    EXPECT_TRUE(std::equal(items.begin(), items.end(), part.GetItems()));
    EXPECT_EQ(0u, scanner->GetTotals().items);
    ASSERT_TRUE(scanner->Next(part));
    EXPECT_EQ(1u, scanner->GetTotals().blocks);
    EXPECT_EQ(3u, scanner->GetTotals().items);
    EXPECT_EQ(1000u, scanner->GetTotals().itemBytes);
}

TEST(FileScannerTest, AChangedByteDamagesItsBlockAlone) {
    for (const std::size_t place : {Header + Block + 4, Header + Block + 30000, Header + 2 * Block - 1}) {
        Bytes bytes = FourBlocks();
        bytes[place] ^= 0x10;
        EXPECT_EQ(Lines({"header at 0, 24 bytes", "block 1 at 24, 65536 bytes",
                         "block 2 at 65560, 65536 bytes: A block does not match its checksum",
                         "block 3 at 131096, 65536 bytes", "block 4 at 196632, 1012 bytes",
                         "trailer at 197644, 44 bytes"}),
                  Scan(bytes))
            << place;
    }
}

TEST(FileScannerTest, BehindABlockWhoseLengthIsDamagedTheNextOneIsFound) {
    for (const int bit : {0, 8, 16, 24}) {
        Bytes bytes = FourBlocks();
        bytes[Header + Block + static_cast<std::size_t>(bit) / 8] ^= 0x04;
        const Lines lines = Scan(bytes);
        ASSERT_EQ(6u, lines.size()) << bit;
        EXPECT_EQ("unreadable at 65560, 65536 bytes: ", lines[2].substr(0, 34)) << bit;
        EXPECT_EQ("block 3 at 131096, 65536 bytes", lines[3]) << bit;
    }
}

TEST(FileScannerTest, BytesPutInOrTakenOutCostOneBlock) {
    Bytes longer = FourBlocks();
    longer.insert(longer.begin() + Header + Block + 100, {1, 2, 3});
    EXPECT_EQ(Lines({"header at 0, 24 bytes", "block 1 at 24, 65536 bytes",
                     "unreadable at 65560, 65536 bytes: A block does not match its checksum",
                     "unreadable at 131096, 3 bytes: A block does not match its checksum",
                     "block 3 at 131099, 65536 bytes", "block 4 at 196635, 1012 bytes", "trailer at 197647, 44 bytes"}),
              Scan(longer));
    Bytes shorter = FourBlocks();
    shorter.erase(shorter.begin() + Header + Block + 100, shorter.begin() + Header + Block + 107);
    EXPECT_EQ(Lines({"header at 0, 24 bytes", "block 1 at 24, 65536 bytes",
                     "unreadable at 65560, 65529 bytes: A block does not match its checksum",
                     "block 3 at 131089, 65536 bytes", "block 4 at 196625, 1012 bytes", "trailer at 197637, 44 bytes"}),
              Scan(shorter));
}

TEST(FileScannerTest, AMissingBlockIsAStretchOfNoBytes) {
    Bytes bytes = FourBlocks();
    bytes.erase(bytes.begin() + Header + Block, bytes.begin() + Header + 2 * Block);
    EXPECT_EQ(Lines({"header at 0, 24 bytes", "block 1 at 24, 65536 bytes",
                     "unreadable at 65560, 0 bytes: A block does not match its checksum",
                     "block 3 at 65560, 65536 bytes", "block 4 at 131096, 1012 bytes", "trailer at 132108, 44 bytes"}),
              Scan(bytes));
}

TEST(FileScannerTest, AFileThatIsCutOffSaysSoWhereverItIsCut) {
    const Bytes whole = FourBlocks();
    const auto cut = [&whole](std::size_t size) {
        return Scan(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    };
    EXPECT_EQ(Lines({"header at 0, 0 bytes: The data end too early"}), cut(0));
    EXPECT_EQ(Lines({"header at 0, 11 bytes: The data end too early"}), cut(11));
    EXPECT_EQ(Lines({"header at 0, 24 bytes", "unreadable at 24, 0 bytes: The data end too early"}), cut(24));
    EXPECT_EQ(Lines({"header at 0, 24 bytes", "unreadable at 24, 3 bytes: The data end too early"}), cut(27));
    EXPECT_EQ(Lines({"header at 0, 24 bytes", "unreadable at 24, 20000 bytes: The data end too early"}), cut(20024));
    const Lines noTrailer = cut(whole.size() - Trailer);
    EXPECT_EQ("unreadable at 197644, 0 bytes: The data end too early", noTrailer.back());
    EXPECT_EQ("trailer at 197644, 43 bytes: The data end too early", cut(whole.size() - 1).back());
}

TEST(FileScannerTest, WhatFollowsTheTrailerIsToldApart) {
    Bytes bytes = Frame(Items(10), 1);
    bytes.insert(bytes.end(), 70000, 0x55);
    EXPECT_EQ(Lines({"header at 0, 24 bytes", "block 1 at 24, 22 bytes", "trailer at 46, 44 bytes",
                     "unreadable at 90, 65536 bytes: More bytes follow the end of the saved data",
                     "unreadable at 65626, 4464 bytes: More bytes follow the end of the saved data"}),
              Scan(bytes));
}

TEST(FileScannerTest, ADamagedHeaderOrTrailerLeavesTheBlocksReadable) {
    Bytes bytes = FourBlocks();
    bytes[9] ^= 1;
    bytes[bytes.size() - 20] ^= 1;
    const Lines lines = Scan(bytes);
    ASSERT_EQ(6u, lines.size());
    EXPECT_EQ("header at 0, 24 bytes: The header does not match its checksum", lines[0]);
    EXPECT_EQ("block 4 at 196632, 1012 bytes", lines[4]);
    EXPECT_EQ("trailer at 197644, 44 bytes: The trailer does not match its checksum", lines[5]);
}

TEST(FileScannerTest, BlocksOfAnotherFileShowInTheTotals) {
    Bytes bytes = FourBlocks();
    Bytes other = Frame(Bytes(4 * Payload, 0x33), 7);
    std::copy_n(other.begin() + Header + Block, Block, bytes.begin() + Header + Block);
    const Lines lines = Scan(bytes);
    ASSERT_EQ(6u, lines.size());
    EXPECT_EQ("block 2 at 65560, 65536 bytes", lines[2]);
    EXPECT_EQ("trailer at 197644, 44 bytes: The totals in the trailer are not those of the data", lines[5]);
}

TEST(FileScannerTest, OtherDataAreNoSavedTree) {
    const Lines lines = Scan(Text("<?xml version='1.0'?><nothing-of-ours/>"));
    ASSERT_LE(1u, lines.size());
    EXPECT_EQ("header at 0, 24 bytes: These data do not begin as saved trees do", lines[0]);
}

TEST(FileScannerTest, DataMadeToLookLikeManyBlocksAreRefusedSoon) {
    Bytes bytes = Frame({}, 0);
    bytes.resize(Header);
    for (int i = 0; i < 500000; ++i) {
        bytes.insert(bytes.end(), {0xF4, 0xFF, 0, 0});
    }
    std::size_t unreadable = 0;
    const auto scanner = FileScanner::OpenMemory(bytes.data(), bytes.size());
    ScannedPart part;
    while (scanner->Next(part)) {
        unreadable += part.kind == ScanPart::Unreadable ? part.size : 0;
    }
    EXPECT_EQ(2000000u, unreadable);
}

TEST(FileScannerTest, AFileIsReadInPiecesAndAMissingOneSaysSo) {
    const Folder folder;
    const Bytes bytes = Frame(Items(20 * Payload), 7);
    WriteFile(folder / "long.kiv", bytes);
    const auto scanner = FileScanner::OpenFile(folder / "long.kiv");
    EXPECT_EQ(bytes.size(), scanner->GetSize());
    ScannedPart part;
    std::uint64_t blocks = 0;
    while (scanner->Next(part)) {
        EXPECT_TRUE(part.state.Ok()) << part.state.sentence;
        blocks += part.kind == ScanPart::Block ? 1 : 0;
    }
    EXPECT_EQ(20u, blocks);
    const auto missing = FileScanner::OpenFile(folder / "none.kiv");
    EXPECT_EQ(StorageFileNotFound, missing->GetError().code);
    EXPECT_FALSE(missing->Next(part));
}

}  // namespace
