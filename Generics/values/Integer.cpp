#include <KivGenerics/Integer.h>

#include <KivGenerics/Composite.h>

#include "core/TreeImpl.h"
#include "values/LeafOperations.h"

namespace KivGenerics {
namespace {

// The one place where differing numbers are no conflict: hosts count at this index, and each copy counts for itself.
constexpr SemanticTag kTagOfCounters = SemanticTag(100);
constexpr int kIndexOfCounter = 8;

}  // namespace

void Integer::Clear() {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    value_ = 0;
}

void Integer::Populate(Node* other) {
    Node::Populate(other);
    value_ = static_cast<Integer*>(other)->value_;
}

int Integer::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc, [&] {
        const auto& theirs = static_cast<Integer*>(other)->value_;
        return CompareByLess(value_, theirs);
    });
}

// kept-on-purpose: integer-merge-index-8
bool Integer::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    if (value_ == static_cast<Integer*>(other)->value_) {
        return agreed;
    }
    const Composite* const parent = NodeAccess::GetParent(*this);
    const bool counts =
        GetIndex() == kIndexOfCounter && parent != nullptr && parent->GetSemanticTag() == kTagOfCounters;
    return agreed && counts;
}

}  // namespace KivGenerics
