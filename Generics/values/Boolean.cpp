#include <KivGenerics/Boolean.h>

#include "core/TreeImpl.h"
#include "values/LeafOperations.h"

namespace KivGenerics {

void Boolean::Clear() {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    value_ = false;
}

void Boolean::Populate(Node* other) {
    Node::Populate(other);
    value_ = static_cast<Boolean*>(other)->value_;
}

int Boolean::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc, [&] {
        const auto& theirs = static_cast<Boolean*>(other)->value_;
        return static_cast<int>(value_) - static_cast<int>(theirs);
    });
}

bool Boolean::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    return agreed && value_ == static_cast<Boolean*>(other)->value_;
}

}  // namespace KivGenerics
