#include <KivInspect/Check.h>

#include <KivGenerics/Integer64.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <gtest/gtest.h>

#include "inspect/Saved.h"

using namespace KivInspect;
using namespace InspectTest;

namespace {

using namespace KivGenerics;

std::vector<std::string> Reasons(const TreeCheck& check) {
    std::vector<std::string> reasons;
    for (const Finding& finding : check.findings) {
        reasons.push_back(finding.key + " " + finding.reason);
    }
    return reasons;
}

TEST(CheckTest, AWholeFileHasNoDamage) {
    const auto bytes = Save(LongTree(5000).Get());
    const FileCheck check = CheckFile(*Scan(bytes));
    EXPECT_TRUE(check.result.Ok());
    EXPECT_TRUE(check.damage.empty());
    EXPECT_EQ((bytes.size() + 65535) / 65536, check.blocks);
}

TEST(CheckTest, EveryDamageIsListedWithItsPlace) {
    auto bytes = Save(LongTree(20000).Get());
    bytes[24 + 100] ^= 1;
    bytes[24 + 2 * 65536 + 200] ^= 1;
    const FileCheck check = CheckFile(*Scan(bytes));
    EXPECT_EQ(KivStorage::StorageBlockDamaged, check.result.code);
    ASSERT_EQ(2u, check.damage.size());
    EXPECT_EQ(24u, check.damage[0].offset);
    EXPECT_EQ(65536u, check.damage[0].size);
    EXPECT_EQ(24u + 2 * 65536u, check.damage[1].offset);
}

TEST(CheckTest, OtherDataAreOneDamage) {
    const std::string text(100000, 'x');
    const FileCheck check = CheckFile(*Scan({text.begin(), text.end()}));
    EXPECT_EQ(KivStorage::StorageNotASavedTree, check.result.code);
    EXPECT_EQ(1u, check.damage.size());
}

TEST(CheckTest, ATreeThatComesBackAsItWasHasNoFindings) {
    const auto tree = LongTree(10);
    const TreeCheck check = CheckTree(tree.Get());
    EXPECT_TRUE(check.findings.empty());
    ASSERT_EQ(4u, check.limits.size());
    EXPECT_EQ(3u, check.limits[0].used);
    EXPECT_EQ(1000u, check.limits[0].limit);
    EXPECT_EQ(90u, check.limits[2].used);
    EXPECT_EQ("0:90:", check.limits[2].key);
    EXPECT_EQ(10u, check.limits[3].used);
}

TEST(CheckTest, WhatASaveWouldLoseIsFoundWithAReasonAndAdvice) {
    const auto tree = LongTree(1);
    auto* const map = static_cast<Map*>(static_cast<Map*>(tree->GetRoot())->Get(0));
    static_cast<Integer64*>(map->NewNode(4, NodeTypeInteger64))->Set(0x80000000LL);
    static_cast<String*>(map->NewNode(5, NodeTypeString))->Set(KivBase::WString(u"a\0b", 3));
    const TreeCheck check = CheckTree(tree.Get());
    EXPECT_EQ(std::vector<std::string>({"0:4: Integer64Bit31", "0:5: TextHasNul"}), Reasons(check));
    EXPECT_EQ("The text would be cut before its NUL.", check.findings[1].why);
    EXPECT_EQ("Take the NUL out of the text.", check.findings[1].advice);
}

TEST(CheckTest, StrictFindsIllFormedTextsTemporaryNodesAndLimitsNearlyReached) {
    const auto tree = LongTree(1);
    auto* const map = static_cast<Map*>(static_cast<Map*>(tree->GetRoot())->Get(0));
    static_cast<String*>(map->NewNode(5, NodeTypeString))->Set(KivBase::WString(1, char16_t{0xD800}));
    map->NewNode(6, NodeTypeInteger)->SetTemporality(TemporalityTemporary);
    static_cast<String*>(map->NewNode(7, NodeTypeString))->Set(KivBase::WString(240000, u'x'));
    EXPECT_TRUE(CheckTree(tree.Get()).findings.empty());
    CheckOptions strict;
    strict.strict = true;
    EXPECT_EQ(std::vector<std::string>({"0:5: IllFormedText", "0:6: Temporary", "0:7: NearLimit"}),
              Reasons(CheckTree(tree.Get(), strict)));
}

TEST(CheckTest, TheReportIsOneJsonObject) {
    const auto tree = LongTree(1);
    const TreeCheck check = CheckTree(tree.Get());
    FileCheck file;
    file.damage.push_back({24, 10, "A \"sentence\"."});
    StringSink sink;
    WriteCheckJson(&file, &check, sink);
    EXPECT_EQ(
        "{\"whole\": true, \"damage\": [{\"offset\": 24, \"size\": 10, \"sentence\": \"A \\\"sentence\\\".\"}], "
        "\"findings\": [], \"limits\": [{\"name\": \"levels of vectors and maps\", \"used\": 3, \"limit\": 1000, "
        "\"key\": \"0:0:\"}, {\"name\": \"units of a text\", \"used\": 1, \"limit\": 256000, \"key\": \"0:0:0:\"}, "
        "{\"name\": \"index in a map\", \"used\": 2, \"limit\": 536870911, \"key\": \"0:0:2:\"}, {\"name\": \"children "
        "of "
        "a node\", \"used\": 3, \"limit\": 2147483647, \"key\": \"0:0:\"}]}\n",
        sink.GetText());
}

}  // namespace
