#pragma once

#include <algorithm>
#include <cstddef>

#include <KivBase/WString.h>

namespace KivGenerics {

/// The order of texts: by their units, then by length; -1, 0 or 1. The whole left text counts, of the right one what stands
/// before its first NUL.
// kept-on-purpose: text-cut-at-nul
inline int CompareTexts(const KivBase::WString& left, const char16_t* right) {
    using Units = std::char_traits<char16_t>;
    const std::size_t rightLength = Units::length(right);
    const int order = Units::compare(left.data(), right, (std::min)(left.size(), rightLength));
    if (order != 0) {
        return order < 0 ? -1 : 1;
    }
    return left.size() < rightLength ? -1 : (rightLength < left.size() ? 1 : 0);
}

}  // namespace KivGenerics
