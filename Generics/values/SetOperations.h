#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <set>

#include <KivGenerics/Node.h>
#include <KivGenerics/SortedChunks.h>

#include "core/Raise.h"
#include "core/Texts.h"
#include "values/ElementFiller.h"
#include "values/LeafOperations.h"

// What sets do in the same way, whether they keep their elements in chunks or in a set of the standard library.

namespace KivGenerics {

/// Fills `destination` with every element of `source`, as `make(element)`. On failure `destination` keeps what it held.
template <class Destination, class Source, class Make>
void CopyElements(Destination& destination, const Source& source, Make make) {
    ElementFiller<Destination> filler(destination, source.size());
    for (const auto& element : source) {
        filler.Add(make(element));
    }
    filler.Finish();
}
template <class Destination, class Source>
void CopyElements(Destination& destination, const Source& source) {
    CopyElements(destination, source, [](const typename Source::value_type& element) { return element; });
}

/// -1, 0 or 1: as ascending sequences, the first differing element decides, then the shorter is smaller.
template <class Elements>
int CompareElements(const Elements& left, const Elements& right) {
    const auto order = left.key_comp();
    if (std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(), order)) {
        return -1;
    }
    return std::lexicographical_compare(right.begin(), right.end(), left.begin(), left.end(), order) ? 1 : 0;
}

/// The same of so many keys that lie side by side. Equal bytes are equal keys, though not the other way round.
template <class Order, class Key>
int CompareRuns(const Key* left, const Key* right, int count) noexcept {
    if (std::memcmp(left, right, static_cast<std::size_t>(count) * sizeof(Key)) == 0) {
        return 0;
    }
    for (int i = 0; i < count; ++i) {
        if (Order()(left[i], right[i])) {
            return -1;
        }
        if (Order()(right[i], left[i])) {
            return 1;
        }
    }
    return 0;
}

template <class Key, class Order>
int CompareElements(const SortedChunks<Key, Order>& left, const SortedChunks<Key, Order>& right) {
    auto mine = left.begin();
    auto theirs = right.begin();
    while (mine != left.end() && theirs != right.end()) {
        const int count = (std::min)(mine.GetRunLength(), theirs.GetRunLength());
        if (const int order = CompareRuns<Order>(mine.GetRun(), theirs.GetRun(), count)) {
            return order;
        }
        mine.Skip(count);
        theirs.Skip(count);
    }
    return CompareByLess(left.size(), right.size());
}

template <class Elements>
bool EqualElements(const Elements& left, const Elements& right) {
    return left.size() == right.size() && CompareElements(left, right) == 0;
}

template <class Element, class Order, class Allocator>
const Element& ItemAt(const std::set<Element, Order, Allocator>& elements, std::size_t index) {
    return *std::next(elements.begin(), static_cast<std::ptrdiff_t>(index));
}
template <class Key, class Order>
const Key& ItemAt(const SortedChunks<Key, Order>& elements, std::size_t index) {
    return elements.Item(index);
}

template <class Elements>
const typename Elements::value_type& ItemOf(const Elements& elements, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= elements.size()) {
        Raise(Texts::NoSuchItem);
    }
    return ItemAt(elements, static_cast<std::size_t>(index));
}

}  // namespace KivGenerics
