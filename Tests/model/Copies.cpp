#include "model/Model.h"

using namespace KivGenerics;

namespace Model {
namespace {

void CheckNotInside(const Item& target, const Item& source) {
    if (&target != &source && IsInside(target, source)) {
        throw Refusal{u"Can't perform this operation on an ancestor"};
    }
}

void CheckSource(Item& target, const Item* source) {
    Guard(*target.tree);
    if (source == nullptr) {
        throw Refusal{u"Can't copy NULL node!"};
    }
    if (source->type != target.type) {
        throw Refusal{u"Can't copy nodes of different type!"};
    }
}

void TakeTemporality(Item& target, const Item& source) {
    target.temporality = source.temporality;
    target.derived = 1;
}

void CopyChild(Item& target, Item& child) {
    Populate(NewNode(target, child.index, child.type, false, child.tag), &child);
}

void CopyMap(Item& target, Item& source) {
    Clear(target);
    Iterate(
        source,
        [&](Item& child, bool) {
            CopyChild(target, child);
            return VisitSkipChildren;
        },
        0, 0);
    target.tag = source.tag;
}

}  // namespace

void CheckAncestor(const Item& composite, const Item* item) {
    if (item == nullptr) {
        throw Refusal{u"Move::Node can't be NULL!"};
    }
    if (IsInside(composite, *item)) {
        throw Refusal{u"Can't perform this operation on an ancestor"};
    }
}

void PopulateVector(Item& target, Item* source) {
    if (source == nullptr) {
        throw Refusal{u"Can't copy NULL node!"};
    }
    if (source == &target) {
        return;
    }
    Clear(target);
    for (int i = 0; Item* const child = Get(*source, i); ++i) {
        if (IsInside(target, *child)) {
            throw Refusal{u"Can't perform this operation on an ancestor"};
        }
        Populate(Add(target, child->type, child->tag), child);
    }
}

void Populate(Item& target, Item* source) {
    CheckSource(target, source);
    if (target.IsMap()) {
        CheckNotInside(target, *source);
    }
    TakeTemporality(target, *source);
    if (target.IsVector()) {
        PopulateVector(target, source);
    } else if (target.IsMap()) {
        if (&target != source) {
            CopyMap(target, *source);
        }
    } else if (target.type == NodeTypeString) {
        target.value = Text(std::get<Text>(source->value).c_str());
    } else {
        target.value = source->value;
    }
}

Item& ReplaceWithCopy(Item& composite, int index, Item* source) {
    CheckAncestor(composite, source);
    Item& copy = NewNode(composite, index, source->type, false, source->tag);
    Populate(copy, source);
    return copy;
}

Item& AddCopy(Item& vector, Item* source) {
    CheckAncestor(vector, source);
    Item& copy = Add(vector, source->type, source->tag);
    Populate(copy, source);
    return copy;
}

Item& InsertCopy(Item& vector, int index, Item* source) {
    CheckAncestor(vector, source);
    Item& copy = Insert(vector, index, source->type, source->tag);
    Populate(copy, source);
    return copy;
}

namespace {

bool MergeTemporalities(Item& target, const Item* other) {
    Guard(*target.tree);
    if (other == nullptr) {
        throw Refusal{u"Cannot merge with NULL node!"};
    }
    if (other->type != target.type) {
        throw Refusal{u"Cannot merge with node of different type!"};
    }
    if (other->temporality == target.temporality || other->temporality == 1) {
        return true;
    }
    const bool agreed = target.temporality == 1;
    target.temporality = other->temporality;
    return agreed;
}

bool AgreeInValue(const Item& target, const Item& other) {
    if (target.type == NodeTypeInteger64) {
        return true;
    }
    if (target.type == NodeTypeInteger && target.index == 8 && target.parent != nullptr && target.parent->tag == 100) {
        return true;
    }
    if (target.type == NodeTypeDouble) {
        return std::get<double>(target.value) == std::get<double>(other.value);
    }
    return CompareValues(target, other) == 0;
}

bool MergeChildren(Item& target, Item& other) {
    bool agreed = true;
    Iterate(
        other,
        [&](Item& theirs, bool) {
            if (Item* const mine = Get(target, theirs.index)) {
                const bool merged = Merge(*mine, &theirs);
                agreed = agreed && merged;
            } else {
                CopyChild(target, theirs);
            }
            return VisitSkipChildren;
        },
        0, 0);
    return agreed;
}

}  // namespace

bool Merge(Item& target, Item* other) {
    const bool agreed = MergeTemporalities(target, other);
    if (!target.IsComposite()) {
        return AgreeInValue(target, *other) && agreed;
    }
    if (target.tag != other->tag) {
        return false;
    }
    CheckNotInside(target, *other);
    const bool merged = MergeChildren(target, *other);
    return agreed && merged;
}

}  // namespace Model
