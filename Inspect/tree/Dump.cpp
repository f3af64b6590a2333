#include <KivInspect/Dump.h>

#include <string>
#include <vector>

#include <KivGenerics/Composite.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>
#include <KivInspect/Key.h>
#include <KivInspect/ValueText.h>
#include <KivInspect/Walk.h>

#include "tree/TreeBuilder.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;

void AppendHead(std::string& text, Node* node, int depth, const Names* names) {
    text.append(static_cast<std::size_t>(depth) * 2, ' ');
    if (depth > 0) {
        AppendStep(text, node->GetParent(), node->GetIndex(), names);
        text += ' ';
    }
    text += ToText(node->GetType());
    if (const std::string tag = TagText(node, names); !tag.empty()) {
        text += " #" + tag;
    }
    if (node->GetTemporality() != UsualTemporality(node)) {
        text += ' ' + TemporalityText(node);
    }
}

void AppendNode(std::string& text, Node* node, int depth, const DumpOptions& options) {
    AppendHead(text, node, depth, options.names);
    if (options.width > 0 || IsCompositeType(node->GetType())) {
        text += IsCompositeType(node->GetType()) ? ", " : " ";
        text += ShortText(node, options.width);
    } else {
        text += ' ';
        AppendValue(text, node);
    }
    text += '\n';
}

void AppendRest(std::string& text, int depth, int count) {
    text.append(static_cast<std::size_t>(depth) * 2, ' ');
    text += "... " + std::to_string(count) + (count == 1 ? " more child\n" : " more children\n");
}

int CountChildren(Node* node) {
    Composite* const composite = node_cast<Composite>(node);
    return composite != nullptr ? composite->GetSize(TemporalityTemporary) : 0;
}

/// Counts the children that were shown at each level.
class Shown {
public:
    /// Counts one more; its number among those of its parent, from 1.
    int Count(int depth) {
        // What stood deeper belongs to a parent that has ended.
        counts_.resize(static_cast<std::size_t>(depth) + 1);
        return ++counts_.back();
    }

private:
    std::vector<int> counts_;
};

}  // namespace

bool WriteDump(Node* start, Sink& sink, const DumpOptions& options) {
    BufferedSink buffered(sink);
    std::string& text = buffered.GetText();
    Shown shown;
    bool cut = false;
    Walk walk(start);
    while (Node* const node = walk.Next()) {
        const int depth = walk.GetDepth();
        if (depth > 0 && shown.Count(depth) > options.children) {
            AppendRest(text, depth, CountChildren(node->GetParent()) - options.children);
            walk.SkipRest();
            cut = true;
            continue;
        }
        AppendNode(text, node, depth, options);
        if (depth >= options.depth && CountChildren(node) > 0) {
            walk.SkipChildren();
            cut = true;
        }
        buffered.FlushWhenFull();
    }
    buffered.Flush();
    return cut;
}

}  // namespace KivInspect
