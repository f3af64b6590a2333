#include "view/Drawing.h"

#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>
#include <KivInspect/Key.h>
#include <KivInspect/ValueText.h>
#include <KivInspect/Walk.h>

namespace KivInspect {
namespace {

using namespace KivGenerics;

constexpr std::size_t ValueWidth = 40;

std::string Head(const Node* node, const Names* names) {
    std::string head;
    if (node->GetParent() == nullptr) {
        head = "root";
    } else {
        AppendStep(head, node->GetParent(), node->GetIndex(), names);
    }
    head += std::string(" ") + ToText(node->GetType());
    const std::string tag = TagText(node, names);
    return tag.empty() ? head : head + " " + tag;
}

/// "... 3 children more"
DrawnNode LeftOut(std::size_t parent, int depth, std::size_t count) {
    return {parent, depth, "...", std::to_string(count) + (count == 1 ? " node more" : " nodes more"),
            TemporalityDefault};
}

std::size_t CountChildren(Node* node) {
    auto* const composite = node_cast<Composite>(node);
    return composite != nullptr ? static_cast<std::size_t>(composite->GetSize(TemporalityTemporary)) : 0;
}

}  // namespace

std::vector<DrawnNode> ChooseNodes(Tree* tree, const DrawOptions& options) {
    std::vector<DrawnNode> drawn;
    std::vector<std::size_t> path;  // the numbers of the nodes above, by depth
    Walk walk(tree->GetRoot());
    std::size_t beyond = 0;
    while (Node* const node = walk.Next()) {
        if (drawn.size() >= options.limit) {
            beyond += 1;
            continue;
        }
        const auto depth = static_cast<std::size_t>(walk.GetDepth());
        path.resize(depth + 1);
        path[depth] = drawn.size();
        drawn.push_back({depth > 0 ? path[depth - 1] : 0, walk.GetDepth(), Head(node, options.names),
                         ShortText(node, ValueWidth), node->GetTemporality()});
        if (walk.GetDepth() >= options.depth && CountChildren(node) > 0) {
            walk.SkipChildren();
            drawn.push_back(LeftOut(path[depth], walk.GetDepth() + 1, CountChildren(node)));
        }
    }
    if (beyond > 0) {
        drawn.push_back(LeftOut(0, 1, beyond));
    }
    return drawn;
}

const char* ColorOf(int temporality) noexcept {
    switch (temporality) {
        case TemporalityPersistent: return "#1f7a3f";
        case TemporalityTransient: return "#b26a00";
        case TemporalityTemporary: return "#c0392b";
        default: return "#737b87";
    }
}

std::string EscapeXml(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

}  // namespace KivInspect
