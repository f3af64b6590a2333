// How vectors read themselves, well-formed sequences and others.

#include <string>

#include <KivGenerics/Integer.h>
#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

constexpr auto kMismatch = static_cast<std::int32_t>(0x8004119A);

using Lines = std::vector<std::string>;

/// A vector that has read a sequence, with what came of it.
struct VectorRead {
    explicit VectorRead(const Calls& calls, bool longCount = false) : reading(calls) {
        result = tree.GetRoot().ReadFromArchive(reading.decoder, longCount);
        lines = Describe(tree.GetRoot());
    }

    Reading reading;
    VectorTree tree;
    std::int32_t result = 0;
    Lines lines;
};

TEST(VectorReadTest, AZeroWordIsAnEmptyVector) {
    const VectorRead read({"Long 00000000"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ(Lines{": Vector(0 children) t1"}, read.lines);
    EXPECT_EQ(1, read.reading.archive.counter.GetCount());
}

TEST(VectorReadTest, LeavesOfEveryKindAreMadeFromTheTypeByte) {
    const std::pair<Calls, const char*> rows[] = {
        {{"Long 00014100", "Long 0000002A"}, "0: Integer 42 t1"},
        {{"Long 00018200", "Guid 00000001-0002-0003-0405060708090A0B"},
         "0: GlobalID {00000001-0002-0003-0405-060708090A0B} t2"},
        {{"Long 0001C300", "Text \"text\""}, "0: String \"text\" t3"},
        {{"Long 00010400", "Double 3FF8000000000000"}, "0: Double 1.5 t0"},
        {{"Long 00014500", "Long 00000001"}, "0: Boolean true t1"},
        {{"Long 00018800", "Begin 040B", "Long 00000001", "Long 00000005", "End"}, "0: IntegerSet {5} t2"},
        {{"Long 00018900", "Begin 040D", "Long 00000000", "End"}, "0: IdSet {} t2"},
        {{"Long 00018A00", "Begin 040E", "Long 00000001", "Text \"x\"", "End"}, "0: StringSet {\"x\"} t2"},
        {{"Long 00018B00", "Begin 040C", "Long 00000001", "Double 4000000000000000", "End"}, "0: DoubleSet {2} t2"},
        {{"Long 00018C00", "Long 00000002", "Long 00000001"}, "0: Integer64 4294967298 t2"},
    };
    for (const auto& [calls, line] : rows) {
        const VectorRead read(calls);
        EXPECT_EQ(0, read.result) << line;
        EXPECT_EQ((Lines{": Vector(1 child) t1", line}), read.lines);
        EXPECT_TRUE(read.reading.archive.player.IsOver()) << line;
    }
}

TEST(VectorReadTest, EveryElementTakesTheTemporalityOfTheTypeByte) {
    const VectorRead read({"Long 0002C100", "Long 00000001", "Long 00000002"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Vector(2 children) t1", "0: Integer 1 t3", "1: Integer 2 t3"}), read.lines);
}

TEST(VectorReadTest, ManyElementsTakeTheTemporalityOfTheTypeByteToo) {
    Calls calls = {"Long 0014C100"};
    Lines lines = {": Vector(20 children) t1"};
    for (int i = 0; i < 20; ++i) {
        calls.push_back("Long 00000005");
        lines.push_back(std::to_string(i) + ": Integer 5 t3");
    }
    const VectorRead read(calls);
    EXPECT_EQ(0, read.result);
    EXPECT_EQ(lines, read.lines);
}

TEST(VectorReadTest, ALongCountTakesFourBytes) {
    const VectorRead read({"Long 00000002", "Long 41000000", "Long 00000001", "Long 00000002"}, true);
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Vector(2 children) t1", "0: Integer 1 t1", "1: Integer 2 t1"}), read.lines);
}

TEST(VectorReadTest, ExtraWordsOfAKnownKindAreNotSkipped) {
    const VectorRead read({"Long 00014105", "Long 00000001", "Long 00000002"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Vector(1 child) t1", "0: Integer 1 t1"}), read.lines);
    EXPECT_EQ(2, read.reading.archive.counter.GetCount());
}

TEST(VectorReadTest, CompositesAreReadFromTheirObjects) {
    const VectorRead read({"Long 00020000", "Begin 0407", "Long 00640181", "Long 41000000", "Long 00000007", "End",
                           "Begin 0607", "Long 80008000", "Long 00000000", "End"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Vector(2 children) t1", "0: Map(tag 100, 1 child) t2", "0:1: Integer 7 t1",
                     "1: Map(tag 32768, 0 children) t3"}),
              read.lines);
}

TEST(VectorReadTest, ACompositesTagMayCallForALongCount) {
    const VectorRead vectors({"Long 00010000", "Begin 05FE", "Long 00000001", "Long 41000000", "Long 00000009", "End"});
    EXPECT_EQ(0, vectors.result);
    EXPECT_EQ((Lines{": Vector(1 child) t1", "0: Vector(1 child) t2", "0:0: Integer 9 t1"}), vectors.lines);
    const VectorRead maps({"Long 00010000", "Begin 05FF", "Long 00010000", "Long 00018041", "Long 00000009", "End"});
    EXPECT_EQ(0, maps.result);
    EXPECT_EQ((Lines{": Vector(1 child) t1", "0: Map(tag 1, 1 child) t2", "0:0: Integer 9 t1"}), maps.lines);
}

TEST(VectorReadTest, WhatAnObjectHoldsBeyondTheNodeIsLeftUnread) {
    const VectorRead read({"Long 00020000", "Begin 0406", "Long 00000000", "Text \"later\"", "Begin 0001", "End", "End",
                           "Begin 0406", "Long 00000000", "End"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Vector(2 children) t1", "0: Vector(0 children) t2", "1: Vector(0 children) t2"}), read.lines);
}

TEST(VectorReadTest, ALeafMayComeAsAnObject) {
    const VectorRead read(
        {"Long 00020000", "Begin 0401", "Long 00000005", "End", "Begin 0601", "Long 00000006", "End"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Vector(2 children) t1", "0: Integer 5 t2", "1: Integer 6 t3"}), read.lines);
}

TEST(VectorReadTest, ObjectsOfTwoKindsThrowAsAddDoes) {
    Reading reading({"Long 00020000", "Begin 0406", "Long 00000000", "End", "Begin 0407", "Long 00010000", "End"});
    const VectorTree tree;
    EXPECT_EQ(u"Vector::Add::Different children type",
              ThrownText([&] { tree.GetRoot().ReadFromArchive(reading.decoder, false); }));
    EXPECT_EQ(1, tree.GetRoot().GetSize(TemporalityTemporary));
}

TEST(VectorReadTest, AnObjectOfUnknownKindThrowsAsTheFactoryDoes) {
    for (const char* tag : {"Begin 0000", "Begin 000D", "Begin 0210", "Begin 01FD", "Begin 0107"}) {
        Reading reading({"Long 00010000", tag, "End"});
        const VectorTree tree;
        EXPECT_EQ(u"Invalid node type!", ThrownText([&] { tree.GetRoot().ReadFromArchive(reading.decoder, false); }))
            << tag;
        EXPECT_TRUE(tree.GetRoot().IsEmpty());
    }
}

TEST(VectorReadTest, AMissingObjectIsAMismatch) {
    const VectorRead first({"Long 00010000"});
    EXPECT_EQ(kMismatch, first.result);
    EXPECT_EQ(Lines{": Vector(0 children) t1"}, first.lines);
    EXPECT_EQ((Calls{"ReadLong", "ReadObjectTag 0"}), first.reading.archive.operations);
    const VectorRead second({"Long 00030000", "Begin 0406", "Long 00000000", "End"});
    EXPECT_EQ(kMismatch, second.result);
    EXPECT_EQ((Lines{": Vector(1 child) t1", "0: Vector(0 children) t2"}), second.lines);
    EXPECT_EQ((Calls{"ReadLong", "ReadObjectTag 0", "ReadLong", "EndReadObject", "ReadObjectTag 0"}),
              second.reading.archive.operations);
}

// kept-on-purpose: unknown-kinds-skipped
TEST(VectorReadTest, LeavesOfUnknownKindAreSkippedByTheirWords) {
    for (const char* header : {"Long 00028D02", "Long 00021002", "Long 0002FF02"}) {
        const VectorRead read(
            {header, "Long 00000001", "Long 00000002", "Long 00000003", "Long 00000004", "Text \"\""});
        EXPECT_EQ(0, read.result) << header;
        EXPECT_EQ(Lines{": Vector(0 children) t1"}, read.lines);
        EXPECT_EQ(5, read.reading.archive.counter.GetCount());
    }
}

TEST(VectorReadTest, UnknownLeavesMayHaveUpTo255Words) {
    const VectorRead read(Calls{"Long 00018DFF"} + Repeat(256, {"Long 00000007"}));
    EXPECT_EQ(0, read.result);
    EXPECT_EQ(256, read.reading.archive.counter.GetCount());
}

TEST(VectorReadTest, UnknownLeavesWithoutWordsAreSkippedAtOnce) {
    const VectorRead read({"Long FFFFFFFF", "Long 8D000000"}, true);
    EXPECT_EQ(0, read.result);
    EXPECT_EQ(2, read.reading.archive.counter.GetCount());
    EXPECT_EQ(Lines{": Vector(0 children) t1"}, read.lines);
}

TEST(VectorReadTest, KindZeroIsSkippedLikeUnknownKinds) {
    const VectorRead bare({"Long 00034000", "Long 00000001"});
    EXPECT_EQ(0, bare.result);
    EXPECT_EQ(1, bare.reading.archive.counter.GetCount());
    const VectorRead withWords({"Long 00020003", "Long 00000001", "Long 00000001", "Long 00000001", "Long 00000001",
                                "Long 00000001", "Long 00000001", "Long 00000001"});
    EXPECT_EQ(0, withWords.result);
    EXPECT_EQ(7, withWords.reading.archive.counter.GetCount());
    EXPECT_EQ(Lines{": Vector(0 children) t1"}, withWords.lines);
}

TEST(VectorReadTest, VectorsInALeafCodeAreReadInlineWithShortCounts) {
    const VectorRead read({"Long 00028600", "Long 00014100", "Long 00000007", "Long 00000000"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Vector(2 children) t1", "0: Vector(1 child) t2", "0:0: Integer 7 t1",
                     "1: Vector(0 children) t2"}),
              read.lines);
    EXPECT_EQ((Calls{"ReadLong", "ReadLong", "ReadLong", "ReadLong"}), read.reading.archive.operations);
}

TEST(VectorReadTest, MapsInALeafCodeAreReadInlineEachWithItsSemanticTag) {
    const VectorRead read(
        {"Long 00024700", "Long 00640181", "Long 41000000", "Long 00000009", "Long 80008000", "Long 00000000"});
    EXPECT_EQ(0, read.result);
    EXPECT_EQ((Lines{": Vector(2 children) t1", "0: Map(tag 100, 1 child) t1", "0:1: Integer 9 t1",
                     "1: Map(tag 32768, 0 children) t1"}),
              read.lines);
    EXPECT_EQ(Repeat(6, {"ReadLong"}), read.reading.archive.operations);
}

TEST(VectorReadTest, AfterALongCountElementsStartAFreshWord) {
    const VectorRead inlined({"Long 00000001", "Long 87001234", "Long 00640000"}, true);
    EXPECT_EQ(0, inlined.result);
    EXPECT_EQ((Lines{": Vector(1 child) t1", "0: Map(tag 100, 0 children) t2"}), inlined.lines);
    const VectorRead objects({"Long 00000001", "Long 00001234", "Begin 0407", "Long 00640000", "End"}, true);
    EXPECT_EQ(0, objects.result);
    EXPECT_EQ((Lines{": Vector(1 child) t1", "0: Map(tag 100, 0 children) t2"}), objects.lines);
}

TEST(VectorReadTest, AHugeCountWithNothingBehindItFailsPromptlyWithoutReservingMemory) {
    // By type code: integers, texts, sets, inline vectors and maps, unknown kinds with a word, objects.
    for (const char* code : {"Long 41000000", "Long 43000000", "Long 46000000", "Long 47000000", "Long 8D010000"}) {
        const VectorTree tree;
        const std::size_t reserved = tree->BufferQueryA();
        Reading reading({"Long FFFFFFFF", code});
        EXPECT_EQ(kScriptIsOver, tree.GetRoot().ReadFromArchive(reading.decoder, true)) << code;
        EXPECT_EQ(reserved, tree->BufferQueryA());
        EXPECT_EQ(3, reading.archive.counter.GetCount());
    }
    for (const char* code : {"Long 48000000", "Long 00000000"}) {
        const VectorTree tree;
        const std::size_t reserved = tree->BufferQueryA();
        Reading reading({"Long FFFFFFFF", code});
        EXPECT_EQ(kMismatch, tree.GetRoot().ReadFromArchive(reading.decoder, true)) << code;
        EXPECT_EQ(reserved, tree->BufferQueryA());
    }
}

TEST(VectorReadTest, AFailureOfEveryCallEndsTheReadWithItsCode) {
    const Calls scripts[] = {
        {"Long 00024100", "Long 00000001", "Long 00000002"},
        {"Long 00018C00", "Long 00000001", "Long 00000002"},
        {"Long 00020000", "Begin 0407", "Long 00640181", "Long 41000000", "Long 00000007", "End", "Begin 0407",
         "Long 80008000", "Long 00000000", "End"},
        {"Long 00018A00", "Begin 040E", "Long 00000001", "Text \"x\"", "End"},
        {"Long 00028D01", "Long 00000001", "Long 00000002"},
        {"Long 00018600", "Long 00018700", "Long 00010180", "Long 41000000", "Long 00000001"},
    };
    for (const Calls& script : scripts) {
        const int calls = VectorRead(script).reading.archive.counter.GetCount();
        EXPECT_EQ(static_cast<int>(script.size()), calls);
        for (int k = 1; k <= calls; ++k) {
            for (const std::int32_t code : {-1, static_cast<std::int32_t>(0x80070057), -2147483647 - 1}) {
                const VectorTree tree;
                Reading reading(script);
                reading.archive.counter.FailAt(k, code);
                EXPECT_EQ(code, tree.GetRoot().ReadFromArchive(reading.decoder, false)) << k;
                EXPECT_EQ(k, reading.archive.counter.GetCount());
            }
        }
    }
}

TEST(VectorReadTest, TheLongCountsSecondWordMayFail) {
    const VectorTree tree;
    Reading reading({"Long 00000001"});
    EXPECT_EQ(kScriptIsOver, tree.GetRoot().ReadFromArchive(reading.decoder, true));
    EXPECT_EQ(2, reading.archive.counter.GetCount());
    EXPECT_TRUE(tree.GetRoot().IsEmpty());
}

TEST(VectorReadTest, ElementsReadBeforeAFailureStay) {
    const VectorRead read({"Long 00034100", "Long 00000001", "Long 00000002"});
    EXPECT_EQ(kScriptIsOver, read.result);
    EXPECT_EQ((Lines{": Vector(3 children) t1", "0: Integer 1 t1", "1: Integer 2 t1", "2: Integer 0 t1"}), read.lines);
}

}  // namespace
}  // namespace KivGenerics::Testing
