#include <KivGenerics/String.h>

#include <algorithm>

#include "core/TreeImpl.h"
#include "values/LeafOperations.h"

namespace KivGenerics {
namespace {

using Units = std::char_traits<char16_t>;

// The whole of the left text against the right one up to its first NUL.
// kept-on-purpose: text-cut-at-nul
int CompareTexts(const KivBase::WString& left, const char16_t* right) {
    const std::size_t rightLength = Units::length(right);
    const int order = Units::compare(left.data(), right, (std::min)(left.size(), rightLength));
    if (order != 0) {
        return order < 0 ? -1 : 1;
    }
    return CompareByLess(left.size(), rightLength);
}

}  // namespace

String::String(TreeImpl* tree) noexcept
    : Node(tree, StaticType), value_(KivBase::Allocator<char16_t>(tree->GetBuffer())) {}

String::String(TreeImpl* tree, Composite* parent, int index) noexcept
    : Node(tree, parent, index, StaticType), value_(KivBase::Allocator<char16_t>(tree->GetBuffer())) {}

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
    value_.assign(static_cast<String*>(other)->value_.c_str());
}

int String::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc,
                       [&] { return CompareTexts(value_, static_cast<String*>(other)->value_.c_str()); });
}

bool String::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    return agreed && CompareTexts(value_, static_cast<String*>(other)->value_.c_str()) == 0;
}

}  // namespace KivGenerics
