#include <iterator>

#include "model/Model.h"

namespace Model {

int CountChildren(const Item& item) {
    return static_cast<int>(item.elements.size() + item.entries.size());
}

Item* Get(const Item& item, int index) {
    if (item.IsVector()) {
        const bool there = index >= 0 && index < CountChildren(item);
        return there ? item.elements[static_cast<std::size_t>(index)].get() : nullptr;
    }
    const auto found = item.entries.find(index);
    return found != item.entries.end() ? found->second.get() : nullptr;
}

Item* FindAfter(const Item& item, int index) {
    if (item.IsVector()) {
        return index < CountChildren(item) ? Get(item, index + 1) : nullptr;
    }
    const auto next = item.entries.upper_bound(index);
    return next != item.entries.end() ? next->second.get() : nullptr;
}

Item* GetNext(const Item& item, int index) {
    if (index >= -1) {
        return FindAfter(item, index);
    }
    // Below -1 a vector has nothing, and a map shows only what stands beyond its slots.
    return item.IsVector() ? nullptr : FindAfter(item, item.slots - 1);
}

Item* GetNth(const Item& item, int n) {
    if (n < 0 || n >= CountChildren(item)) {
        return nullptr;
    }
    return item.IsVector() ? Get(item, n) : std::next(item.entries.begin(), n)->second.get();
}

int GetSize(Item& item, int t) {
    if (t == KivGenerics::TemporalityTemporary) {
        return CountChildren(item);
    }
    int size = 0;
    for (Item* child = FindAfter(item, -1); child != nullptr; child = FindAfter(item, child->index)) {
        size += GetDerived(*child) <= t ? 1 : 0;
    }
    return size;
}

}  // namespace Model
