#include "core/ReleaseChildren.h"

#include <algorithm>

#include "core/MapChildren.h"
#include "core/NextChild.h"
#include "core/NodeAccess.h"
#include "core/TreeImpl.h"

namespace KivGenerics {
namespace {

void ForgetChildren(Composite& composite) noexcept {
    if (composite.GetType() == NodeTypeVector) {
        NodeAccess::GetChildren(static_cast<Vector&>(composite)).clear();
        return;
    }
    const MapChildren children(static_cast<Map&>(composite));
    std::fill_n(children.slots, children.slotCount, nullptr);
    if (children.overflow != nullptr) {
        children.overflow->Clear();
    }
}

void ResetFields(Composite& composite) noexcept {
    NodeAccess::Place(composite, nullptr, -1);
    NodeAccess::ResetTemporality(composite);
}

/// Begins the release of a composite below another: what Reset does before the children go.
void Enter(Composite& composite) {
    if (composite.GetType() == NodeTypeMap) {
        NodeAccess::SetTag(static_cast<Map&>(composite), SemanticTagDefault);
    }
    NodeAccess::GetTree(composite)->CheckReadOnly();
}

}  // namespace

// Release must not run out of memory, nor of stack, so the way back stands in the nodes that are going: the parent of a
// composite is the one it was found in, and its index is the position there that comes next.
void ReleaseChildren(Composite& top) {
    Composite* current = &top;
    int position = 0;
    int positionInTop = 0;
    for (;;) {
        if (Node* const child = TakeNextChild(*current, position)) {
            NodeAccess::GetTree(*current)->Recycle(child);
            if (!IsCompositeType(child->GetType())) {
                NodeAccess::Reset(*child);
                continue;
            }
            auto* const below = static_cast<Composite*>(child);
            Enter(*below);
            (current == &top ? positionInTop : NodeAccess::GetIndex(*current)) = position;
            NodeAccess::Place(*below, current, 0);
            current = below;
            position = 0;
            continue;
        }
        ForgetChildren(*current);
        if (current == &top) {
            NodeAccess::NoteNoChild(top);
            return;
        }
        Composite* const above = NodeAccess::GetParent(*current);
        ResetFields(*current);
        current = above;
        position = current == &top ? positionInTop : current->GetIndex();
    }
}

}  // namespace KivGenerics
