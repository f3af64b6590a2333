#include <KivGenerics/Composite.h>

#include "core/NodeAccess.h"
#include "core/Raise.h"
#include "core/Texts.h"

namespace KivGenerics {

// kept-on-purpose: move-null-text
void Composite::CheckAncestor(const Node* node) const {
    if (node == nullptr) {
        Raise(Texts::NullMove);
    }
    if (!IsCompositeType(node->GetType())) {
        return;  // a leaf is nobody's ancestor: no need to walk to the root
    }
    for (const Composite* above = this; above != nullptr; above = NodeAccess::GetParent(*above)) {
        if (above == node) {
            Raise(Texts::Ancestor);
        }
    }
}

void Composite::Move(int, Node* node) {
    CheckAncestor(node);
    if (NodeAccess::GetTree(*node) != NodeAccess::GetTree(*this)) {
        Raise(Texts::OtherTree);
    }
}

// The child of `ancestor` on the way down to this composite, which may be this composite itself; null when this composite
// does not lie inside `ancestor`.
const Node* Composite::FindStepBelow(const Composite* ancestor) const noexcept {
    if (NodeAccess::GetTree(*ancestor) != NodeAccess::GetTree(*this)) {
        return nullptr;
    }
    const Composite* step = this;
    while (step != nullptr && NodeAccess::GetParent(*step) != ancestor) {
        step = NodeAccess::GetParent(*step);
    }
    return step;
}

// Filling a composite from something that contains it would never end: each copy would grow what is still to be copied.
void Composite::CheckNotInside(const Composite* source) const {
    if (FindStepBelow(source) != nullptr) {
        Raise(Texts::Ancestor);
    }
}

}  // namespace KivGenerics
