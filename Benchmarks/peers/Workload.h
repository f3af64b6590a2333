#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <KivBase/Guid.h>
#include <KivBase/WString.h>

namespace Peers {

/// What is built: the same tree for every system.
enum class Shape {
    Numbers,  ///< one vector of Integers
    Records,  ///< maps of 8 fields of different kinds, among them a map of 3 and a vector of 4
    Sparse,  ///< maps of 40 Integers at the keys 0, 7, ... 273
    Chain,  ///< nested vectors, 3 Integers in a vector of their own in each
    Unicode,  ///< the tree of the Unicode Character Database, as the example builds it
    Sets,  ///< sets of integers
};

struct Workload {
    const char* name;
    const char* title;
    Shape shape;
    int size;  ///< vectors' elements, records, maps, levels or sets
    int setSize = 0;  ///< elements of each set
    int passes = 1;  ///< how often a short one is run for one sample
    bool counts = true;  ///< in the table of ratios
};

/// A text as each system wants to have it, so that nothing is converted while it is measured.
struct TextValue {
    KivBase::WString units;
    std::string utf8;
};

/// A GUID as the record, as its 16 bytes and as the text that formats without binary values use.
struct GuidValue {
    GUID id;
    std::string_view bytes;
    std::string_view text;
};

/// A node that is looked up or set: field `field` of record `record`.
struct Place {
    std::int32_t record;
    std::int32_t field;
};

inline constexpr int kRecordFields = 8;
inline constexpr int kBooleanField = 3;
inline constexpr int kGuidField = 5;
inline constexpr int kNestedFields = 3;
inline constexpr int kNestedNumbers = 4;
inline constexpr int kSparseFields = 40;
inline constexpr int kSparseStep = 7;
inline constexpr int kChainNumbers = 3;

/// The text of every record, and its GUID.
const TextValue& GetRecordText();
const GuidValue& GetRecordGuid();

// What a cursor over a new composite understands. The key is the place in the composite: a map's index, a vector's position.
// A composite's content is written by a callable that gets the cursor over it:
//
//     Integer(key, int32), Integer64(key, int64), Double(key, double), Boolean(key, bool), Text(key, TextValue),
//     Guid(key, GuidValue), Vector(key, size, fill), Map(key, size, slots, fill), Set(key, vector of int32)
//
// `slots` is the number of keys from 0 on that a system may lay out as an array.

template <class Cursor>
void WriteNumbers(Cursor& list, int count) {
    for (int i = 0; i < count; ++i) {
        list.Integer(i, i);
    }
}

template <class Cursor>
void WriteRecord(Cursor& record, int number) {
    record.Integer(0, number);
    record.Text(1, GetRecordText());
    record.Double(2, number * 0.5);
    record.Boolean(3, number % 2 == 0);
    record.Integer64(4, number);
    record.Guid(5, GetRecordGuid());
    record.Map(6, kNestedFields, kNestedFields, [](auto& nested) { WriteNumbers(nested, kNestedFields); });
    record.Vector(7, kNestedNumbers, [](auto& nested) { WriteNumbers(nested, kNestedNumbers); });
}

template <class Cursor>
void WriteSparse(Cursor& map) {
    for (int i = 0; i < kSparseFields; ++i) {
        map.Integer(i * kSparseStep, i);
    }
}

template <class Cursor>
void WriteChain(Cursor& level, int levels) {
    level.Vector(0, kChainNumbers, [](auto& numbers) { WriteNumbers(numbers, kChainNumbers); });
    if (levels > 1) {
        level.Vector(1, levels > 2 ? 2 : 1, [levels](auto& next) { WriteChain(next, levels - 1); });
    }
}

/// Writes the workload's tree below its root, which is a map of one entry.
template <class Cursor>
void Write(const Workload& workload, Cursor& root) {
    const int size = workload.size;
    switch (workload.shape) {
        case Shape::Numbers: root.Vector(0, size, [size](auto& list) { WriteNumbers(list, size); }); return;
        case Shape::Records:
            root.Vector(0, size, [size](auto& list) {
                for (int i = 0; i < size; ++i) {
                    list.Map(i, kRecordFields, kRecordFields, [i](auto& record) { WriteRecord(record, i); });
                }
            });
            return;
        case Shape::Sparse:
            root.Vector(0, size, [size](auto& list) {
                for (int i = 0; i < size; ++i) {
                    list.Map(i, kSparseFields, kRecordFields, [](auto& map) { WriteSparse(map); });
                }
            });
            return;
        case Shape::Chain: root.Vector(0, size > 1 ? 2 : 1, [size](auto& top) { WriteChain(top, size); }); return;
        case Shape::Unicode:
        case Shape::Sets: return;
    }
}

}  // namespace Peers
