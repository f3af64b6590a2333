#include <algorithm>

#include "view/Drawing.h"

namespace KivInspect {
namespace {

constexpr int LineHeight = 20;
constexpr int Indent = 22;
constexpr int Margin = 12;
constexpr int CharacterWidth = 7;  // about, of the font below

std::string Number(int value) {
    return std::to_string(value);
}

int YOf(std::size_t i) {
    return Margin + LineHeight / 2 + static_cast<int>(i) * LineHeight;
}
int XOf(const DrawnNode& node) {
    return Margin + 6 + node.depth * Indent;
}

int WidthOf(const std::vector<DrawnNode>& nodes) {
    int width = 200;
    for (const DrawnNode& node : nodes) {
        const auto characters = static_cast<int>(node.head.size() + node.value.size()) + 4;
        width = std::max(width, XOf(node) + characters * CharacterWidth + Margin);
    }
    return width;
}

/// From below the parent's dot to the node's.
std::string Edge(const std::vector<DrawnNode>& nodes, std::size_t i) {
    const DrawnNode& parent = nodes[nodes[i].parent];
    return "<path d=\"M" + Number(XOf(parent)) + " " + Number(YOf(nodes[i].parent) + 5) + "V" + Number(YOf(i)) + "H" +
           Number(XOf(nodes[i]) - 5) + "\"/>\n";
}

std::string Label(const DrawnNode& node, std::size_t i) {
    return "<circle cx=\"" + Number(XOf(node)) + "\" cy=\"" + Number(YOf(i)) + "\" r=\"4\" fill=\"" +
           ColorOf(node.temporality) + "\"/><text x=\"" + Number(XOf(node) + 10) + "\" y=\"" + Number(YOf(i) + 4) +
           "\"><tspan font-weight=\"bold\">" + EscapeXml(node.head) + "</tspan> <tspan fill=\"#555\">" +
           EscapeXml(node.value) + "</tspan></text>\n";
}

}  // namespace

void WriteSvg(KivGenerics::Tree* tree, const DrawOptions& options, Sink& sink) {
    BufferedSink out(sink);
    const std::vector<DrawnNode> nodes = ChooseNodes(tree, options);
    const std::string width = Number(WidthOf(nodes));
    const std::string height = Number(YOf(nodes.size()) + Margin);
    out.GetText() += "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width + "\" height=\"" + height +
                     "\" viewBox=\"0 0 " + width + " " + height +
                     "\" font-family=\"sans-serif\" font-size=\"12\">\n<rect width=\"100%\" height=\"100%\" "
                     "fill=\"#fff\"/>\n<g fill=\"none\" stroke=\"#bbb\">\n";
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        out.GetText() += Edge(nodes, i);
        out.FlushWhenFull();
    }
    out.GetText() += "</g>\n";
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        out.GetText() += Label(nodes[i], i);
        out.FlushWhenFull();
    }
    out.GetText() += "</svg>\n";
    out.Flush();
}

}  // namespace KivInspect
