#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "Recording.h"
#include "Values.h"

namespace Peers {

/// What is built: the same tree for every system.
enum class Shape {
    Numbers,  ///< one vector of Integers
    Records,  ///< maps of 8 fields of different kinds, among them a map of 3 and a vector of 4
    Sparse,  ///< maps of 40 Integers at the keys 0, 7, ... 273
    Chain,  ///< nested vectors, 3 Integers in a vector of their own in each
    Recorded,  ///< a tree that was loaded, such as that of the Unicode Character Database
    Sets,  ///< sets of integers
};

struct Workload {
    const char* name;
    const char* title;
    Shape shape;
    int size;  ///< vectors' elements, records, maps, levels or sets
    int passes = 1;  ///< how often a short one is run for one sample
    bool counts = true;  ///< in the table of ratios
    std::shared_ptr<const Recording> recording = nullptr;
    std::shared_ptr<const std::vector<std::vector<std::int32_t>>> sets = nullptr;
};

/// A node that is looked up or set: field `field` of record `record`; or an element that is looked up in a set.
struct Place {
    std::int32_t record;
    std::int32_t field;
};

inline constexpr int kRecordFields = 8;
inline constexpr int kIntegerField = 0;
inline constexpr int kDoubleField = 2;
inline constexpr int kBooleanField = 3;
inline constexpr int kInteger64Field = 4;
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
//     Guid(key, GuidValue), Vector(key, size, fill), Map(key, size, tag, fill), Set(key, vector of any of these values)
//
// `tag` is the semantic tag that fixes the number of a map's fixed slots in this library.

inline constexpr int kNoTag = 0;
inline constexpr int kTagOfThreeSlots = 24576;

/// True for the cursors of systems with a call for many numbers: `Integers(count, step)` makes the Integers 0 to count - 1 at the
/// keys 0, step, 2 * step and so on. For all others each is an Integer of its own.
template <class Cursor, class = void>
inline constexpr bool kHasIntegers = false;
template <class Cursor>
inline constexpr bool kHasIntegers<Cursor, std::void_t<decltype(std::declval<Cursor&>().Integers(1, 1))>> = true;

template <class Cursor>
void WriteNumbers(Cursor& composite, int count, int step = 1) {
    if constexpr (kHasIntegers<Cursor>) {
        composite.Integers(count, step);
    } else {
        for (int i = 0; i < count; ++i) {
            composite.Integer(i * step, i);
        }
    }
}

template <class Cursor>
void WriteRecord(Cursor& record, int number) {
    record.Integer(kIntegerField, number);
    record.Text(1, GetRecordText());
    record.Double(kDoubleField, number * 0.5);
    record.Boolean(kBooleanField, number % 2 == 0);
    record.Integer64(kInteger64Field, number);
    record.Guid(kGuidField, GetRecordGuid());
    record.Map(6, kNestedFields, kTagOfThreeSlots, [](auto& nested) { WriteNumbers(nested, kNestedFields); });
    record.Vector(7, kNestedNumbers, [](auto& nested) { WriteNumbers(nested, kNestedNumbers); });
}

template <class Cursor>
void WriteChain(Cursor& level, int levels) {
    level.Vector(0, kChainNumbers, [](auto& numbers) { WriteNumbers(numbers, kChainNumbers); });
    if (levels > 1) {
        level.Vector(1, levels > 2 ? 2 : 1, [levels](auto& next) { WriteChain(next, levels - 1); });
    }
}

/// Calls `set(value)` with the value that a record's field of numbers is set to: a std::int32_t, std::int64_t, double or bool.
/// Which it is follows from the field, as it does for a host that knows its records, and not from what stands there.
template <class SetValue>
void SetNumberOf(const Place& place, std::int32_t number, SetValue set) {
    switch (place.field) {
        case kDoubleField: set(static_cast<double>(number)); return;
        case kBooleanField: set(number % 2 != 0); return;
        case kInteger64Field: set(std::int64_t{number}); return;
        default: set(number); return;
    }
}

/// How many entries the root has.
inline int GetRootSize(const Workload& workload) {
    return workload.shape == Shape::Recorded ? workload.recording->GetRootSize() : 1;
}

/// Writes the workload's tree below its root, which is a map.
template <class Cursor>
void Write(const Workload& workload, Cursor& root) {
    const int size = workload.size;
    switch (workload.shape) {
        case Shape::Numbers: root.Vector(0, size, [size](auto& list) { WriteNumbers(list, size); }); return;
        case Shape::Records:
            root.Vector(0, size, [size](auto& list) {
                for (int i = 0; i < size; ++i) {
                    list.Map(i, kRecordFields, kNoTag, [i](auto& record) { WriteRecord(record, i); });
                }
            });
            return;
        case Shape::Sparse:
            root.Vector(0, size, [size](auto& list) {
                for (int i = 0; i < size; ++i) {
                    list.Map(i, kSparseFields, kNoTag,
                             [](auto& map) { WriteNumbers(map, kSparseFields, kSparseStep); });
                }
            });
            return;
        case Shape::Chain: root.Vector(0, size > 1 ? 2 : 1, [size](auto& top) { WriteChain(top, size); }); return;
        case Shape::Recorded: workload.recording->Replay(root); return;
        case Shape::Sets:
            root.Vector(0, size, [&workload](auto& list) {
                int key = 0;
                for (const std::vector<std::int32_t>& set : *workload.sets) {
                    list.Set(key++, set);
                }
            });
            return;
    }
}

}  // namespace Peers
