#include <KivGenerics/Integer64.h>

#include "core/TreeImpl.h"
#include "values/LeafOperations.h"

namespace KivGenerics {

void Integer64::Clear() {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    value_ = 0;
}

void Integer64::Populate(Node* other) {
    Node::Populate(other);
    value_ = static_cast<Integer64*>(other)->value_;
}

int Integer64::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc, [&] {
        const auto& theirs = static_cast<Integer64*>(other)->value_;
        return CompareByLess(value_, theirs);
    });
}

// kept-on-purpose: integer64-merge
bool Integer64::MergeWith(Node* other, bool flag) {
    return MergeWithChecks(other, flag);
}

}  // namespace KivGenerics
