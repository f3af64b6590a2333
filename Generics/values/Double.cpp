#include <KivGenerics/Double.h>

#include "core/TreeImpl.h"
#include "values/LeafOperations.h"

namespace KivGenerics {

void Double::Clear() {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    value_ = 0.0;
}

void Double::Populate(Node* other) {
    Node::Populate(other);
    value_ = static_cast<Double*>(other)->value_;
}

// kept-on-purpose: nan-compares-equal
int Double::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc, [&] {
        const auto& theirs = static_cast<Double*>(other)->value_;
        return CompareByLess(value_, theirs);
    });
}

bool Double::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    return agreed && value_ == static_cast<Double*>(other)->value_;
}

}  // namespace KivGenerics
