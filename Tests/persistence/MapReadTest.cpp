// How maps read themselves, well-formed sequences and others.

#include <KivGenerics/Integer.h>
#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

using Lines = std::vector<std::string>;

/// A map of tag 1 that has read a sequence, which starts with the count, with what came of it.
struct MapRead {
    explicit MapRead(const Calls& calls, bool longCount = false) : reading(calls) {
        result = tree.GetRoot().ReadFromArchive(reading.decoder, longCount);
        lines = Describe(tree.GetRoot());
    }

    Reading reading;
    MapTree tree;
    std::int32_t result = 0;
    Lines lines;
};

TEST(MapReadTest, AZeroCountIsAnEmptyMap) {
    const MapRead read({"Long 00000000"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ(Lines{": Map(tag 1, 0 children) t1"}, read.lines);
    EXPECT_EQ(1, read.reading.archive.counter.GetCount());
}

TEST(MapReadTest, AllKeysStandBeforeAllValues) {
    const MapRead read(
        {"Long 03814182", "Long C5048300", "Long 0000002A", "Long 00000001", "Begin 0606", "Long 00000000", "End"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 3 children) t1", "1: Integer 42 t1", "2: Boolean true t3",
                     "4: Vector(0 children) t3"}),
              read.lines);
    EXPECT_EQ((Calls{"ReadLong", "ReadLong", "ReadLong", "ReadLong", "ReadObjectTag 0", "ReadLong", "EndReadObject"}),
              read.reading.archive.operations);
}

TEST(MapReadTest, LeavesOfEveryKindAreMadeFromTheirTypeByte) {
    const std::pair<Calls, const char*> rows[] = {
        {{"Long 01804100", "Long FFFFFFFF"}, "0: Integer -1 t1"},
        {{"Long 01808200", "Guid 00000001-0002-0003-0405060708090A0B"},
         "0: GlobalID {00000001-0002-0003-0405-060708090A0B} t2"},
        {{"Long 0180C300", "Text \"text\""}, "0: String \"text\" t3"},
        {{"Long 01800400", "Double 3FF8000000000000"}, "0: Double 1.5 t0"},
        {{"Long 01804500", "Long 00000000"}, "0: Boolean false t1"},
        {{"Long 01808800", "Begin 040B", "Long 00000001", "Long 00000005", "End"}, "0: IntegerSet {5} t2"},
        {{"Long 01808900", "Begin 040D", "Long 00000000", "End"}, "0: IdSet {} t2"},
        {{"Long 01808A00", "Begin 040E", "Long 00000001", "Text \"x\"", "End"}, "0: StringSet {\"x\"} t2"},
        {{"Long 01808B00", "Begin 040C", "Long 00000001", "Double 4000000000000000", "End"}, "0: DoubleSet {2} t2"},
        {{"Long 01808C00", "Long 00000002", "Long 00000001"}, "0: Integer64 4294967298 t2"},
    };
    for (const auto& [calls, line] : rows) {
        const MapRead read(calls);
        EXPECT_EQ(0, read.result) << line;
        EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", line}), read.lines);
        EXPECT_TRUE(read.reading.archive.player.IsOver()) << line;
    }
}

