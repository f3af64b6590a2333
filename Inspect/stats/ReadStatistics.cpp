#include <algorithm>
#include <iterator>
#include <utility>

#include <KivGenerics/NodeType.h>
#include <KivInspect/Statistics.h>

#include "scan/ItemWalk.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;

// What is less than this part of the whole cannot be seen in the drawing.
constexpr std::uint64_t SmallestPart = 4000;

/// A vector, map or set whose end has not come.
struct Open {
    SubTree tree;
    std::uint64_t begin = 0;
    std::uint64_t bytesOfChildren = 0;
    std::uint64_t bytesOfMaps = 0;  // of maps below it, without those in others
};

class Collector {
public:
    Collector(Statistics& statistics, std::size_t top, std::uint64_t fileBytes)
        : statistics_(statistics), top_(top), smallest_(std::max<std::uint64_t>(1, fileBytes / SmallestPart)) {}

    void Take(const ItemWalk& walk) {
        const Meaning& meaning = walk.GetMeaning();
        const KivStorage::ScannedItem& item = walk.GetItem();
        statistics_.all.bytes += item.size;
        switch (meaning.role) {
            case Role::NodeOpens: TakeOpen(meaning.node, walk.GetStructure()); break;
            case Role::HeaderWord:
                if (meaning.headerEnds) {
                    CountChildren(meaning.node.count);
                }
                break;
            case Role::FirstHalf: firstHalf_ = item.size; break;
            case Role::Value:
                TakeLeaf(meaning.node, firstHalf_ + item.size);
                firstHalf_ = 0;
                break;
            case Role::NodeEnds: TakeEnd(meaning.node, item.position + item.size); break;
            default: break;
        }
    }

private:
    void Count(const NodeFacts& node) {
        statistics_.all.nodes += 1;
        statistics_.byKind[static_cast<std::size_t>(node.kind)].nodes += 1;
        if (statistics_.byLevel.size() < node.level) {
            statistics_.byLevel.resize(node.level, 0);
        }
        statistics_.byLevel[node.level - 1] += 1;
    }

    void CountChildren(std::uint32_t count) {
        std::size_t bucket = 0;
        for (; count > 0; count >>= 1) {
            bucket += 1;
        }
        if (statistics_.byChildren.size() <= bucket) {
            statistics_.byChildren.resize(bucket + 1, 0);
        }
        statistics_.byChildren[bucket] += 1;
    }

    void TakeOpen(const NodeFacts& node, const StructureReader& structure) {
        Count(node);
        Open open;
        open.tree.key = structure.GetKey();
        open.tree.kind = node.kind;
        open.tree.nodes = 1;
        open.begin = node.begin;
        open_.push_back(std::move(open));
    }

    void TakeLeaf(const NodeFacts& node, std::uint64_t bytes) {
        Count(node);
        statistics_.byKind[static_cast<std::size_t>(node.kind)].bytes += bytes;
        Open& parent = open_.back();
        parent.tree.nodes += 1;
        parent.bytesOfChildren += bytes;
        if (bytes >= smallest_) {
            parent.tree.children.push_back(
                {parent.tree.key + std::to_string(node.index) + ':', node.kind, 0, bytes, 1, {}});
        }
    }

    void TakeEnd(const NodeFacts& node, std::uint64_t end) {
        Open open = std::move(open_.back());
        open_.pop_back();
        SubTree& tree = open.tree;
        tree.tag = node.tag;
        tree.bytes = end - open.begin;
        statistics_.byKind[static_cast<std::size_t>(node.kind)].bytes += tree.bytes - open.bytesOfChildren;
        if (node.kind == NodeTypeMap) {
            Share& share = statistics_.byTag[node.tag];
            share.nodes += 1;
            share.bytes += tree.bytes - open.bytesOfMaps;
        }
        Rank(tree);
        if (open_.empty()) {
            statistics_.root = std::move(tree);
            return;
        }
        Open& parent = open_.back();
        parent.tree.nodes += tree.nodes;
        parent.bytesOfChildren += tree.bytes;
        parent.bytesOfMaps += node.kind == NodeTypeMap ? tree.bytes : open.bytesOfMaps;
        if (tree.bytes >= smallest_) {
            parent.tree.children.push_back(std::move(tree));
        }
    }

    /// Keeps the largest, in order.
    void Rank(const SubTree& tree) {
        std::vector<SubTree>& largest = statistics_.largest;
        if (top_ == 0 || (largest.size() == top_ && largest.back().bytes >= tree.bytes)) {
            return;
        }
        const auto place = std::find_if(largest.begin(), largest.end(),
                                        [&tree](const SubTree& other) { return other.bytes < tree.bytes; });
        largest.insert(place, SubTree{tree.key, tree.kind, tree.tag, tree.bytes, tree.nodes, {}});
        if (largest.size() > top_) {
            largest.pop_back();
        }
    }

    Statistics& statistics_;
    std::size_t top_;
    std::uint64_t smallest_;
    std::vector<Open> open_;
    std::uint64_t firstHalf_ = 0;
};

}  // namespace

StatisticsResult ReadStatistics(KivStorage::FileScanner& scanner, std::size_t top, const Progress& progress) {
    StatisticsResult read;
    Collector collector(read.statistics, top, scanner.GetSize());
    ItemWalk walk(scanner, progress);
    while (walk.Next()) {
        collector.Take(walk);
    }
    read.result = walk.GetResult();
    return read;
}

}  // namespace KivInspect
