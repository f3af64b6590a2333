// How a root map writes itself: composites of its fixed slots alone.

#include <KivGenerics/Integer.h>
#include <gtest/gtest.h>

#include "persistence/Archives.h"
#include "persistence/Trees.h"

namespace KivGenerics::Testing {
namespace {

const Calls kEmptyVector = {"Begin 0406", "Long 00000000", "End"};

Calls RootWriteOf(Node& node, bool withTransient, int slotFlags) {
    RecordingArchive archive;
    EXPECT_EQ(0, node.WriteToArchive(&archive, withTransient, slotFlags));
    return archive.calls;
}

/// Thirteen fixed slots: vectors in 0 to 4, a leaf in 5; a vector in the overflow store.
class RootMapArchiveTest : public testing::Test {
protected:
    RootMapArchiveTest() {
        for (int i = 0; i <= 4; ++i) {
            Put<Vector>(GetMap(), i);
        }
        PutValue<Integer>(GetMap(), 5, 5);
        Put<Vector>(GetMap(), 20);
    }

    Map& GetMap() const { return tree_.GetRoot(); }

private:
    MapTree tree_{100};
};

// kept-on-purpose: root-write-count
TEST_F(RootMapArchiveTest, LeavesAndOverflowAreCountedAndNotWritten) {
    EXPECT_EQ((Calls{"Begin 0207", "Long 00640700", "Long 01020304"} + Repeat(5, kEmptyVector) + Calls{"End"}),
              RootWriteOf(GetMap(), false, 255));
}

// kept-on-purpose: slot-flags
TEST_F(RootMapArchiveTest, WithTransientNodesTheFlagsGateTheFirstThreeSlots) {
    struct Row {
        int flags;
        Calls words;
        int vectors;
    };
    const Row rows[] = {
        {0x00, {"Long 00640703", "Long 04000000"}, 2}, {0x01, {"Long 00640700", "Long 03040000"}, 3},
        {0x10, {"Long 00640700", "Long 03040000"}, 3}, {0x02, {"Long 00640701", "Long 03040000"}, 3},
        {0x08, {"Long 00640702", "Long 03040000"}, 3}, {0x04, {"Long 00640703", "Long 04000000"}, 2},
        {0xE4, {"Long 00640703", "Long 04000000"}, 2}, {0x0A, {"Long 00640701", "Long 02030400"}, 4},
        {0x1B, {"Long 00640700", "Long 01020304"}, 5}, {255, {"Long 00640700", "Long 01020304"}, 5},
        {-1, {"Long 00640700", "Long 01020304"}, 5},
    };
    for (const Row& row : rows) {
        EXPECT_EQ((Calls{"Begin 0207"} + row.words + Repeat(row.vectors, kEmptyVector) + Calls{"End"}),
                  RootWriteOf(GetMap(), true, row.flags))
            << row.flags;
    }
}

TEST_F(RootMapArchiveTest, WithoutTransientNodesTheFlagsDoNotCount) {
    EXPECT_EQ(RootWriteOf(GetMap(), false, 255), RootWriteOf(GetMap(), false, 0));
}

TEST_F(RootMapArchiveTest, CompositesBeyondTheLimitAreNeitherCountedNorWritten) {
    GetMap().Get(0)->SetTemporality(TemporalityTransient);
    GetMap().Get(1)->SetTemporality(TemporalityTemporary);
    EXPECT_EQ((Calls{"Begin 0207", "Long 00640502", "Long 03040000"} + Repeat(3, kEmptyVector) + Calls{"End"}),
              RootWriteOf(GetMap(), false, 0));
    EXPECT_EQ((Calls{"Begin 0207", "Long 00640600", "Long 02030400", "Begin 0606", "Long 00000000", "End"} +
               Repeat(3, kEmptyVector) + Calls{"End"}),
              RootWriteOf(GetMap(), true, 255));
}

TEST_F(RootMapArchiveTest, AFailureAnywhereStopsTheWriteWithItsCode) {
    // The first of the two words is written when it is full; its failure is forgotten, so it is left out here.
    for (const int k : {1, 3, 4, 5, 6, 7, 10, 18, 19}) {
        RecordingArchive archive;
        archive.counter.FailAt(k, -k);
        const std::int32_t result = GetMap().WriteToArchive(&archive, false, 255);
        EXPECT_EQ(-k, result);
        EXPECT_EQ(k, archive.counter.GetCount());
    }
    EXPECT_EQ(19U, RootWriteOf(GetMap(), false, 255).size());
}

TEST(RootWriteTest, ALongCountIsWrittenAsSuch) {
    const MapTree tree(107);
    for (int i = 0; i < 32768; ++i) {
        PutValue<Integer>(tree.GetRoot(), i + 1, i);
    }
    EXPECT_EQ((Calls{"Begin 03FF", "Long 006B0000", "Long 80000000", "End"}), RootWriteOf(tree.GetRoot(), false, 255));
}

TEST(RootWriteTest, ARootOfCompositesInFixedSlotsComesBack) {
    const MapTree tree(100);
    AppendValue<Integer>(*Put<Vector>(tree.GetRoot(), 0), 4);
    Put<Map>(tree.GetRoot(), 12);
    const Calls calls = RootWriteOf(tree.GetRoot(), false, 255);
    EXPECT_EQ((Calls{"Begin 0207", "Long 00640200", "Long 0C000000", "Begin 0406", "Long 00014100", "Long 00000004",
                     "End", "Begin 0407", "Long 00010000", "End", "End"}),
              calls);
    const MapTree loaded;
    EXPECT_EQ(0, Load(*loaded, InEnvelope(calls)));
    EXPECT_EQ(Describe(*tree), Describe(*loaded));
}

TEST(RootWriteTest, ARootWithALeafBesideItsCompositesDoesNotComeBack) {
    const MapTree tree(100);
    Put<Vector>(tree.GetRoot(), 0);
    Put<Integer>(tree.GetRoot(), 1);
    const MapTree loaded;
    EXPECT_EQ(kOtherCall, Load(*loaded, InEnvelope(RootWriteOf(tree.GetRoot(), false, 255))));
}

TEST(RootWriteTest, OnlyMapsHaveOne) {
    const auto tree = CreateGenericTree(EnumOrvObjectType{});
    for (int type = 1; type <= 12; ++type) {
        if (type == NodeTypeMap) {
            continue;
        }
        RecordingArchive archive;
        Node* const root = tree->NewRoot(NodeType(type));
        EXPECT_EQ(static_cast<std::int32_t>(0x80004001), root->WriteToArchive(&archive, true, 255)) << type;
        EXPECT_EQ(Calls(), archive.calls);
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
