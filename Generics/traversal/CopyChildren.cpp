#include "core/CopyChildren.h"

#include "core/FrameStack.h"
#include "core/NodeAccess.h"
#include "core/TreeImpl.h"
#include "traversal/CopyLeaves.h"

namespace KivGenerics {
namespace {

void MakeRoom(Composite& target, Composite& source) {
    if (target.GetType() == NodeTypeVector) {
        auto& elements = NodeAccess::GetChildren(static_cast<Vector&>(target));
        elements.reserve(NodeAccess::GetChildren(static_cast<Vector&>(source)).size());
    }
}

/// Copies what comes before the next composite that is copied, which it answers, or null at the end.
[[gnu::always_inline]] inline Composite* CopyLeaves(TreeImpl& tree, Copied& copied) {
    Node* child = copied.children.Next();
    if (child != nullptr && !(IsCompositeType(child->GetType()) && (copied.isVector || IsCopied(*child)))) {
        child = copied.isVector ? CopyLeavesIntoVector(tree, static_cast<Vector&>(copied.target), copied, child)
                                : CopyLeavesIntoMap(tree, static_cast<Map&>(copied.target), copied, child);
    }
    return static_cast<Composite*>(child);
}

/// Makes the copy of a composite, still empty, where it belongs; null where there is no node to be had.
Composite* CopyComposite(Copied& copied, Composite& source) {
    if (!copied.isVector) {
        auto& target = static_cast<Map&>(copied.target);
        const int index = source.GetIndex();
        if (!NodeAccess::HasRoom(target, index)) {
            return static_cast<Composite*>(MakeInMap(MapChildren(target), source, copied.source));
        }
        if (source.GetType() == NodeTypeMap) {
            return NodeAccess::NewMapInRoom(target, index, source.GetSemanticTag());
        }
        return target.NewNode<Vector>(index);
    }
    auto& vector = static_cast<Vector&>(copied.target);
    const auto& elements = NodeAccess::GetChildren(vector);
    const bool takesVectors = elements.empty() || elements.front()->GetType() == NodeTypeVector;
    return source.GetType() == NodeTypeVector && takesVectors
               ? NodeAccess::Append<Vector>(vector)
               : static_cast<Composite*>(vector.Add(source.GetType(), source.GetSemanticTag()));
}

/// What Populate of a new composite does before the children come: two changes, its own and that of its Clear.
void TakeOver(TreeImpl& tree, Composite& target, const Node& source) {
    tree.CheckReadOnly();
    tree.CountMore(1);
    NodeAccess::SetTemporalityOfNew(target, source.GetTemporality());
}

/// What Populate does to a map when the children have come.
void Finish(const Copied& copied) noexcept {
    if (!copied.isVector) {
        NodeAccess::SetTag(static_cast<Map&>(copied.target), copied.source.GetSemanticTag());
    }
}

}  // namespace

// Only what has composites below it is noted as being copied: most composites have none.
void CopyChildren(Composite& target, Composite& source) {
    TreeImpl& tree = *NodeAccess::GetTree(target);
    FrameStack<Copied> path;
    MakeRoom(target, source);
    path.Push(target, source);
    Composite* below = CopyLeaves(tree, path.Top());
    while (true) {
        Composite* const copy = below != nullptr ? CopyComposite(path.Top(), *below) : nullptr;
        if (copy != nullptr) {
            Composite& original = *below;
            TakeOver(tree, *copy, original);
            MakeRoom(*copy, original);
            Copied copied(*copy, original);
            below = CopyLeaves(tree, copied);
            if (below != nullptr) {
                path.Push(copied);
                continue;
            }
            Finish(copied);
        } else {
            Finish(path.Top());
            path.Pop();
            if (path.IsEmpty()) {
                return;
            }
        }
        below = CopyLeaves(tree, path.Top());
    }
}

void PopulateNew(Node& target, Node& source) {
    if (!IsCompositeType(target.GetType())) {
        target.Populate(&source);
        return;
    }
    TakeOver(*NodeAccess::GetTree(target), static_cast<Composite&>(target), source);
    CopyChildren(static_cast<Composite&>(target), static_cast<Composite&>(source));
}

}  // namespace KivGenerics
