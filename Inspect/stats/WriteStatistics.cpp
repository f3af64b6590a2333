#include <algorithm>
#include <string>
#include <vector>

#include <KivGenerics/ToText.h>
#include <KivInspect/Statistics.h>

#include "json/JsonText.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;

using TagShare = std::pair<std::uint32_t, Share>;

std::string Percent(std::uint64_t part, std::uint64_t whole) {
    const std::uint64_t tenths = whole == 0 ? 0 : (part * 1000 + whole / 2) / whole;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " %";
}

/// Rows of cells in columns; numbers stand on the right.
class Table {
public:
    explicit Table(std::vector<std::string> heads) { rows_.push_back(std::move(heads)); }

    void Add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

    /// The first `left` columns stand on the left, and so does the last.
    void AppendTo(std::string& text, std::size_t left) const {
        std::vector<std::size_t> widths(rows_.front().size(), 0);
        for (const auto& row : rows_) {
            for (std::size_t i = 0; i < row.size(); ++i) {
                widths[i] = std::max(widths[i], row[i].size());
            }
        }
        for (const auto& row : rows_) {
            std::string line = " ";
            for (std::size_t i = 0; i < row.size(); ++i) {
                const std::string space(widths[i] - row[i].size(), ' ');
                const bool onLeft = i < left || i + 1 == row.size();
                line += " " + (onLeft ? row[i] + space : space + row[i]);
            }
            text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
        }
    }

private:
    std::vector<std::vector<std::string>> rows_;
};

/// A bar in proportion to the greatest of all.
std::string Bar(std::uint64_t value, std::uint64_t greatest) {
    constexpr std::uint64_t width = 40;
    const std::uint64_t length = greatest == 0 ? 0 : value * width / greatest;
    return std::string(std::max<std::uint64_t>(value > 0 ? 1 : 0, length), '#');
}

void AppendHistogram(std::string& text, const std::vector<std::uint64_t>& values, const char* head, const char* of,
                     std::string (*label)(std::size_t)) {
    const std::uint64_t greatest = values.empty() ? 0 : *std::max_element(values.begin(), values.end());
    Table table({head, of, ""});
    for (std::size_t i = 0; i < values.size(); ++i) {
        table.Add({label(i), std::to_string(values[i]), Bar(values[i], greatest)});
    }
    table.AppendTo(text, 0);
}

std::string LevelLabel(std::size_t i) {
    return std::to_string(i + 1);
}

std::string ChildrenLabel(std::size_t i) {
    if (i < 2) {
        return std::to_string(i);
    }
    const std::uint64_t first = std::uint64_t{1} << (i - 1);
    return std::to_string(first) + "-" + std::to_string(2 * first - 1);
}

std::string TagLabel(std::uint32_t tag, const Names* names) {
    const std::string* const name = names != nullptr ? names->FindTag(static_cast<SemanticTag>(tag)) : nullptr;
    return std::to_string(tag) + (name != nullptr ? " " + *name : "");
}

/// The tags, the one with most bytes first.
std::vector<TagShare> RankTags(const Statistics& statistics) {
    std::vector<TagShare> tags(statistics.byTag.begin(), statistics.byTag.end());
    std::sort(tags.begin(), tags.end(), [](const TagShare& left, const TagShare& right) {
        return left.second.bytes != right.second.bytes ? left.second.bytes > right.second.bytes
                                                       : left.first < right.first;
    });
    return tags;
}

void AppendKinds(std::string& text, const Statistics& statistics) {
    Table table({"kind", "nodes", "bytes", "share"});
    for (std::size_t kind = 1; kind < statistics.byKind.size(); ++kind) {
        const Share& share = statistics.byKind[kind];
        if (share.nodes > 0) {
            table.Add({ToText(static_cast<NodeType>(kind)), std::to_string(share.nodes), std::to_string(share.bytes),
                       Percent(share.bytes, statistics.all.bytes)});
        }
    }
    table.AppendTo(text, 1);
}

