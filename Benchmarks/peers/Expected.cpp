#include "Expected.h"

#include <map>
#include <unordered_set>
#include <utility>

namespace Peers {
namespace {

class Cursor {
public:
    explicit Cursor(Expected& expected) : expected_(expected) {}

    void Integer(int, std::int32_t value) { Add(value); }
    void Integer64(int, std::int64_t value) { Add(value); }
    void Double(int, double value) { Add(static_cast<std::int64_t>(value)); }
    void Boolean(int, bool value) { Add(value ? 1 : 0); }
    void Text(int, const TextValue& value) { Add(static_cast<std::int64_t>(value.utf8.size())); }
    void Guid(int, const GuidValue&) {
        Add(0);
        ++expected_.guids;
    }
    template <class Fill>
    void Vector(int, int, Fill fill) {
        Add(0);
        fill(*this);
    }
    template <class Fill>
    void Map(int, int, int, Fill fill) {
        Add(0);
        fill(*this);
    }

    void Set(int, const std::vector<std::int32_t>& values) {
        Add(0);
        for (const std::int32_t value : values) {
            expected_.sum += value;
        }
        expected_.elements += static_cast<std::int64_t>(values.size());
    }
    template <class T>
    void Set(int, const std::vector<T>& values) {
        const std::int64_t nodes = ++expected_.nodes;
        for (const T& value : values) {
            PutElement(*this, 0, value);
        }
        expected_.nodes = nodes;
        expected_.elements += static_cast<std::int64_t>(values.size());
    }

private:
    void Add(std::int64_t value) {
        ++expected_.nodes;
        expected_.sum += value;
    }

    Expected& expected_;
};

std::int64_t ValueAt(const Place& place) {
    switch (place.field) {
        case kIntegerField:
        case kInteger64Field: return place.record;
        case 1: return static_cast<std::int64_t>(GetRecordText().utf8.size());
        case kDoubleField: return place.record / 2;
        case kBooleanField: return place.record % 2 == 0 ? 1 : 0;
        case kGuidField: return 0;
        default: return 1;
    }
}

}  // namespace

Expected Expect(const Workload& workload) {
    Expected expected;
    expected.nodes = 1;
    Cursor root(expected);
    Write(workload, root);
    return expected;
}

Expected ExpectLookup(const std::vector<Place>& places) {
    Expected expected;
    for (const Place& place : places) {
        expected.sum += ValueAt(place);
        expected.guids += place.field == kGuidField ? 1 : 0;
    }
    return expected;
}

Expected ExpectContained(const Workload& workload, const std::vector<Place>& places) {
    std::vector<std::unordered_set<std::int32_t>> sets;
    for (const std::vector<std::int32_t>& values : *workload.sets) {
        sets.emplace_back(values.begin(), values.end());
    }
    Expected expected;
    for (const Place& place : places) {
        expected.sum += static_cast<std::int64_t>(sets[static_cast<std::size_t>(place.record)].count(place.field));
    }
    return expected;
}

Expected ExpectAfterSet(const std::vector<Place>& places) {
    std::map<std::pair<int, int>, std::int64_t> values;
    std::int64_t value = 0;
    for (const Place& place : places) {
        values[{place.record, place.field}] = place.field == kBooleanField ? value % 2 : value;
        ++value;
    }
    Expected expected;
    for (const Place& place : places) {
        expected.sum += values[{place.record, place.field}];
    }
    return expected;
}

}  // namespace Peers
