#include <KivGenerics/DoubleSet.h>

#include "core/TreeImpl.h"
#include "values/SetOperations.h"

namespace KivGenerics {

DoubleSet::DoubleSet(TreeImpl* tree) noexcept : Node(tree, StaticType), elements_(tree->GetBuffer()) {}

DoubleSet::DoubleSet(TreeImpl* tree, NodeOwner& owner, int index) noexcept
    : Node(tree, owner, index, StaticType), elements_(tree->GetBuffer()) {}

// Exchanges nothing, despite its name: the destination becomes a copy of the source.
void DoubleSet::hSwap(Elements& destination, const Chunks& source) {
    CopyElements(destination, source);
}

void DoubleSet::hSwap(Chunks& destination, const Elements& source) {
    CopyElements(destination, source);
}

void DoubleSet::Get(Elements& elements) const {
    hSwap(elements, elements_);
}

// kept-on-purpose: set-changes-unguarded
void DoubleSet::Set(const Elements& elements) {
    hSwap(elements_, elements);
}

void DoubleSet::Add(const double& element) {
    elements_.Add(element);
}

void DoubleSet::Remove(const double& element) {
    elements_.Remove(element);
}

bool DoubleSet::Exists(const double& element) const {
    return elements_.Exists(element);
}

void DoubleSet::Item(int index, double& element) const {
    element = ItemOf(elements_, index);
}

void DoubleSet::Clear() {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    elements_.Clear();
}

void DoubleSet::Populate(Node* other) {
    Node::Populate(other);
    elements_.CopyFrom(static_cast<DoubleSet*>(other)->elements_);
}

int DoubleSet::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc,
                       [&] { return CompareElements(elements_, static_cast<DoubleSet*>(other)->elements_); });
}

bool DoubleSet::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    return agreed && EqualElements(elements_, static_cast<DoubleSet*>(other)->elements_);
}

}  // namespace KivGenerics
