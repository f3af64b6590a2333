#pragma once

#include <KivGenerics/Node.h>

#include "core/NodeAccess.h"

namespace KivGenerics {

/// The frame of every leaf's Compare: Node's own order first; a node more transient than `t` equals anything; then
/// `compareValues()`.
template <class CompareValues>
int CompareLeaf(Node& self, Node* other, EnumOrvGenericsTemporality t, bool recalc, CompareValues compareValues) {
    const int order = self.Node::Compare(other, t, recalc);
    if (order != 0 || NodeAccess::GetStoredDerived(self) > t) {
        return order;
    }
    return compareValues();
}

/// -1, 0 or 1 by `<`; 0 also where neither is smaller, as with a NaN.
template <class Value>
int CompareByLess(const Value& left, const Value& right) {
    return left < right ? -1 : (right < left ? 1 : 0);
}

}  // namespace KivGenerics
