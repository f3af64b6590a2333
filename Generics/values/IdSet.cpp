#include <KivGenerics/IdSet.h>

#include "core/TreeImpl.h"
#include "values/SetOperations.h"

namespace KivGenerics {

IdSet::IdSet(TreeImpl* tree) noexcept : Node(tree, StaticType), elements_(tree->GetBuffer()) {}

IdSet::IdSet(TreeImpl* tree, NodeOwner& owner, int index) noexcept
    : Node(tree, owner, index, StaticType), elements_(tree->GetBuffer()) {}

// Exchanges nothing, despite its name: the destination becomes a copy of the source.
void IdSet::hSwap(Elements& destination, const Chunks& source) {
    CopyElements(destination, source);
}

void IdSet::hSwap(Chunks& destination, const Elements& source) {
    CopyElements(destination, source);
}

void IdSet::Get(Elements& elements) const {
    hSwap(elements, elements_);
}

// kept-on-purpose: set-changes-unguarded
void IdSet::Set(const Elements& elements) {
    hSwap(elements_, elements);
}

void IdSet::Add(const GUID& element) {
    elements_.Add(element);
}

void IdSet::Remove(const GUID& element) {
    elements_.Remove(element);
}

bool IdSet::Exists(const GUID& element) const {
    return elements_.Exists(element);
}

void IdSet::Item(int index, GUID& element) const {
    element = ItemOf(elements_, index);
}

void IdSet::Clear() {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    elements_.Clear();
}

void IdSet::Populate(Node* other) {
    Node::Populate(other);
    elements_.CopyFrom(static_cast<IdSet*>(other)->elements_);
}

int IdSet::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc,
                       [&] { return CompareElements(elements_, static_cast<IdSet*>(other)->elements_); });
}

bool IdSet::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    return agreed && EqualElements(elements_, static_cast<IdSet*>(other)->elements_);
}

}  // namespace KivGenerics
