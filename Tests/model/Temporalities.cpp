#include <algorithm>

#include "model/Model.h"

namespace Model {
namespace {

// A vector hands on what it is given; any other node keeps it.
void SetDerived(Item& item, int t) {
    if (item.derived == t) {
        return;
    }
    item.derived = t;
    for (const Owned& element : item.elements) {
        SetDerived(*element, t);
    }
}

}  // namespace

int Calculate(Item& item) {
    if (!item.IsComposite()) {
        item.derived = item.temporality == 1 ? 2 : item.temporality;
        return item.derived;
    }
    int least = 4;
    for (Item* child = FindAfter(item, -1); child != nullptr; child = FindAfter(item, child->index)) {
        least = std::min(least, Calculate(*child));
    }
    item.derived = item.temporality == 1 ? least : item.temporality;
    for (const Owned& element : item.elements) {
        SetDerived(*element, item.derived);
    }
    return item.derived;
}

int GetDerived(Item& item) {
    return item.derived == 1 ? Calculate(item) : item.derived;
}

int GetEffective(Item& item) {
    // Once for what calculating the upper nodes changes in the lower ones, and once to read.
    for (Item* each = &item; each != nullptr && GetDerived(*each) != 4; each = each->parent) {
    }
    int effective = item.derived;
    for (const Item* each = &item; each != nullptr && each->derived != 1; each = each->parent) {
        effective = std::max(effective, each->derived);
        if (each->derived == 4) {
            break;
        }
    }
    return effective;
}

void Update(Tree& tree) {
    if (tree.root && tree.stale) {
        Calculate(*tree.root);
        tree.stale = false;
    }
}

}  // namespace Model
