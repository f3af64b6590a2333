#include <KivInspect/Statistics.h>

#include <gtest/gtest.h>

#include "inspect/Saved.h"

using namespace KivInspect;
using namespace InspectTest;

namespace {

using namespace KivGenerics;

TEST(StatisticsTest, TheAnnotatedDocumentIsAddedUp) {
    const auto scanner = ScanData("annotated-tree.kiv");
    const StatisticsResult read = ReadStatistics(*scanner, 10);
    ASSERT_TRUE(read.result.Ok()) << read.result.sentence;
    const Statistics& statistics = read.statistics;
    EXPECT_EQ(4u, statistics.all.nodes);
    EXPECT_EQ(46u, statistics.all.bytes);
    EXPECT_EQ(5u, statistics.byKind[NodeTypeInteger].bytes);
    EXPECT_EQ(9u, statistics.byKind[NodeTypeString].bytes);
    EXPECT_EQ(9u + 14u, statistics.byKind[NodeTypeMap].bytes);
    ASSERT_EQ(2u, statistics.byTag.size());
    EXPECT_EQ(9u, statistics.byTag.at(1).bytes);
    EXPECT_EQ(28u, statistics.byTag.at(4100).bytes);
    EXPECT_EQ(std::vector<std::uint64_t>({1, 1, 2}), statistics.byLevel);
    EXPECT_EQ(std::vector<std::uint64_t>({0, 1, 1}), statistics.byChildren);
    ASSERT_EQ(2u, statistics.largest.size());
    EXPECT_EQ("", statistics.largest[0].key);
    EXPECT_EQ(37u, statistics.largest[0].bytes);
    EXPECT_EQ("0:", statistics.largest[1].key);
    EXPECT_EQ(28u, statistics.largest[1].bytes);
}

TEST(StatisticsTest, TheBytesOfAllKindsAreThoseOfTheTree) {
    const auto bytes = Save(LongTree(3000).Get());
    const StatisticsResult read = ReadStatistics(*Scan(bytes), 3);
    std::uint64_t kinds = 0;
    for (const Share& share : read.statistics.byKind) {
        kinds += share.bytes;
    }
    std::uint64_t tags = 0;
    for (const auto& [tag, share] : read.statistics.byTag) {
        tags += share.bytes;
    }
    // Around the root stand 9 bytes: the tree's own object.
    EXPECT_EQ(read.statistics.all.bytes, kinds + 9);
    EXPECT_EQ(read.statistics.root.bytes, kinds);
    EXPECT_EQ(kinds, tags);
    EXPECT_EQ(3u, read.statistics.largest.size());
    EXPECT_EQ("0:", read.statistics.largest[1].key);
    EXPECT_EQ("1:", read.statistics.largest[2].key);
    EXPECT_EQ(12001u, read.statistics.largest[1].nodes);
}

TEST(StatisticsTest, TheDrawingHasAnAreaForEachPartThatCanBeSeen) {
    const auto bytes = Save(LongTree(50).Get());
    const StatisticsResult read = ReadStatistics(*Scan(bytes), 3);
    StringSink sink;
    WriteTreemap(read.statistics, nullptr, sink);
    EXPECT_EQ("<svg xmlns=", sink.GetText().substr(0, 11));
    EXPECT_NE(std::string::npos, sink.GetText().find("<title>0:490: Map 28682, "));
    EXPECT_NE(std::string::npos, sink.GetText().find("<title>1: Vector, "));
    EXPECT_EQ("</svg>\n", sink.GetText().substr(sink.GetText().size() - 7));
}

}  // namespace
