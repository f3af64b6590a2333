#include <KivGenerics/String.h>

#include "core/TextUnits.h"
#include "core/TreeImpl.h"
#include "values/LeafOperations.h"

namespace KivGenerics {

void String::Set(const KivBase::WString& value) {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    if (&value != &value_) {
        value_ = value;
    }
}

void String::Set(const char16_t* value) {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    if (value == nullptr) {
        value_.clear();
    } else {
        value_.assign(value);
    }
}

// The text's memory goes back to the forest: a node that waits for reuse would keep it from every other.
void String::Clear() {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    KivBase::WString(value_.get_allocator()).swap(value_);
}

void String::Populate(Node* other) {
    Node::Populate(other);
    const KivBase::WString& theirs = static_cast<String*>(other)->value_;
    value_.assign(theirs.data(), CountBeforeNul(theirs.data(), theirs.size()));
}

int String::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc,
                       [&] { return CompareTexts(value_, static_cast<String*>(other)->value_); });
}

bool String::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    return agreed && CompareTexts(value_, static_cast<String*>(other)->value_) == 0;
}

}  // namespace KivGenerics
