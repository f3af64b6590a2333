#include "view/Drawing.h"

namespace KivInspect {
namespace {

/// A string of the language: quotes and backslashes are escaped.
std::string Quoted(const std::string& first, const std::string& second) {
    std::string quoted = "\"";
    for (const std::string* const line : {&first, &second}) {
        quoted += line == &second ? "\\n" : "";
        for (const char c : *line) {
            quoted += c == '"' || c == '\\' ? "\\" : "";
            quoted += c;
        }
    }
    return quoted + "\"";
}

}  // namespace

void WriteDot(KivGenerics::Tree* tree, const DrawOptions& options, Sink& sink) {
    BufferedSink out(sink);
    out.GetText() +=
        "digraph tree {\n"
        "  rankdir=LR;\n"
        "  node [shape=box, style=rounded, fontname=\"sans-serif\", fontsize=10];\n";
    const std::vector<DrawnNode> nodes = ChooseNodes(tree, options);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        std::string& text = out.GetText();
        text += "  n" + std::to_string(i) + " [label=" + Quoted(nodes[i].head, nodes[i].value) + ", color=\"" +
                ColorOf(nodes[i].temporality) + "\"];\n";
        if (i > 0) {
            text += "  n" + std::to_string(nodes[i].parent) + " -> n" + std::to_string(i) + ";\n";
        }
        out.FlushWhenFull();
    }
    out.GetText() += "}\n";
    out.Flush();
}

}  // namespace KivInspect
