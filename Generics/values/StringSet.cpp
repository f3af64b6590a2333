#include <KivGenerics/StringSet.h>

#include <utility>

#include "core/TreeImpl.h"
#include "values/SetOperations.h"

namespace KivGenerics {
namespace {

// Texts are stored up to their first NUL.
KivBase::WString Copy(const KivBase::WString& text, const KivBase::Allocator<char16_t>& allocator) {
    return KivBase::WString(text.c_str(), allocator);
}

}  // namespace

StringSet::StringSet(TreeImpl* tree) noexcept
    : Node(tree, StaticType), elements_(Elements::allocator_type(tree->GetBuffer())) {}

StringSet::StringSet(TreeImpl* tree, NodeOwner& owner, int index) noexcept
    : Node(tree, owner, index, StaticType), elements_(Elements::allocator_type(tree->GetBuffer())) {}

StringSet& StringSet::operator=(const StringSet& other) {
    hCopy(other.elements_);
    Node::operator=(other);
    return *this;
}

// A set takes over another's elements whole only where both have the same memory.
StringSet& StringSet::operator=(StringSet&& other) {
    if (elements_.get_allocator() == other.elements_.get_allocator()) {
        elements_ = std::move(other.elements_);
    } else {
        hCopy(other.elements_);
    }
    Node::operator=(other);
    return *this;
}

void StringSet::hCopy(const Elements& source) {
    if (&source == &elements_) {
        return;
    }
    CopyElements(elements_, source,
                 [&](const KivBase::WString& text) { return Copy(text, elements_.get_allocator()); });
}

// kept-on-purpose: set-changes-unguarded
void StringSet::Set(const Elements& elements) {
    hCopy(elements);
}

void StringSet::Add(const KivBase::WString& element) {
    elements_.insert(Copy(element, elements_.get_allocator()));
}

void StringSet::Remove(const KivBase::WString& element) {
    elements_.erase(element);
}

bool StringSet::Exists(const KivBase::WString& element) const {
    return elements_.find(element) != elements_.end();
}

void StringSet::Item(int index, KivBase::WString& element) const {
    element = ItemOf(elements_, index);
}

void StringSet::Clear() {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    elements_.clear();
}

void StringSet::Populate(Node* other) {
    Node::Populate(other);
    hCopy(static_cast<StringSet*>(other)->elements_);
}

int StringSet::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc,
                       [&] { return CompareElements(elements_, static_cast<StringSet*>(other)->elements_); });
}

bool StringSet::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    return agreed && EqualElements(elements_, static_cast<StringSet*>(other)->elements_);
}

}  // namespace KivGenerics
