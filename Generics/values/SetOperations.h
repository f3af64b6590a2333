#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>

#include <KivGenerics/Node.h>

#include "core/Raise.h"
#include "core/Texts.h"
#include "values/LeafOperations.h"

namespace KivGenerics {

/// Fills `destination` with every element of `source`, as `make(element)`. On failure `destination` keeps what it held.
template <class Elements, class Make>
void CopyElements(Elements& destination, const Elements& source, Make make) {
    if (&destination == &source) {
        return;
    }
    Elements copy(destination.key_comp(), destination.get_allocator());
    for (const auto& element : source) {
        copy.insert(copy.end(), make(element));
    }
    destination.swap(copy);
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

template <class Elements>
bool EqualElements(const Elements& left, const Elements& right) {
    const auto order = left.key_comp();
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(),
                      [&](const auto& a, const auto& b) { return !order(a, b) && !order(b, a); });
}

template <class Elements>
const typename Elements::value_type& ItemOf(const Elements& elements, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= elements.size()) {
        Raise(Texts::NoSuchItem);
    }
    return *std::next(elements.begin(), index);
}

}  // namespace KivGenerics
