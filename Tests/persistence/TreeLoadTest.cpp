// How a whole tree is loaded.

#include <KivGenerics/Integer.h>
#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/Streams.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

constexpr auto kMismatch = static_cast<std::int32_t>(0x8004119A);

using Lines = std::vector<std::string>;

// A map tagged 100 with a vector of two integers, a map tagged 2 of a text, and an empty map of no tag.
const Calls kDocument = InEnvelope({"Begin 0207", "Long 00640300", "Long 01020000",                               //
                                    "Begin 0406", "Long 00024100", "Long 00000007", "Long 00000008", "End",       //
                                    "Begin 0407", "Long 00020189", "Long 83000000", "Text \"text\"", "End",       //
                                    "Begin 0407", "Long 00010000", "End",                                         //
                                    "End"});
const Lines kDocumentLines = {
    ": Map(tag 100, 3 children) t1", "0: Vector(2 children) t2", "0:0: Integer 7 t1",           "0:1: Integer 8 t1",
    "1: Map(tag 2, 1 child) t2",     "1:9: String \"text\" t2",  "2: Map(tag 1, 0 children) t2"};

KivBase::ReturnPtrI<Tree> NewTree() {
    return CreateGenericTree(EnumOrvObjectType{});
}

/// A tree of three nodes.
KivBase::ReturnPtrI<Tree> NewOldTree() {
    auto tree = NewTree();
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    Append<Integer>(*Put<Vector>(*root, 0));
    return tree;
}

TEST(TreeLoadTest, TheEnvelopeAloneIsAnEmptyTree) {
    const auto tree = NewOldTree();
    EXPECT_EQ(0, Load(*tree, InEnvelope({})));
    EXPECT_TRUE(tree->IsEmpty());
}

TEST(TreeLoadTest, TheRootComesWithEverythingBelowIt) {
    const auto tree = NewTree();
    EXPECT_EQ(0, Load(*tree, kDocument));
    EXPECT_EQ(kDocumentLines, Describe(*tree));
    EXPECT_FALSE(tree->IsReadOnly());
}

TEST(TreeLoadTest, TheStreamFormLoadsTheSame) {
    const auto tree = NewTree();
    ScriptedStream stream(kDocument);
    EXPECT_EQ(0, tree->LoadFromStream(&stream));
    EXPECT_EQ(kDocumentLines, Describe(*tree));
    EXPECT_TRUE(stream.references.AreBalanced());
    EXPECT_TRUE(stream.player.IsOver());
}

TEST(TreeLoadTest, TheCallsComeInTheirOrder) {
    const auto tree = NewTree();
    ScriptedArchive archive(InEnvelope({"Begin 0207", "Long 80008000", "Long 01000000", "Begin 0406", "Long 00014800",
                                        "Begin 040B", "Long 00000000", "End", "End", "End"}));
    EXPECT_EQ(0, tree->LoadFromArchive(&archive));
    EXPECT_EQ((Calls{"ReadObjectTag 0", "ReadLong", "ReadObjectTag 0", "ReadLong", "ReadLong", "ReadObjectTag 0",
                     "ReadLong", "ReadExpectedObjectTag 1035", "ReadLong", "EndReadObject", "EndReadObject",
                     "EndReadObject", "EndReadObject"}),
              archive.operations);
    EXPECT_EQ((Lines{": Map(tag 32768, 1 child) t1", "0: Vector(1 child) t2", "0:0: IntegerSet {} t1"}),
              Describe(*tree));
}

TEST(TreeLoadTest, TheEnvelopesTagAndWordAreNotLookedAt) {
    const auto tree = NewTree();
    EXPECT_EQ(0, Load(*tree, {"Begin 1234", "Long DEADBEEF", "Begin 0406", "Long 00000000", "End", "End"}));
    EXPECT_EQ(Lines{": Vector(0 children) t2"}, Describe(*tree));
}

TEST(TreeLoadTest, WhatStandsBehindTheRootIsLeftUnread) {
    const auto tree = NewTree();
    EXPECT_EQ(0, Load(*tree, InEnvelope({"Begin 0406", "Long 00000000", "Text \"later\"", "End", "Begin 0407",
                                         "Long 00000000", "End", "Long 00000001"})));
    EXPECT_EQ(Lines{": Vector(0 children) t2"}, Describe(*tree));
}

