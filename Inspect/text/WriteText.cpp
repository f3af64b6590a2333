#include <KivInspect/TextForm.h>
#include <KivInspect/ValueText.h>
#include <KivInspect/Walk.h>

#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>

#include "tree/NodeProgress.h"
#include "tree/TreeBuilder.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;

/// What stands before the kind: the spaces of the level, then the index, or a dash for an element of a vector.
void AppendPlace(std::string& text, const Node* node, int depth) {
    text.append(static_cast<std::size_t>(depth) * 2, ' ');
    if (depth == 0) {
        return;
    }
    if (node->GetParent()->GetType() == NodeTypeVector) {
        text += "- ";
    } else {
        AppendValue(text, std::int32_t{node->GetIndex()});
        text += ": ";
    }
}

void AppendNode(std::string& text, Node* node, int depth) {
    AppendPlace(text, node, depth);
    text += ToText(node->GetType());
    const Map* const map = node_cast<Map>(node);
    if (map != nullptr && map->GetSemanticTagNV() != SemanticTagDefault) {
        text += " #";
        AppendValue(text, std::int32_t{map->GetSemanticTagNV()});
    }
    if (node->GetTemporality() != UsualTemporality(node)) {
        text += ' ';
        text += TemporalityText(node);
    }
    if (!IsCompositeType(node->GetType())) {
        text += ' ';
        AppendValue(text, node);
    }
    text += '\n';
}

}  // namespace

void WriteText(const Tree* tree, Sink& sink, const Progress& progress) {
    BufferedSink buffered(sink);
    buffered.GetText() += TextFormBegins;
    buffered.GetText() += "1\n";
    NodeProgress done(tree->GetRoot(), progress);
    Walk walk(tree->GetRoot());
    while (Node* const node = walk.Next()) {
        AppendNode(buffered.GetText(), node, walk.GetDepth());
        buffered.FlushWhenFull();
        done.Step();
    }
    buffered.Flush();
}

}  // namespace KivInspect
