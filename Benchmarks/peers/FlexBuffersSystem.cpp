// FlexBuffers: bytes that are built from the inside out and then only read. Copying, saving and loading are one copy of bytes
// each, whatever the tree is: they are shown and not counted. A map's keys are texts of digits, found by bisection; a GUID is a value
// of 16 bytes; a vector of integers, in ascending order, stands for a set of integers. A number is stored as narrow as it fits, so that
// a larger one cannot be set in its place: there is no set. There are no paths, and no comparison: the one here compares value
// by value.

#include <flatbuffers/flexbuffers.h>

#include "Failure.h"
#include "KeyText.h"
#include "System.h"

namespace Peers {
namespace {

using flexbuffers::Reference;
using Bytes = std::vector<std::uint8_t>;

template <bool InMap>
class Cursor {
public:
    explicit Cursor(flexbuffers::Builder& builder) : builder_(builder) {}

    void Integer(int key, std::int32_t value) { At(key).Int(value); }
    void Integer64(int key, std::int64_t value) { At(key).Int(value); }
    void Double(int key, double value) { At(key).Double(value); }
    void Boolean(int key, bool value) { At(key).Bool(value); }
    void Text(int key, const TextValue& value) { At(key).String(value.utf8.data(), value.utf8.size()); }
    void Guid(int key, const GuidValue& value) { At(key).Blob(value.bytes.data(), value.bytes.size()); }
    template <class Fill>
    void Vector(int key, int, Fill fill) {
        const std::size_t start = At(key).StartVector();
        Cursor<false> cursor(builder_);
        fill(cursor);
        builder_.EndVector(start, false, false);
    }
    template <class Fill>
    void Map(int key, int, int, Fill fill) {
        const std::size_t start = At(key).StartMap();
        Cursor<true> cursor(builder_);
        fill(cursor);
        builder_.EndMap(start);
    }
    void Set(int key, const std::vector<std::int32_t>& values) {
        std::vector<std::int32_t> sorted(values);
        std::sort(sorted.begin(), sorted.end());
        At(key).Vector(sorted);
    }
    template <class T>
    void Set(int key, const std::vector<T>& values) {
        PutSetAsVector(*this, key, values);
    }

private:
    flexbuffers::Builder& At(int key) {
        if constexpr (InMap) {
            const std::string_view text = GetKeyText(key);
            builder_.Key(text.data(), text.size());
        }
        return builder_;
    }