TEST(TreeLoadTest, ARootOfAnyKindIsMade) {
    const std::pair<Calls, const char*> rows[] = {
        {{"Begin 0601", "Long 0000002A", "End"}, ": Integer 42 t3"},
        {{"Begin 0403", "Text \"text\"", "End"}, ": String \"text\" t2"},
        {{"Begin 0408", "Begin 040B", "Long 00000001", "Long 00000003", "End", "End"}, ": IntegerSet {3} t2"},
        {{"Begin 040C", "Long 00000001", "Long 00000000", "End"}, ": Integer64 1 t2"},
        {{"Begin 0806", "Long 00000000", "End"}, ": Vector(0 children) t4"},
        {{"Begin 07FE", "Long 00000000", "Long 00000000", "End"}, ": Vector(0 children) t3"},
        {{"Begin 0007", "Long 00000000", "End"}, ": Map(tag 1, 0 children) t0"},
        {{"Begin 07FF", "Long 00640000", "Long 00000000", "End"}, ": Map(tag 100, 0 children) t3"},
    };
    for (const auto& [calls, line] : rows) {
        const auto tree = NewTree();
        EXPECT_EQ(0, Load(*tree, InEnvelope(calls))) << line;
        EXPECT_EQ(Lines{line}, Describe(*tree));
    }
}

TEST(TreeLoadTest, TheSlotsOfTheRootAreThoseOfItsTag) {
    const auto tree = NewTree();
    EXPECT_EQ(0, Load(*tree, InEnvelope({"Begin 0207", "Long 60000000", "End"})));
    EXPECT_EQ(3, static_cast<Map*>(tree->GetRoot())->GetSlotCount());
}

TEST(TreeLoadTest, ARootOfUnknownKindThrowsAsTheFactoryDoes) {
    for (const char* tag : {"Begin 0000", "Begin 000D", "Begin 01FD", "Begin 0107"}) {
        const auto tree = NewOldTree();
        EXPECT_EQ(u"Invalid node type!", ThrownText([&] { Load(*tree, InEnvelope({tag, "End"})); })) << tag;
        EXPECT_TRUE(tree->IsEmpty());
    }
}

TEST(TreeLoadTest, WithoutAnEnvelopeTheResultIsAMismatch) {
    const auto tree = NewOldTree();
    EXPECT_EQ(kMismatch, Load(*tree, {}));
    EXPECT_TRUE(tree->IsEmpty());
    ScriptedStream stream({});
    EXPECT_EQ(kMismatch, tree->LoadFromStream(&stream));
    EXPECT_TRUE(stream.references.AreBalanced());
}

// kept-on-purpose: load-discards-first
TEST(TreeLoadTest, TheOldContentIsDiscardedBeforeAnythingIsRead) {
    const auto tree = NewOldTree();
    ScriptedArchive archive(kDocument);
    archive.counter.FailAt(1, -1);
    EXPECT_EQ(-1, tree->LoadFromArchive(&archive));
    EXPECT_TRUE(tree->IsEmpty());
}

TEST(TreeLoadTest, AFailureOfEveryCallIsAnsweredWithNothingReadFurther) {
    ScriptedArchive whole(kDocument);
    EXPECT_EQ(0, NewTree()->LoadFromArchive(&whole));
    const int calls = whole.counter.GetCount();
    EXPECT_EQ(20, calls);
    for (int k = 1; k <= calls; ++k) {
        for (const std::int32_t code : {-1, static_cast<std::int32_t>(0x80070057), -2147483647 - 1}) {
            for (const bool forGood : {false, true}) {
                const auto tree = NewOldTree();
                ScriptedArchive archive(kDocument);
                archive.counter.FailAt(k, code, forGood);
                EXPECT_EQ(code, tree->LoadFromArchive(&archive)) << k;
                EXPECT_EQ(k, archive.counter.GetCount());
                EXPECT_FALSE(tree->IsReadOnly());
                // What the load left can be loaded over.
                EXPECT_EQ(0, Load(*tree, kDocument));
                EXPECT_EQ(kDocumentLines, Describe(*tree));
            }
        }
    }
}

TEST(TreeLoadTest, AFailureOfEveryCallOfAStreamIsAnsweredAndTheStreamReleased) {
    ScriptedStream whole(kDocument);
    EXPECT_EQ(0, NewTree()->LoadFromStream(&whole));
    const int calls = whole.counter.GetCount();
    EXPECT_EQ(21, calls);
    for (int k = 1; k <= calls; ++k) {
        ScriptedStream failing(kDocument);
        failing.counter.FailAt(k, static_cast<std::int32_t>(0x80030005));
        EXPECT_EQ(static_cast<std::int32_t>(0x80030005), NewTree()->LoadFromStream(&failing));
        EXPECT_EQ(k, failing.counter.GetCount());
        EXPECT_TRUE(failing.references.AreBalanced());

        ScriptedStream throwing(kDocument);
        throwing.counter.ThrowAt(k);
        const auto tree = NewTree();
        EXPECT_THROW(tree->LoadFromStream(&throwing), HostError);
        EXPECT_TRUE(throwing.references.AreBalanced());
        EXPECT_EQ(0, Load(*tree, kDocument));
        EXPECT_EQ(kDocumentLines, Describe(*tree));
    }
}

