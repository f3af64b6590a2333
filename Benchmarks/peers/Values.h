#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <KivBase/Guid.h>
#include <KivBase/WString.h>

namespace Peers {

/// A text as each system wants to have it, so that nothing is converted while it is measured.
struct TextValue {
    KivBase::WString units;
    std::string utf8;
};

/// A GUID as the record, as its 16 bytes and as the text that formats without binary values use.
struct GuidValue {
    GUID id;
    std::string bytes;
    std::string text;
};

GuidValue MakeGuidValue(const GUID& id);

// The values of a list, by the type of its elements: for the systems that have no sets.

template <class Cursor>
void PutElement(Cursor& list, int key, std::int32_t value) {
    list.Integer(key, value);
}
template <class Cursor>
void PutElement(Cursor& list, int key, double value) {
    list.Double(key, value);
}
template <class Cursor>
void PutElement(Cursor& list, int key, const TextValue& value) {
    list.Text(key, value);
}
template <class Cursor>
void PutElement(Cursor& list, int key, const GuidValue& value) {
    list.Guid(key, value);
}

/// A set as a vector, in ascending order where the values are integers; the others come in the order of a set.
template <class Cursor, class T>
void PutSetAsVector(Cursor& cursor, int key, const std::vector<T>& values) {
    const auto fill = [](const std::vector<T>& sorted) {
        return [&sorted](auto& list) {
            int next = 0;
            for (const T& value : sorted) {
                PutElement(list, next++, value);
            }
        };
    };
    const int size = static_cast<int>(values.size());
    if constexpr (std::is_same_v<T, std::int32_t>) {
        std::vector<std::int32_t> sorted(values);
        std::sort(sorted.begin(), sorted.end());
        cursor.Vector(key, size, fill(sorted));
    } else {
        cursor.Vector(key, size, fill(values));
    }
}

}  // namespace Peers
