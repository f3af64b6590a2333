#include <KivGenerics/GlobalID.h>

#include <algorithm>
#include <iterator>

#include "core/TreeImpl.h"
#include "values/LeafOperations.h"

namespace KivGenerics {

bool GlobalID::IsNull() const noexcept {
    const auto isZero = [](unsigned char byte) { return byte == 0; };
    return value_.Data1 == 0 && value_.Data2 == 0 && value_.Data3 == 0 &&
           std::all_of(std::begin(value_.Data4), std::end(value_.Data4), isZero);
}

void GlobalID::Clear() {
    NodeAccess::GetTree(*this)->CheckReadOnly();
    value_ = GUID{};
}

void GlobalID::Populate(Node* other) {
    Node::Populate(other);
    value_ = static_cast<GlobalID*>(other)->value_;
}

int GlobalID::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    return CompareLeaf(*this, other, t, recalc, [&] {
        const auto& theirs = static_cast<GlobalID*>(other)->value_;
        return KivBase::CompareGUID(value_, theirs);
    });
}

bool GlobalID::MergeWith(Node* other, bool flag) {
    const bool agreed = MergeWithChecks(other, flag);
    return agreed && KivBase::CompareGUID(value_, static_cast<GlobalID*>(other)->value_) == 0;
}

}  // namespace KivGenerics
