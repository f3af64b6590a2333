#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <KivGenerics/Children.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>
#include <KivInspect/JsonLine.h>
#include <KivInspect/Key.h>
#include <KivInspect/NodeSize.h>
#include <KivInspect/ValueText.h>
#include <KivInspect/Walk.h>

#include "kivtree/Colors.h"
#include "kivtree/Verbs.h"

namespace KivTree {
namespace {

using KivGenerics::Node;

struct Options {
    std::string file;
    std::string key;
    std::string sort = "key";
    bool recursive = false;
    bool longLines = false;
    bool json = false;
};

struct Row {
    Node* node;
    std::string key;
    int depth;
    std::size_t size;
};

constexpr std::size_t ShortWidth = 40;
constexpr std::size_t LongWidth = 100;

/// Adds to the size of each composite what stands below it. One pass from the end, where the children are: their number
/// does not matter, nor how deep they stand.
void AddUp(std::vector<Row>& rows) {
    std::vector<std::size_t> below;
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        const auto depth = static_cast<std::size_t>(row->depth);
        below.resize(std::max(below.size(), depth + 2));
        row->size += std::exchange(below[depth + 1], 0);
        below[depth] += row->size;
    }
}

std::vector<Row> Collect(Node* top, bool recursive, const KivInspect::Names* names) {
    std::vector<Row> rows;
    KivInspect::Walk walk(top);
    const Node* const first = walk.Next();  // the top itself, where there is one
    const bool isLeaf = first != nullptr && !KivGenerics::IsCompositeType(first->GetType());
    for (Node* node = isLeaf ? top : walk.Next(); node != nullptr; node = walk.Next()) {
        const std::size_t size = recursive ? KivInspect::SizeOfValue(node) : KivInspect::SizeOf(node);
        rows.push_back({node, walk.GetKey(names), walk.GetDepth(), size});
        if (!recursive) {
            walk.SkipChildren();
        }
    }
    if (recursive) {
        AddUp(rows);
    }
    return rows;
}

/// The row that has the least stands first.
std::int64_t RankOf(const Row& row, const std::string& by) {
    if (by == "size") {
        return -static_cast<std::int64_t>(row.size);
    }
    if (by == "kind") {
        return row.node->GetType();
    }
    return by == "tag" ? static_cast<std::int64_t>(row.node->GetSemanticTag())
                       : static_cast<std::int64_t>(row.node->GetTemporality());
}

/// Rows that are equal in what is asked for stay in the order of their keys.
void Sort(std::vector<Row>& rows, const std::string& by) {
    if (by == "key") {
        return;
    }
    std::vector<std::pair<std::int64_t, std::size_t>> order;
    order.reserve(rows.size());
    for (const Row& row : rows) {
        order.emplace_back(RankOf(row, by), order.size());
    }
    std::sort(order.begin(), order.end());
    std::vector<Row> sorted;
    sorted.reserve(rows.size());
    for (const auto& each : order) {
        sorted.push_back(std::move(rows[each.second]));
    }
    rows = std::move(sorted);
}

std::string Padded(const std::string& text, std::size_t width) {
    return text.size() < width ? text + std::string(width - text.size(), ' ') : text;
}

void PrintJson(const std::vector<Row>& rows, const KivInspect::Names* names, Context& context) {
    for (const Row& row : rows) {
        KivInspect::JsonLine line;
        KivInspect::DescribeNode(line, row.node, row.key, names);
        line.Add("size", static_cast<std::int64_t>(row.size));
        context.Out().Write(line.Take());
    }
}

void PrintText(const std::vector<Row>& rows, const Options& options, const KivInspect::Names* names, Context& context) {
    std::size_t keyWidth = 0;
    for (const Row& row : rows) {
        keyWidth = std::min<std::size_t>(std::max(keyWidth, row.key.size()), ShortWidth);
    }
    for (const Row& row : rows) {
        std::string line = Padded(row.key, keyWidth) + "  " + Padded(ToText(row.node->GetType()), 10) + "  ";
        line += Padded(KivInspect::TagText(row.node, names), options.longLines ? 16 : 8) + "  ";
        line += Colored(Padded(KivInspect::TemporalityText(row.node), 10), row.node, context.HasColors()) + "  ";
        line += Padded(std::to_string(row.size), 8) + "  ";
        line += KivInspect::ShortText(row.node, options.longLines ? LongWidth : ShortWidth);
        context.Out().Write(line + "\n");
    }
}

int RunLs(const Options& options, Context& context) {
    const Input input = context.Load(options.file);
    const KivInspect::FoundNode found = KivInspect::FindNode(input.tree.Get(), options.key, &input.names);
    if (found.node == nullptr && !(options.key.empty() && input.tree->IsEmpty())) {
        Context::Note(options.file + ": " + found.problem);
        return ExitNo;
    }
    std::vector<Row> rows = Collect(found.node, options.recursive, &input.names);
    Sort(rows, options.sort);
    if (options.json) {
        PrintJson(rows, &input.names, context);
    } else {
        PrintText(rows, options, &input.names, context);
    }
    return ExitSuccess;
}

}  // namespace

Run DefineLs(CommandLine& words) {
    const auto options = std::make_shared<Options>();
    words.Add("FILE", options->file, "the tree; - is standard input").Required();
    words.Add("KEY", options->key, "the node to look into, such as 1:65:; without it, the root");
    words.AddFlag("-r,--recursive", options->recursive, "list all nodes below, not the children alone");
    words.AddFlag("-l,--long", options->longLines, "show more of each value");
    words.Add("--sort", options->sort, "the order: key, kind, tag, temporality or size")
        .OneOf({"key", "kind", "tag", "temporality", "size"})
        .Named("BY");
    words.AddFlag("--json", options->json, "one JSON object a line");
    words.SetFooter(
        "Columns: key, kind, tag, own temporality, size in bytes (of composites the number of children is in the last "
        "column), value.\nExit code 0: listed; 1: no such key; 2: trouble.");
    return [options](Context& context) { return RunLs(*options, context); };
}

}  // namespace KivTree
