#include <KivInspect/Salvage.h>

#include <KivGenerics/Composite.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/Temporality.h>
#include <KivInspect/Key.h>
#include <KivInspect/ValueText.h>
#include <KivStorage/LoadTree.h>
#include <gtest/gtest.h>

#include "inspect/Saved.h"

using namespace KivInspect;
using namespace InspectTest;

namespace {

using namespace KivGenerics;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t Header = 24;
constexpr std::size_t Block = 65536;

/// What is left where nothing is put right.
SalvageResult SalvageAsItIs(const Bytes& bytes) {
    SalvageOptions options;
    options.repair = false;
    return Salvage(*Scan(bytes), options);
}

/// Damage beyond repair: more than one byte.
void Destroy(Bytes& bytes, std::size_t block) {
    for (const std::size_t at : {1000u, 30000u, 60000u}) {
        bytes[Header + block * Block + at] ^= 0xFF;
    }
}

bool AreEqual(Tree* left, Tree* right) {
    return left->GetRoot()->Compare(right->GetRoot(), TemporalityTemporary, true) == 0;
}

std::string ValueAt(Tree* tree, const char* key) {
    const FoundNode found = FindNode(tree, key);
    return found.node != nullptr ? ShortText(found.node) : "missing";
}

/// Whether the nodes that are there, of which some are looked at, have the values that they have in the other tree.
void ExpectNothingInvented(Tree* salvaged, Tree* original, int count) {
    for (int i = 0; i < count; i += 11) {
        const std::string key = "0:" + std::to_string(10 * i) + ":";
        for (const char* const field : {"0:", "1:", "2:"}) {
            const std::string value = ValueAt(salvaged, (key + field).c_str());
            if (value != "missing") {
                EXPECT_EQ(ValueAt(original, (key + field).c_str()), value) << key << field;
            }
        }
    }
}

std::uint64_t CountLost(const SalvageResult& result) {
    std::uint64_t count = 0;
    for (const LostNodes& lost : result.lost) {
        count += lost.count;
    }
    return count;
}

TEST(SalvageTest, AWholeFileComesBackAsItIs) {
    const Bytes bytes = Save(LongTree(3000).Get());
    const SalvageResult result = Salvage(*Scan(bytes));
    ASSERT_TRUE(result.result.Ok()) << result.result.sentence;
    EXPECT_TRUE(result.lost.empty());
    EXPECT_TRUE(result.repairs.empty());
    EXPECT_TRUE(bytes == Save(result.tree.Get()));
}

TEST(SalvageTest, ATreeWithEveryKindComesBackAsLoadingItWould) {
    const auto scanner = ScanData("tree-of-every-kind.kiv");
    const SalvageResult result = Salvage(*scanner);
    ASSERT_TRUE(result.result.Ok()) << result.result.sentence;
    const KivStorage::LoadResult loaded = KivStorage::LoadTree(KIV_TEST_DATA "/tree-of-every-kind.kiv");
    EXPECT_TRUE(AreEqual(result.tree.Get(), loaded.tree.Get()));
    EXPECT_TRUE(Save(result.tree.Get()) == Save(loaded.tree.Get()));
}

TEST(SalvageTest, AChangedBitIsPutRight) {
    const Bytes bytes = Save(LongTree(20).Get());
    for (const std::size_t at : {25u, 40u, 200u, 500u}) {
        Bytes damaged = bytes;
        damaged[at] ^= 0x10;
        const SalvageResult result = Salvage(*Scan(damaged));
        ASSERT_TRUE(result.result.Ok()) << result.result.sentence;
        ASSERT_EQ(1u, result.repairs.size());
        EXPECT_TRUE(bytes == Save(result.tree.Get())) << at;
    }
}

TEST(SalvageTest, WhatStandsBeforeAndBehindALostBlockComesBackUnderItsKeys) {
    constexpr int count = 12000;
    const auto tree = LongTree(count);
    const Bytes bytes = Save(tree.Get());
    ASSERT_GT(bytes.size(), 8 * Block);
    for (const std::size_t block : {1u, 3u}) {
        Bytes damaged = bytes;
        Destroy(damaged, block);
        const SalvageResult result = SalvageAsItIs(damaged);
        EXPECT_EQ(KivStorage::StorageBlockDamaged, result.result.code);
        ASSERT_TRUE(result.tree);
        ExpectNothingInvented(result.tree.Get(), tree.Get(), count);
        EXPECT_EQ("\"0\"", ValueAt(result.tree.Get(), "0:0:0:"));
        EXPECT_EQ("\"11999\"", ValueAt(result.tree.Get(), "0:119990:0:"));
        EXPECT_EQ("83993", ValueAt(result.tree.Get(), "1:11999:"));
        // A map takes about 40 bytes.
        EXPECT_GT(CountLost(result), 1000u);
        EXPECT_LT(CountLost(result), 2500u);
    }
}

TEST(SalvageTest, ElementsBehindALostPartOfAVectorKeepTheirKeys) {
    constexpr int count = 30000;
    const auto tree = LongTree(count);
    Bytes damaged = Save(tree.Get());
    // The vector's integers stand at the end, 5 bytes each.
    const std::size_t blocks = damaged.size() / Block;
    Destroy(damaged, blocks - 1);
    const SalvageResult result = SalvageAsItIs(damaged);
    ASSERT_TRUE(result.tree);
    EXPECT_EQ("209993", ValueAt(result.tree.Get(), "1:29999:"));
    EXPECT_EQ("0", ValueAt(result.tree.Get(), "1:0:"));
    ASSERT_EQ(1u, result.lost.size());
    EXPECT_NEAR(65524.0 / 5.0, static_cast<double>(result.lost.front().count), 10.0);
    EXPECT_NE(std::string::npos, result.lost.front().note.find("empty elements"));
    EXPECT_EQ("0", ValueAt(result.tree.Get(), result.lost.front().first.c_str()));
}

TEST(SalvageTest, ATruncatedFileGivesWhatStandsBeforeTheEnd) {
    constexpr int count = 12000;
    const auto tree = LongTree(count);
    Bytes cut = Save(tree.Get());
    cut.resize(Header + 4 * Block + 777);
    const SalvageResult result = SalvageAsItIs(cut);
    EXPECT_EQ(KivStorage::StorageTruncated, result.result.code);
    ASSERT_TRUE(result.tree);
    ExpectNothingInvented(result.tree.Get(), tree.Get(), count);
    EXPECT_EQ("\"4000\"", ValueAt(result.tree.Get(), "0:40000:0:"));
    EXPECT_EQ("missing", ValueAt(result.tree.Get(), "0:119990:0:"));
    ASSERT_FALSE(result.lost.empty());
    EXPECT_EQ("1:", result.lost.back().first);
}

TEST(SalvageTest, BetweenTwoLostBlocksNothingIsTakenForProved) {
    constexpr int count = 12000;
    const auto tree = LongTree(count);
    Bytes damaged = Save(tree.Get());
    Destroy(damaged, 1);
    Destroy(damaged, 4);
    const SalvageResult result = SalvageAsItIs(damaged);
    ASSERT_TRUE(result.tree);
    ExpectNothingInvented(result.tree.Get(), tree.Get(), count);
    EXPECT_EQ("\"11999\"", ValueAt(result.tree.Get(), "0:119990:0:"));
}

TEST(SalvageTest, WithoutItsFirstBlockNothingOfATreeCanBeTold) {
    Bytes damaged = Save(LongTree(12000).Get());
    Destroy(damaged, 0);
    const SalvageResult result = SalvageAsItIs(damaged);
    EXPECT_FALSE(result.tree);
    ASSERT_EQ(1u, result.lost.size());
    EXPECT_EQ("", result.lost.front().first);
}

TEST(SalvageTest, OfOtherDataNothingIsRead) {
    const std::string text = "<?xml version='1.0'?>";
    const SalvageResult result = Salvage(*Scan({text.begin(), text.end()}));
    EXPECT_EQ(KivStorage::StorageNotASavedTree, result.result.code);
    EXPECT_FALSE(result.tree);
}

TEST(SalvageTest, WhereverAFileIsDamagedNothingIsInvented) {
    constexpr int count = 5000;
    const auto tree = LongTree(count);
    const Bytes whole = Save(tree.Get());
    for (std::size_t at = 0; at + 40 < whole.size(); at += whole.size() / 23) {
        Bytes damaged = whole;
        for (std::size_t i = 0; i < 40; ++i) {
            damaged[at + i] = static_cast<std::uint8_t>(damaged[at + i] + 1 + i);
        }
        const SalvageResult result = SalvageAsItIs(damaged);
        if (result.tree) {
            ExpectNothingInvented(result.tree.Get(), tree.Get(), count);
        }
    }
}

TEST(SalvageTest, TheReportNamesRangesAndRepairs) {
    SalvageResult result;
    result.nodes = 2;
    result.repairs.push_back({1234, 0x2B, 0x2A});
    result.lost.push_back({"1:7:", "1:9:", 3, "empty elements stand in their place"});
    result.lost.push_back({"2:", "2:", 1, "with everything below it"});
    StringSink sink;
    WriteSalvage(result, sink);
    EXPECT_EQ(
        "repaired: byte 1234 was 2B and is 2A, as the checksum proves\n"
        "lost: 1:7: to 1:9:, 3 nodes and everything below them; empty elements stand in their place\n"
        "lost: 2: with everything below it\n"
        "read: 2 nodes\n",
        sink.GetText());
}

}  // namespace
