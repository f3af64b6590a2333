#include <algorithm>

#include "model/Model.h"

using namespace KivGenerics;

namespace Model {
namespace {

constexpr int kGreatestMapIndex = 0x1FFFFFFF;

void Reset(Item& item) {
    Clear(item);
    item.tag = 1;
    item.parent = nullptr;
    item.index = -1;
    item.temporality = 1;
    item.derived = 1;
}

void Release(Owned item) {
    Reset(*item);
    item->tree->removed.push_back(std::move(item));
}

void Renumber(Item& vector) {
    int index = 0;
    for (const Owned& element : vector.elements) {
        element->index = index++;
    }
}

void CheckIndex(const Item& composite, int index) {
    if (index < 0 || index > (composite.IsMap() ? kGreatestMapIndex : CountChildren(composite))) {
        throw Refusal{u"Index out of range"};
    }
}

}  // namespace

void Guard(Tree& tree) {
    if (tree.readOnly) {
        throw Refusal{u"Operation not allowed on a read-only tree!", true};
    }
    ++tree.changes;
    tree.stale = true;
}

Owned Create(Tree& tree, NodeType type, int tag) {
    Guard(tree);
    if (type < NodeTypeInteger || type > NodeTypeInteger64) {
        throw Refusal{u"Invalid node type!"};
    }
    auto item = std::make_unique<Item>();
    item->tree = &tree;
    item->type = type;
    item->value = NewValue(type);
    if (type == NodeTypeMap && tag != 0) {
        SetTag(*item, tag);
    }
    return item;
}

Owned TakeOut(Item& item) {
    Owned taken;
    if (item.parent == nullptr) {
        auto& free = item.tree->free;
        const auto found =
            std::find_if(free.begin(), free.end(), [&](const Owned& each) { return each.get() == &item; });
        taken = std::move(found != free.end() ? *found : item.tree->root);
        if (found != free.end()) {
            free.erase(found);
        }
        return taken;
    }
    if (item.parent->IsMap()) {
        taken = std::move(item.parent->entries.at(item.index));
        item.parent->entries.erase(item.index);
    } else {
        auto& elements = item.parent->elements;
        taken = std::move(elements[static_cast<std::size_t>(item.index)]);
        elements.erase(elements.begin() + item.index);
        Renumber(*item.parent);
    }
    taken->parent = nullptr;
    taken->index = -1;
    return taken;
}

void Place(Item& composite, int index, Owned item) {
    item->parent = &composite;
    item->index = index;
    if (composite.IsMap()) {
        composite.entries[index] = std::move(item);
    } else {
        composite.elements.insert(composite.elements.begin() + index, std::move(item));
        Renumber(composite);
    }
}

void Clear(Item& item) {
    Guard(*item.tree);
    item.value = NewValue(item.type);
    while (Item* const child = FindAfter(item, -1)) {
        Release(TakeOut(*child));
    }
}

Owned DetachChild(Item& composite, int index) {
    Guard(*composite.tree);
    Item* const child = Get(composite, index);
    if (child == nullptr) {
        throw Refusal{u"Remove::Index out of range"};
    }
    return TakeOut(*child);
}

void RemoveChild(Item& composite, int index) {
    Release(DetachChild(composite, index));
}

void Remove(Item& item) {
    Guard(*item.tree);
    if (item.parent != nullptr) {
        RemoveChild(*item.parent, item.index);
    } else if (item.tree->root.get() == &item) {
        RemoveRoot(*item.tree);
    } else {
        Guard(*item.tree);
        Release(TakeOut(item));
    }
}

Item& Detach(Item& item) {
    Guard(*item.tree);
    if (item.parent != nullptr) {
        item.tree->free.push_back(DetachChild(*item.parent, item.index));
    }
    return item;
}

void SetTemporality(Item& item, int t) {
    Guard(*item.tree);
    item.temporality = t;
    item.derived = 1;
}

void SetTag(Item& map, int tag) {
    Guard(*map.tree);
    map.tag = tag;
}

Item& NewNode(Item& composite, int index, NodeType type, bool keepOld, int tag) {
    CheckIndex(composite, index);
    Owned made = Create(*composite.tree, type, tag);
    Item& item = *made;
    if (Item* const old = Get(composite, index)) {
        if (!keepOld) {
            Release(TakeOut(*old));
        } else if (!item.IsComposite()) {
            throw Refusal{u"NewNode:Invalid node type for keeping old node"};
        } else {
            Guard(*composite.tree);
            Place(item, 0, TakeOut(*old));
        }
    }
    Place(composite, index, std::move(made));
    SetTemporality(item, TemporalityPersistent);
    return item;
}

void Move(Item& composite, int index, Item* item) {
    if (composite.IsMap() && Get(composite, index) != nullptr) {
        throw Refusal{u"Move::Index already in use!"};
    }
    CheckIndex(composite, index);
    CheckAncestor(composite, item);
    if (item->tree != composite.tree) {
        throw Refusal{u"Move::Can't move a node from a different tree!"};
    }
    if (composite.IsVector() && item->parent == &composite && index == CountChildren(composite)) {
        throw Refusal{u"Move::Index out of range!"};
    }
    Guard(*composite.tree);
    Place(composite, index, TakeOut(*item));
}

Item& Add(Item& vector, NodeType type, int tag) {
    if (!vector.elements.empty() && vector.elements.front()->type != type) {
        throw Refusal{u"Vector::Add::Different children type"};
    }
    return Insert(vector, CountChildren(vector), type, tag);
}

Item& Insert(Item& vector, int index, NodeType type, int tag) {
    CheckIndex(vector, index);
    Owned made = Create(*vector.tree, type, tag);
    Item& item = *made;
    Place(vector, index, std::move(made));
    return item;
}

void InsertNode(Item& vector, int index, Item* item) {
    Guard(*vector.tree);
    CheckIndex(vector, index);
    CheckAncestor(vector, item);
    Place(vector, index, TakeOut(*item));
}

}  // namespace Model