    flexbuffers::Builder& builder_;
};

std::int64_t GetValue(Reference value) {
    switch (value.GetType()) {
        case flexbuffers::FBT_INT: return value.AsInt64();
        case flexbuffers::FBT_UINT: return static_cast<std::int64_t>(value.AsUInt64());
        case flexbuffers::FBT_FLOAT: return static_cast<std::int64_t>(value.AsDouble());
        case flexbuffers::FBT_BOOL: return value.AsBool() ? 1 : 0;
        case flexbuffers::FBT_STRING: return static_cast<std::int64_t>(value.AsString().length());
        case flexbuffers::FBT_BLOB: return static_cast<std::int64_t>(value.AsBlob().size());
        default: return 1;
    }
}

void WalkValue(Reference value, Seen& seen);

template <class Elements>
void WalkElements(const Elements& elements, Seen& seen) {
    const std::size_t size = elements.size();
    for (std::size_t i = 0; i < size; ++i) {
        WalkValue(elements[i], seen);
    }
}

void WalkValue(Reference value, Seen& seen) {
    ++seen.nodes;
    switch (value.GetType()) {
        case flexbuffers::FBT_MAP: WalkElements(value.AsMap().Values(), seen); return;
        case flexbuffers::FBT_VECTOR: WalkElements(value.AsVector(), seen); return;
        case flexbuffers::FBT_VECTOR_INT: WalkElements(value.AsTypedVector(), seen); return;
        default: seen.sum += GetValue(value); return;
    }
}

bool AreEqual(Reference left, Reference right);

template <class Elements>
bool AreEqualElements(const Elements& left, const Elements& right) {
    const std::size_t size = left.size();
    if (size != right.size()) {
        return false;
    }
    for (std::size_t i = 0; i < size; ++i) {
        if (!AreEqual(left[i], right[i])) {
            return false;
        }
    }
    return true;
}

template <class Run>
bool AreEqualBytes(const Run& left, const Run& right, std::size_t leftSize, std::size_t rightSize) {
    return leftSize == rightSize && std::memcmp(left, right, leftSize) == 0;
}

bool AreEqual(Reference left, Reference right) {
    if (left.GetType() != right.GetType()) {
        return false;
    }
    switch (left.GetType()) {
        case flexbuffers::FBT_MAP:
            return AreEqualElements(left.AsMap().Keys(), right.AsMap().Keys()) &&
                   AreEqualElements(left.AsMap().Values(), right.AsMap().Values());
        case flexbuffers::FBT_VECTOR: return AreEqualElements(left.AsVector(), right.AsVector());
        case flexbuffers::FBT_VECTOR_INT: return AreEqualElements(left.AsTypedVector(), right.AsTypedVector());
        case flexbuffers::FBT_KEY: return std::strcmp(left.AsKey(), right.AsKey()) == 0;
        case flexbuffers::FBT_STRING:
            return AreEqualBytes(left.AsString().c_str(), right.AsString().c_str(), left.AsString().length(),
                                 right.AsString().length());
        case flexbuffers::FBT_BLOB:
            return AreEqualBytes(left.AsBlob().data(), right.AsBlob().data(), left.AsBlob().size(),
                                 right.AsBlob().size());
        case flexbuffers::FBT_FLOAT: return left.AsDouble() == right.AsDouble();
        default: return left.AsInt64() == right.AsInt64();
    }
}

class FlexBuffersSystem final : public System {
public:
    bool Can(Operation operation, const Workload&) const override {
        return operation != Operation::Path && operation != Operation::Set;
    }

    void Build(const Workload& workload) override {
        flexbuffers::Builder builder;
        const std::size_t start = builder.StartMap();
        Cursor<true> root(builder);
        Write(workload, root);
        builder.EndMap(start);
        builder.Finish();
        tree_ = builder.GetBuffer();
    }

    Seen Walk() const override { return WalkBytes(tree_); }

    std::int64_t Lookup(const std::vector<Place>& places) const override {
        const flexbuffers::Vector list = flexbuffers::GetRoot(tree_).AsMap().Values()[0].AsVector();
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += GetValue(list[static_cast<std::size_t>(place.record)].AsMap()[FieldName(place.field)]);
        }
        return sum;
    }

    void Copy() override { copy_ = tree_; }
    bool EqualsCopy() const override { return AreEqual(flexbuffers::GetRoot(tree_), flexbuffers::GetRoot(copy_)); }

    std::size_t Save() override {
        saved_ = tree_;
        return saved_.size();
    }

    void Load() override { loaded_ = saved_; }
    Seen WalkLoaded() const override { return WalkBytes(loaded_); }
    void Release() override { tree_ = Bytes(); }
    void ReleaseOthers() override {
        copy_ = Bytes();
        saved_ = Bytes();
        loaded_ = Bytes();
    }

private:
    static Seen WalkBytes(const Bytes& bytes) {
        Seen seen;
        WalkValue(flexbuffers::GetRoot(bytes), seen);
        return seen;
    }

    /// Lookups want names that end with a 0.
    static const char* FieldName(int field) {
        static constexpr std::array<const char*, kRecordFields> names = {"0", "1", "2", "3", "4", "5", "6", "7"};
        return names[static_cast<std::size_t>(field)];
    }

    Bytes tree_;
    Bytes copy_;
    Bytes saved_;
    Bytes loaded_;
};

}  // namespace

std::unique_ptr<System> MakeFlexBuffers() {
    return std::make_unique<FlexBuffersSystem>();
}

}  // namespace Peers