TEST(TreeLoadTest, ASequenceThatEndsAnywhereIsRefused) {
    for (std::size_t length = 0; length < kDocument.size(); ++length) {
        const auto tree = NewTree();
        EXPECT_GT(0, Load(*tree, {kDocument.begin(), kDocument.begin() + static_cast<std::ptrdiff_t>(length)}))
            << length;
    }
}

TEST(TreeLoadTest, AReadOnlyTreeIsLeftAsItIs) {
    const auto tree = NewOldTree();
    const Lines before = Describe(*tree);
    const int count = tree->GetChangeCount();
    tree->SetReadOnly();
    ScriptedArchive archive(kDocument);
    ScriptedStream stream(kDocument);
    EXPECT_THROW(tree->LoadFromArchive(&archive), ReadOnlyException);
    EXPECT_THROW(tree->LoadFromStream(&stream), ReadOnlyException);
    EXPECT_EQ(u"Operation not allowed on a read-only tree!", ThrownText([&] { tree->LoadFromArchive(nullptr); }));
    EXPECT_EQ(u"Operation not allowed on a read-only tree!", ThrownText([&] { tree->LoadFromStream(nullptr); }));
    EXPECT_EQ(Calls(), archive.operations);
    EXPECT_EQ(Calls(), stream.operations);
    EXPECT_EQ(0, stream.references.added);
    EXPECT_EQ(before, Describe(*tree));
    EXPECT_EQ(count, tree->GetChangeCount());
}

TEST(TreeLoadTest, NullIsRefusedWithItsTextAndTheContentStays) {
    const auto tree = NewOldTree();
    const Lines before = Describe(*tree);
    const int count = tree->GetChangeCount();
    EXPECT_EQ(u"Stream is NULL!", ThrownText([&] { tree->LoadFromStream(nullptr); }));
    EXPECT_EQ(u"Archive is NULL!", ThrownText([&] { tree->LoadFromArchive(nullptr); }));
    EXPECT_EQ(before, Describe(*tree));
    EXPECT_EQ(count + 2, tree->GetChangeCount());
}

int ChangesOfLoad(Tree& tree, const Calls& calls) {
    const int before = tree.GetChangeCount();
    EXPECT_EQ(0, Load(tree, calls));
    return tree.GetChangeCount() - before;
}

TEST(TreeLoadTest, TheEnvelopeCountsTwoChangesAndOneForEachOldNode) {
    EXPECT_EQ(2, ChangesOfLoad(*NewTree(), InEnvelope({})));
    const auto old = NewOldTree();
    // Old: the map's clearing, the vector's, the integer's.
    EXPECT_EQ(5, ChangesOfLoad(*old, InEnvelope({})));
}

TEST(TreeLoadTest, AStreamCountsOneChangeMore) {
    const auto tree = NewTree();
    ScriptedStream stream(InEnvelope({}));
    EXPECT_EQ(0, tree->LoadFromStream(&stream));
    EXPECT_EQ(3, tree->GetChangeCount());
}

TEST(TreeLoadTest, TheRootCountsTwoChangesAndOneForATag) {
    EXPECT_EQ(4, ChangesOfLoad(*NewTree(), InEnvelope({"Begin 0406", "Long 00000000", "End"})));
    EXPECT_EQ(4, ChangesOfLoad(*NewTree(), InEnvelope({"Begin 0407", "Long 00000000", "End"})));
    EXPECT_EQ(5, ChangesOfLoad(*NewTree(), InEnvelope({"Begin 0407", "Long 00010000", "End"})));
}

TEST(TreeLoadTest, AMapsChildCountsThreeChangesAndOneForATag) {
    // Envelope 2, root 3.
    EXPECT_EQ(8, ChangesOfLoad(*NewTree(),
                               InEnvelope({"Begin 0407", "Long 00010180", "Long 41000000", "Long 00000007", "End"})));
    EXPECT_EQ(9, ChangesOfLoad(*NewTree(), InEnvelope({"Begin 0407", "Long 00010100", "Begin 0407", "Long 00020000",
                                                       "End", "End"})));
}

TEST(TreeLoadTest, AVectorsChildCountsTwoChangesAndOneForATag) {
    // Envelope 2, root 2.
    EXPECT_EQ(8, ChangesOfLoad(*NewTree(),
                               InEnvelope({"Begin 0406", "Long 00024100", "Long 00000007", "Long 00000008", "End"})));
    EXPECT_EQ(7, ChangesOfLoad(*NewTree(), InEnvelope({"Begin 0406", "Long 00010000", "Begin 0407", "Long 00020000",
                                                       "End", "End"})));
}

TEST(TreeLoadTest, APositiveResultOfTheEndIsSuccess) {
    ScriptedArchive archive(InEnvelope({}));
    archive.counter.FailAt(4, 1);
    EXPECT_EQ(0, NewTree()->LoadFromArchive(&archive));
    EXPECT_EQ(4, archive.counter.GetCount());
}

}  // namespace
}  // namespace KivGenerics::Testing