TEST(MapReadTest, AKeysIndexTakesOneTwoOrFourBytes) {
    const std::pair<Calls, const char*> rows[] = {
        {{"Long 01BF8100", "Long 00000007"}, "63: Integer 7 t2"},
        {{"Long 01C04081", "Long 00000007"}, "64: Integer 7 t2"},
        {{"Long 01DFFF81", "Long 00000007"}, "8191: Integer 7 t2"},
        {{"Long 01E00020", "Long 00810000", "Long 00000007"}, "8192: Integer 7 t2"},
        {{"Long 01FFFFFF", "Long FF810000", "Long 00000007"}, "536870911: Integer 7 t2"},
        {{"Long 01C00081", "Long 00000007"}, "0: Integer 7 t2"},
        {{"Long 013F0000", "Begin 0406", "Long 00000000", "End"}, "63: Vector(0 children) t2"},
        {{"Long 01404000", "Begin 0406", "Long 00000000", "End"}, "64: Vector(0 children) t2"},
        {{"Long 015FFF00", "Begin 0406", "Long 00000000", "End"}, "8191: Vector(0 children) t2"},
        {{"Long 01600020", "Long 00000000", "Begin 0406", "Long 00000000", "End"}, "8192: Vector(0 children) t2"},
        {{"Long 017FFFFF", "Long FF000000", "Begin 0406", "Long 00000000", "End"}, "536870911: Vector(0 children) t2"},
    };
    for (const auto& [calls, line] : rows) {
        const MapRead read(calls);
        EXPECT_EQ(0, read.result) << line;
        EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", line}), read.lines);
    }
}

TEST(MapReadTest, TheCountTakesOneTwoOrFourBytes) {
    const MapRead one({"Long 01804100", "Long 00000007"});
    const MapRead two({"Long 80018041", "Long 00000007"});
    const MapRead four({"Long 00000001", "Long 80410000", "Long 00000007"}, true);
    for (const MapRead* read : {&one, &two, &four}) {
        EXPECT_EQ(0, read->result);
        EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", "0: Integer 7 t1"}), read->lines);
    }
}

TEST(MapReadTest, AnIndexThatComesTwiceKeepsTheLaterNode) {
    const MapRead read({"Long 02804180", "Long 45000000", "Long 00000007", "Long 00000001"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", "0: Boolean true t1"}), read.lines);
}

TEST(MapReadTest, MapsTakeTheirSemanticTagFromTheWordsOfTheirObject) {
    const MapRead read({"Long 02000100", "Begin 0407", "Long 00640181", "Long 41000000", "Long 00000009", "End",
                        "Begin 03FF", "Long 80008000", "Long 00000000", "End"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 2 children) t1", "0: Map(tag 100, 1 child) t2", "0:1: Integer 9 t1",
                     "1: Map(tag 32768, 0 children) t1"}),
              read.lines);
}

// Both have the header "2 children, a composite at 0, an Integer at 1": the inner one is known by the outer one's words.
TEST(MapReadTest, AMapMayHaveTheHeaderOfTheMapThatItStandsIn) {
    const Calls header{"Long 00050200", "Long 81410000"};
    const MapRead read(Calls{"Long 01000000", "Begin 0407"} + header + Calls{"Begin 0407"} + header +
                       Calls{"Begin 0406", "Long 00000000", "End", "Long 00000007", "End", "Long 00000008", "End"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", "0: Map(tag 5, 2 children) t2", "0:0: Map(tag 5, 2 children) t2",
                     "0:0:0: Vector(0 children) t2", "0:0:1: Integer 7 t1", "0:1: Integer 8 t1"}),
              read.lines);
    EXPECT_TRUE(read.reading.archive.player.IsOver());
}

// The same tag and as many children: the inner header takes the outer one's place among the known ones while that is used.
TEST(MapReadTest, TheKeysOfAMapStayWhenAMapInItHasOthers) {
    const Calls outer{"Long 00050200", "Long 81410000"};
    const Calls inner{"Long 00050282", "Long 41834100"};
    const Calls map = Calls{"Begin 0407"} + outer + Calls{"Begin 0407"} + inner +
                      Calls{"Long 00000001", "Long 00000002", "End", "Long 00000008", "End"};
    const MapRead read(Calls{"Long 02000100"} + map + map);
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 2 children) t1", "0: Map(tag 5, 2 children) t2", "0:0: Map(tag 5, 2 children) t2",
                     "0:0:2: Integer 1 t1", "0:0:3: Integer 2 t1", "0:1: Integer 8 t1", "1: Map(tag 5, 2 children) t2",
                     "1:0: Map(tag 5, 2 children) t2", "1:0:2: Integer 1 t1", "1:0:3: Integer 2 t1",
                     "1:1: Integer 8 t1"}),
              read.lines);
    EXPECT_TRUE(read.reading.archive.player.IsOver());
}

