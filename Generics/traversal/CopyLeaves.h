#pragma once

#include <KivGenerics/Vector.h>

#include "core/ChildCursor.h"
#include "core/MapChildren.h"
#include "core/NodeAccess.h"

namespace KivGenerics {

/// A composite that is being copied.
struct Copied {
    Copied(Composite& copy, Composite& original) noexcept
        : target(copy), source(original), isVector(copy.GetType() == NodeTypeVector), children(original) {}

    Composite& target;
    Composite& source;
    bool isVector;  // said here, so that coming back asks for no node that has left the processor's cache
    ChildCursor children;
};

/// The walk of a copy shows every node but those whose temporality is outside the scale.
inline bool IsCopied(const Node& child) noexcept {
    return NodeAccess::IsOnScale(child.GetTemporality());
}

/// A new child of the kind and at the place of `source`, a child of `parent`; null where there is no node to be had.
Node* MakeInMap(const MapChildren& target, Node& source, Composite& parent);

/// Copies `child` and the leaves that come next; answers the composite behind them, or null at the end. Elements of one vector
/// are of one kind, or Add refuses them.
Node* CopyLeavesIntoVector(TreeImpl& tree, Vector& target, Copied& copied, Node* child);

/// The same for a map. What is hidden is left out, but not what stands below it.
Node* CopyLeavesIntoMap(TreeImpl& tree, Map& target, Copied& copied, Node* child);

}  // namespace KivGenerics