void AppendTags(std::string& text, const Statistics& statistics, std::size_t top, const Names* names) {
    const std::vector<TagShare> tags = RankTags(statistics);
    Table table({"tag", "maps", "bytes", "share"});
    for (std::size_t i = 0; i < tags.size() && i < top; ++i) {
        table.Add({TagLabel(tags[i].first, names), std::to_string(tags[i].second.nodes),
                   std::to_string(tags[i].second.bytes), Percent(tags[i].second.bytes, statistics.all.bytes)});
    }
    table.AppendTo(text, 1);
    if (tags.size() > top) {
        text += "  ... and " + std::to_string(tags.size() - top) + " more (--top)\n";
    }
}

void AppendLargest(std::string& text, const Statistics& statistics, const Names* names) {
    Table table({"bytes", "share", "nodes", "kind", "key"});
    for (const SubTree& tree : statistics.largest) {
        std::string kind = ToText(static_cast<NodeType>(tree.kind));
        kind += tree.kind == NodeTypeMap ? " " + TagLabel(tree.tag, names) : "";
        table.Add({std::to_string(tree.bytes), Percent(tree.bytes, statistics.all.bytes), std::to_string(tree.nodes),
                   kind, tree.key.empty() ? "the root" : tree.key});
    }
    table.AppendTo(text, 0);
}

}  // namespace

void WriteStatistics(const Statistics& statistics, std::size_t top, const Names* names, Sink& sink) {
    std::string text = std::to_string(statistics.all.nodes) + " nodes, " + std::to_string(statistics.all.bytes) +
                       " bytes of items\n\nBy kind, without what is below\n";
    AppendKinds(text, statistics);
    text += "\nBy tag, without other maps\n";
    AppendTags(text, statistics, top, names);
    text += "\nLargest, with all below\n";
    AppendLargest(text, statistics, names);
    text += "\nDepth\n";
    AppendHistogram(text, statistics.byLevel, "level", "nodes", LevelLabel);
    text += "\nChildren of vectors and maps\n";
    AppendHistogram(text, statistics.byChildren, "children", "nodes", ChildrenLabel);
    sink.Write(text);
}

void WriteStatisticsJson(const Statistics& statistics, const Names* names, Sink& sink) {
    const auto share = [](const Share& value) {
        return "{\"nodes\": " + std::to_string(value.nodes) + ", \"bytes\": " + std::to_string(value.bytes) + "}";
    };
    const auto quoted = [](const std::string& text) {
        std::string json;
        AppendJsonString(json, text);
        return json;
    };
    const auto list = [](const std::vector<std::uint64_t>& values) {
        std::string text = "[";
        for (const std::uint64_t value : values) {
            text += (text.size() > 1 ? ", " : "") + std::to_string(value);
        }
        return text + "]";
    };
    std::string text = "{\"all\": " + share(statistics.all) + ", \"byKind\": {";
    for (std::size_t kind = 1; kind < statistics.byKind.size(); ++kind) {
        text += std::string(kind > 1 ? ", " : "") + "\"" + ToText(static_cast<NodeType>(kind)) +
                "\": " + share(statistics.byKind[kind]);
    }
    text += "}, \"byTag\": {";
    const char* separator = "";
    for (const auto& [tag, value] : statistics.byTag) {
        text += separator + ("\"" + std::to_string(tag) + "\": " + share(value));
        separator = ", ";
    }
    text += "}, \"largest\": [";
    separator = "";
    for (const SubTree& tree : statistics.largest) {
        text += separator + ("{\"key\": " + quoted(tree.key) + ", \"kind\": \"") +
                ToText(static_cast<NodeType>(tree.kind)) + "\", \"tag\": " + quoted(TagLabel(tree.tag, names)) +
                ", \"bytes\": " + std::to_string(tree.bytes) + ", \"nodes\": " + std::to_string(tree.nodes) + "}";
        separator = ", ";
    }
    sink.Write(text + "], \"byLevel\": " + list(statistics.byLevel) +
               ", \"byChildren\": " + list(statistics.byChildren) + "}\n");
}

}  // namespace KivInspect
