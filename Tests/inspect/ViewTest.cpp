#include <KivInspect/View.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <gtest/gtest.h>

#include "inspect/Saved.h"

using namespace KivInspect;
using namespace InspectTest;

namespace {

using namespace KivGenerics;

/// What stands in the page's element of data, decoded.
std::string DataOf(const std::string& page) {
    const std::string begin = "<script id=\"data\" type=\"application/octet-stream\">";
    const std::size_t at = page.find(begin) + begin.size();
    std::string bytes;
    unsigned word = 0;
    int bits = 0;
    for (std::size_t i = at; page[i] != '<' && page[i] != '='; ++i) {
        const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        word = word << 6 | static_cast<unsigned>(digits.find(page[i]));
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes += static_cast<char>(word >> bits & 0xFF);
        }
    }
    return bytes;
}

KivBase::ReturnPtrI<Tree> SmallTree(int number) {
    auto tree = CreateGenericTree(static_cast<EnumOrvObjectType>(0));
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const map = static_cast<Map*>(root->NewNode(0, NodeTypeMap, false, static_cast<SemanticTag>(4100)));
    static_cast<Integer*>(map->NewNode(1, NodeTypeInteger))->Set(number);
    return tree;
}

TEST(ViewTest, ThePageHoldsTheTreeInBytes) {
    const auto tree = SmallTree(42);
    StringSink sink;
    WritePage({tree.Get(), "a & <b>.kiv"}, nullptr, nullptr, sink);
    const std::string expected(
        "\x00\x03"                      // one tree, three nodes
        "\x00\x17\x01\x01\x01"          // the root: a map of default temporality, tag 1, a child
        "\x01\x27\x84\x20\x01\x01"      // 0: a persistent map, tag 4100, a child
        "\x02\x21\x02"
        "42"
        "\x00",
        19);  // 1: an integer
    EXPECT_EQ(expected, DataOf(sink.GetText()));
    EXPECT_NE(std::string::npos, sink.GetText().find("<title>a &amp; &lt;b&gt;.kiv</title>"));
    EXPECT_EQ(std::string::npos, sink.GetText().find("{{"));
}

TEST(ViewTest, TwoTreesAreAlignedByKey) {
    const auto left = SmallTree(42);
    const auto right = SmallTree(43);
    auto* const map = static_cast<Map*>(static_cast<Map*>(right->GetRoot())->Get(0));
    map->NewNode(5, NodeTypeBoolean);
    const ViewTree other{right.Get(), "right"};
    StringSink sink;
    WritePage({left.Get(), "left"}, &other, nullptr, sink);
    const std::string data = DataOf(sink.GetText());
    const std::string expected(
        "\x01\x04"
        "\x00\x00\x17\x01\x01\x01"
        "\x01\x00\x27\x84\x20\x01\x02"
        "\x02\x01\x21\x02"
        "42"
        "\x21\x02"
        "43"
        "\x00"
        "\x06\x03\x25\x05"
        "false"
        "\x00",
        36);
    EXPECT_EQ(expected, data);
}

TEST(ViewTest, ThePageLoadsNothing) {
    const auto tree = SmallTree(1);
    StringSink sink;
    WritePage({tree.Get(), "tree"}, nullptr, nullptr, sink);
    EXPECT_EQ(std::string::npos, sink.GetText().find("://"));
    EXPECT_EQ(std::string::npos, sink.GetText().find("src="));
    EXPECT_NE(std::string::npos, sink.GetText().find("default-src 'none'"));
}

TEST(ViewTest, NamesStandInThePage) {
    Names names;
    names.SetTag(static_cast<SemanticTag>(4100), "thing</script>");
    names.SetIndex(static_cast<SemanticTag>(4100), 1, "size");
    const auto tree = SmallTree(1);
    StringSink sink;
    WritePage({tree.Get(), "tree"}, nullptr, &names, sink);
    EXPECT_NE(std::string::npos,
              sink.GetText().find(
                  "{\"tags\":{\"4100\":\"thing\\u003c/script>\"},\"indexes\":{\"4100\":{\"1\":\"size\"}}}"));
}

TEST(ViewTest, AGraphHasANodeForEachAndAnEdgeToItsParent) {
    const auto tree = SmallTree(42);
    StringSink sink;
    WriteDot(tree.Get(), {}, sink);
    EXPECT_EQ(
        "digraph tree {\n"
        "  rankdir=LR;\n"
        "  node [shape=box, style=rounded, fontname=\"sans-serif\", fontsize=10];\n"
        "  n0 [label=\"root Map 1\\n1 child\", color=\"#737b87\"];\n"
        "  n1 [label=\"0: Map 4100\\n1 child\", color=\"#1f7a3f\"];\n"
        "  n0 -> n1;\n"
        "  n2 [label=\"1: Integer\\n42\", color=\"#1f7a3f\"];\n"
        "  n1 -> n2;\n"
        "}\n",
        sink.GetText());
}

TEST(ViewTest, WhatIsLeftOutOfADrawingIsSaid) {
    const auto tree = LongTree(100);
    DrawOptions shallow;
    shallow.depth = 1;
    StringSink sink;
    WriteSvg(tree.Get(), shallow, sink);
    EXPECT_NE(std::string::npos, sink.GetText().find("100 nodes more"));
    DrawOptions few;
    few.limit = 10;
    StringSink limited;
    WriteDot(tree.Get(), few, limited);
    EXPECT_NE(std::string::npos, limited.GetText().find("n10 [label=\"...\\n493 nodes more\""));
}

}  // namespace
