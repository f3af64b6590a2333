#include <KivGenerics/IntegerSet.h>

#include "core/TreeImpl.h"
#include "values/SetOperations.h"

namespace KivGenerics {

IntegerSet::IntegerSet(TreeImpl* tree) noexcept : Node(tree, StaticType), elements_(tree->GetBuffer()) {}

IntegerSet::IntegerSet(TreeImpl* tree, NodeOwner& owner, int index) noexcept
    : Node(tree, owner, index, StaticType), elements_(tree->GetBuffer()) {}

// Exchanges nothing, despite its name: the destination becomes a copy of the source.
void IntegerSet::hSwap(Elements& destination, const Chunks& source) {
    CopyElements(destination, source);
}

void IntegerSet::hSwap(Chunks& destination, const Elements& source) {
    CopyElements(destination, source);
}

void IntegerSet::Get(Elements& elements) const {
    hSwap(elements, elements_);
}

// kept-on-purpose: set-changes-unguarded
void IntegerSet::Set(const Elements& elements) {
    hSwap(elements_, elements);
}

void IntegerSet::Add(const std::int32_t& element) {
    elements_.Add(element);
}

void IntegerSet::Remove(const std::int32_t& element) {
    elements_.Remove(element);
}

bool IntegerSet::Exists(const std::int32_t& element) const {
    return elements_.Exists(element);
}

void IntegerSet::Item(int index, std::int32_t& element) const {
    element = ItemOf(elements_, index);
}

void IntegerSet::Clear() {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    elements_.Clear();
}

void IntegerSet::Populate(Node* other) {
    Node::Populate(other);
    elements_.CopyFrom(static_cast<IntegerSet*>(other)->elements_);
}

int IntegerSet::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc,
                       [&] { return CompareElements(elements_, static_cast<IntegerSet*>(other)->elements_); });
}

bool IntegerSet::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    return agreed && EqualElements(elements_, static_cast<IntegerSet*>(other)->elements_);
}

}  // namespace KivGenerics
