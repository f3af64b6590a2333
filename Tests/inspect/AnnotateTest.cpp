#include <KivInspect/Annotate.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <gtest/gtest.h>

#include "inspect/Saved.h"

using namespace KivInspect;
using namespace InspectTest;

namespace {

std::string Annotated(KivStorage::FileScanner& scanner, KivStorage::Result& result,
                      const AnnotateOptions& options = {}) {
    StringSink sink;
    result = Annotate(scanner, sink, options);
    return sink.GetText();
}

/// The bytes that an annotation shows, at the offsets that it names.
std::vector<std::uint8_t> ShownBytes(const std::string& text) {
    std::vector<std::uint8_t> bytes;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(bytes.size(), std::stoull(line.substr(0, 8), nullptr, 16)) << line;
        std::istringstream cells(line.substr(8, 52));
        for (std::string cell; cells >> cell;) {
            bytes.push_back(static_cast<std::uint8_t>(std::stoul(cell, nullptr, 16)));
        }
    }
    return bytes;
}

TEST(AnnotateTest, TheAnnotatedDocumentReadsAsItIsDrawn) {
    const auto scanner = ScanData("annotated-tree.kiv");
    KivStorage::Result result;
    const std::string text = Annotated(*scanner, result);
    EXPECT_TRUE(result.Ok()) << result.sentence;
    const std::string pad(63 - 10, ' ');
    std::string shortened;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        shortened += line.substr(0, 8) + " " + line.substr(63) + "\n";
    }
    EXPECT_EQ(
        "00000000 the mark\n"
        "00000008 version 1\n"
        "0000000C reserved\n"
        "00000010 checksum of the header\n"
        "00000018 block 1 holds 46 bytes of items\n"
        "0000001C an object opens, tag 0: the tree\n"
        "0000001F   a long, 0\n"
        "00000024   the root Map opens, temporality 1 (default)\n"
        "00000027     packed 00 01 01 00: tag 1; 1 child; index 0, a composite\n"
        "0000002C     0: Map opens, temporality 2 (persistent)\n"
        "0000002F       packed 10 04 02 81: tag 4100; 2 children; index 1, a value\n"
        "00000034       packed 81 83 83 00: kind 1 (Integer), temporality 2 (persistent); index 3, a value; kind 3 "
        "(String), temporality 2 (persistent)\n"
        "00000039       0:1: Integer 42\n"
        "0000003E       0:3: String \"Hi\"\n"
        "00000047     0: ends\n"
        "00000048   the root ends\n"
        "00000049 the tree ends\n"
        "0000004A checksum of block 1\n"
        "00000052 the trailer\n"
        "00000056 number of blocks: 1\n"
        "0000005E number of items: 12\n"
        "00000066 bytes of items: 46\n"
        "0000006E the chain\n"
        "00000076 checksum of the trailer\n",
        shortened);
}

TEST(AnnotateTest, EveryByteOfAFileIsShownOnceInItsPlace) {
    for (const int count : {1, 3000}) {
        const auto bytes = Save(LongTree(count).Get());
        KivStorage::Result result;
        const std::string text = Annotated(*Scan(bytes), result);
        EXPECT_TRUE(result.Ok()) << result.sentence;
        EXPECT_TRUE(bytes == ShownBytes(text)) << count;
    }
}

TEST(AnnotateTest, EveryByteIsShownWhenATextGoesOnThroughSeveralBlocks) {
    auto tree = LongTree(1);
    auto* const map = static_cast<KivGenerics::Map*>(static_cast<KivGenerics::Map*>(tree->GetRoot())->Get(0));
    static_cast<KivGenerics::String*>(map->NewNode(5, KivGenerics::NodeTypeString))
        ->Set(KivBase::WString(100000, u'x'));
    const auto bytes = Save(tree.Get());
    KivStorage::Result result;
    EXPECT_TRUE(bytes == ShownBytes(Annotated(*Scan(bytes), result)));
    EXPECT_TRUE(result.Ok()) << result.sentence;
}

TEST(AnnotateTest, EveryByteOfADamagedFileIsShownAndTheDamageIsMarked) {
    const auto whole = Save(LongTree(8000).Get());
    for (const std::size_t place : {std::size_t{30}, std::size_t{24}, std::size_t{65600}, whole.size() - 30}) {
        auto bytes = whole;
        bytes[place] ^= 0x80;
        KivStorage::Result result;
        const std::string text = Annotated(*Scan(bytes), result);
        EXPECT_FALSE(result.Ok());
        EXPECT_NE(std::string::npos, text.find("WRONG")) << place;
        EXPECT_TRUE(bytes == ShownBytes(text)) << place;
    }
}

TEST(AnnotateTest, ATruncatedFileIsShownToItsEnd) {
    auto bytes = Save(LongTree(8000).Get());
    bytes.resize(70000);
    KivStorage::Result result;
    EXPECT_TRUE(bytes == ShownBytes(Annotated(*Scan(bytes), result)));
    EXPECT_EQ(KivStorage::StorageTruncated, result.code);
}

TEST(AnnotateTest, OnlyTheLinesOfARangeAreWritten) {
    const auto scanner = ScanData("annotated-tree.kiv");
    AnnotateOptions options;
    options.from = 0x39;
    options.to = 0x3E;
    KivStorage::Result result;
    const std::string text = Annotated(*scanner, result, options);
    EXPECT_EQ("00000039  01 2A 00 00 00", text.substr(0, 24));
    EXPECT_EQ(text.size() - 1, text.find('\n'));
}

}  // namespace