TEST(MapReadTest, WhatAnObjectHoldsBeyondTheNodeIsLeftUnread) {
    const MapRead read({"Long 02000100", "Begin 0406", "Long 00000000", "Begin 0001", "Text \"later\"", "End", "End",
                        "Begin 0406", "Long 00000000", "End"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 2 children) t1", "0: Vector(0 children) t2", "1: Vector(0 children) t2"}),
              read.lines);
}

TEST(MapReadTest, ALeafMayComeAsAnObject) {
    const MapRead read({"Long 02000100", "Begin 0601", "Long 00000005", "End", "Begin 040A", "Begin 040E",
                        "Long 00000000", "End", "End"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 2 children) t1", "0: Integer 5 t3", "1: StringSet {} t2"}), read.lines);
}

TEST(MapReadTest, WhereNoObjectFollowsNothingIsMade) {
    const MapRead read({"Long 02000100"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ(Lines{": Map(tag 1, 0 children) t1"}, read.lines);
    EXPECT_EQ((Calls{"ReadLong", "ReadObjectTag 0", "ReadObjectTag 0"}), read.reading.archive.operations);
}

TEST(MapReadTest, AfterAMissingObjectTheReadGoesOn) {
    const MapTree tree;
    Reading reading({"Long 02058141", "Long 00000009"});
    reading.archive.counter.FailAt(2, 1);
    EXPECT_EQ(0, tree.GetRoot().ReadFromArchive(reading.decoder, false));
    EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", "1: Integer 9 t1"}), Describe(tree.GetRoot()));
    EXPECT_EQ((Calls{"ReadLong", "ReadObjectTag 0", "ReadLong"}), reading.archive.operations);
}

TEST(MapReadTest, ATypeByteOfZeroStandsForAnObject) {
    const MapRead read({"Long 01800000", "Begin 0406", "Long 00000000", "End"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", "0: Vector(0 children) t2"}), read.lines);
}

TEST(MapReadTest, KindZeroOfAnyTemporalityMakesNothing) {
    const MapRead read({"Long 02804081", "Long 41000000", "Long 00000006"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", "1: Integer 6 t1"}), read.lines);
}

TEST(MapReadTest, LeavesOfUnknownKindAreSkippedByTheirWords) {
    // 13 to 15 have no byte for extra words, 16 to 63 have.
    const MapRead read(
        {"Long 04808D81", "Long CF821002", "Long 83410000", "Long 00000001", "Long 00000002", "Long 00000006"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", "3: Integer 6 t1"}), read.lines);
    const MapRead most(Calls{"Long 02803FFF", "Long 81410000"} + Repeat(255, {"Long 00000001"}) +
                       Calls{"Long 00000006"});
    EXPECT_EQ(0, most.result);
    EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", "1: Integer 6 t1"}), most.lines);
    EXPECT_TRUE(most.reading.archive.player.IsOver());
}

TEST(MapReadTest, ObjectsOfUnknownKindAreEnteredAndLeft) {
    for (const char* tag : {"Begin 0000", "Begin 000D", "Begin 0210", "Begin 01FD"}) {
        const MapRead read({"Long 02000100", tag, "Long 00000001", "End", "Begin 0406", "Long 00000000", "End"});
        EXPECT_EQ(0, read.result) << tag;
        EXPECT_EQ((Lines{": Map(tag 1, 1 child) t1", "1: Vector(0 children) t2"}), read.lines);
        EXPECT_EQ((Calls{"ReadLong", "ReadObjectTag 0", "EndReadObject", "ReadObjectTag 0", "ReadLong",
                         "EndReadObject"}),
                  read.reading.archive.operations);
    }
}

TEST(MapReadTest, CompositesInALeafCodeAreReadInlineWithShortCounts) {
    const MapRead read({"Long 02808681", "Long 47000000",  //
                        "Long 00014100", "Long 00000007",  // the vector
                        "Long 00640182", "Long 41000000", "Long 00000009"});  // the map
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 2 children) t1", "0: Vector(1 child) t2", "0:0: Integer 7 t1",
                     "1: Map(tag 100, 1 child) t1", "1:2: Integer 9 t1"}),
              read.lines);
    EXPECT_EQ(Repeat(7, {"ReadLong"}), read.reading.archive.operations);
}

TEST(MapReadTest, AHugeCountWithNothingBehindItFailsPromptlyWithoutReservingMemory) {
    const MapTree tree;
    const std::size_t reserved = tree->BufferQueryA();
    Reading reading({"Long FFFFFFFF"});
    EXPECT_EQ(kScriptIsOver, tree.GetRoot().ReadFromArchive(reading.decoder, true));
    EXPECT_EQ(reserved, tree->BufferQueryA());
    EXPECT_EQ(2, reading.archive.counter.GetCount());
    EXPECT_TRUE(tree.GetRoot().IsEmpty());
}

TEST(MapReadTest, AFailureOfEveryCallEndsTheReadWithItsCode) {
    const Calls scripts[] = {
        {"Long 03814182", "Long C5048300", "Long 0000002A", "Long 00000001", "Begin 0606", "Long 00000000", "End"},
        {"Long 01FFFFFF", "Long FF810000", "Long 00000007"},
        {"Long 01000000", "Begin 0407", "Long 80008000", "Long 01804100", "Long 00000007", "End"},
        {"Long 01801002", "Long 00000001", "Long 00000002"},
        {"Long 01000000", "Begin 000D", "End"},
        {"Long 01808A00", "Begin 040E", "Long 00000001", "Text \"x\"", "End"},
        {"Long 01808600", "Long 00014700", "Long 00010080"},
    };
    for (const Calls& script : scripts) {
        EXPECT_EQ(static_cast<int>(script.size()), MapRead(script).reading.archive.counter.GetCount());
        for (int k = 1; k <= static_cast<int>(script.size()); ++k) {
            for (const std::int32_t code : {-1, static_cast<std::int32_t>(0x80070057), -2147483647 - 1}) {
                const MapTree tree;
                Reading reading(script);
                reading.archive.counter.FailAt(k, code);
                EXPECT_EQ(code, tree.GetRoot().ReadFromArchive(reading.decoder, false)) << script[0] << ", " << k;
                EXPECT_EQ(k, reading.archive.counter.GetCount());
            }
        }
    }
}

TEST(MapReadTest, WordsThatEndInsideAnyFieldEndTheReadWithNothingMade) {
    const Calls scripts[] = {
        {},  // before the count
        {"Long 04000102"},  // before a key
        {"Long 03000140"},  // the third key lacks a byte
        {"Long 030001E0"},  // the same, three bytes
        {"Long 03000180"},  // before a type byte
        {"Long 01C00190"},  // before the byte that counts extra words
    };
    for (const Calls& script : scripts) {
        const MapRead read(script);
        EXPECT_EQ(kScriptIsOver, read.result);
        EXPECT_EQ(Lines{": Map(tag 1, 0 children) t1"}, read.lines);
        EXPECT_EQ(script.size() + 1, read.reading.archive.operations.size());
    }
}

TEST(MapReadTest, ChildrenReadBeforeAFailureStay) {
    const MapRead read({"Long 02804181", "Long 41000000", "Long 00000007"});
    EXPECT_EQ(kScriptIsOver, read.result);
    EXPECT_EQ((Lines{": Map(tag 1, 2 children) t1", "0: Integer 7 t1", "1: Integer 0 t1"}), read.lines);
}

}  // namespace
}  // namespace KivGenerics::Testing
