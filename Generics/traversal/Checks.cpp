// What every kind does first when it is copied into, merged with or compared.

#include <algorithm>
#include <cstdint>
#include <limits>

#include <KivGenerics/Node.h>

#include "core/NodeAccess.h"
#include "core/Raise.h"
#include "core/Texts.h"
#include "core/TreeImpl.h"

namespace KivGenerics {

void Node::CheckPopulate(const Node* source) const {
    CheckReadOnly();
    if (source == nullptr) {
        Raise(Texts::NullCopy);
    }
    if (source->state_.type != state_.type) {
        Raise(Texts::CopyOtherType);
    }
}

void Node::Populate(Node* source) {
    CheckPopulate(source);
    TakeTemporality(*source);
}

// kept-on-purpose: merge-temporality-wins
bool Node::MergeWithChecks(Node* other, bool) {
    CheckReadOnly();
    if (other == nullptr) {
        Raise(Texts::NullMerge);
    }
    if (other->state_.type != state_.type) {
        Raise(Texts::MergeOtherType);
    }
    if (other->state_.temporality == state_.temporality || other->state_.temporality == TemporalityDefault) {
        return true;
    }
    const bool agreed = state_.temporality == TemporalityDefault;
    state_.temporality = other->state_.temporality;
    if (state_.temporality != TemporalityPersistent) {
        Guard().NoteVaried();
    }
    return agreed;
}

int Node::Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) {
    if (other == nullptr) {
        Raise(Texts::NullCompare);
    }
    if (recalc) {
        NodeAccess::GetTree(*this)->UpdateDerivedTemporality();
        NodeAccess::GetTree(*other)->UpdateDerivedTemporality();
    }
    if (DerivedValue() > t) {
        return 0;
    }
    // Tags span all 32 bits, so their difference needs more.
    const std::int64_t tags = std::int64_t{GetSemanticTag()} - std::int64_t{other->GetSemanticTag()};
    if (tags != 0) {
        constexpr std::int64_t kLeast = (std::numeric_limits<int>::min)();
        constexpr std::int64_t kGreatest = (std::numeric_limits<int>::max)();
        return static_cast<int>(std::clamp(tags, kLeast, kGreatest));
    }
    return state_.type - other->state_.type;
}

}  // namespace KivGenerics
