// protobuf's UnknownFieldSet, its one container that needs no schema. A map's key is a field number (keys count from 0, field
// numbers from 1), found one after another; a vector is a set of fields that all have number 1; composites are groups. An
// integer has no sign and no width, a Boolean is an integer, and a GUID is a text of 16 bytes. It cannot live on an arena. There is no
// comparison: the one here compares field by field, in order, as it was written.

#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/unknown_field_set.h>

#include "Failure.h"
#include "System.h"

namespace Peers {
namespace {

using google::protobuf::UnknownField;
using google::protobuf::UnknownFieldSet;

std::uint64_t ToBits(double value) {
    std::uint64_t bits = 0;
    static_assert(sizeof bits == sizeof value);
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

double FromBits(std::uint64_t bits) {
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

template <bool InMap>
class Cursor {
public:
    explicit Cursor(UnknownFieldSet& set) : set_(set) {}

    void Integer(int key, std::int32_t value) { Integer64(key, value); }
    void Integer64(int key, std::int64_t value) { set_.AddVarint(Number(key), static_cast<std::uint64_t>(value)); }
    void Double(int key, double value) { set_.AddFixed64(Number(key), ToBits(value)); }
    void Boolean(int key, bool value) { set_.AddVarint(Number(key), value ? 1 : 0); }
    void Text(int key, const TextValue& value) { set_.AddLengthDelimited(Number(key), value.utf8); }
    void Guid(int key, const GuidValue& value) {
        set_.AddLengthDelimited(Number(key))->assign(value.bytes.data(), value.bytes.size());
    }
    template <class Fill>
    void Vector(int key, int, Fill fill) {
        Cursor<false> cursor(*set_.AddGroup(Number(key)));
        fill(cursor);
    }
    template <class Fill>
    void Map(int key, int, int, Fill fill) {
        Cursor<true> cursor(*set_.AddGroup(Number(key)));
        fill(cursor);
    }
    template <class T>
    void Set(int key, const std::vector<T>& values) {
        PutSetAsVector(*this, key, values);
    }

private:
    static int Number(int key) { return InMap ? key + 1 : 1; }

    UnknownFieldSet& set_;
};

std::int64_t GetValue(const UnknownField& field) {
    switch (field.type()) {
        case UnknownField::TYPE_VARINT: return static_cast<std::int64_t>(field.varint());
        case UnknownField::TYPE_FIXED32: return field.fixed32();
        case UnknownField::TYPE_FIXED64: return static_cast<std::int64_t>(FromBits(field.fixed64()));
        case UnknownField::TYPE_LENGTH_DELIMITED: return static_cast<std::int64_t>(field.length_delimited().size());
        case UnknownField::TYPE_GROUP: return 1;
    }
    return 0;
}

void WalkSet(const UnknownFieldSet& set, Seen& seen) {
    ++seen.nodes;
    const int count = set.field_count();
    for (int i = 0; i < count; ++i) {
        const UnknownField& field = set.field(i);
        if (field.type() == UnknownField::TYPE_GROUP) {
            WalkSet(field.group(), seen);
        } else {
            ++seen.nodes;
            seen.sum += GetValue(field);
        }
    }
}

bool AreEqual(const UnknownFieldSet& left, const UnknownFieldSet& right);

bool AreEqual(const UnknownField& left, const UnknownField& right) {
    if (left.number() != right.number() || left.type() != right.type()) {
        return false;
    }
    switch (left.type()) {
        case UnknownField::TYPE_VARINT: return left.varint() == right.varint();
        case UnknownField::TYPE_FIXED32: return left.fixed32() == right.fixed32();
        case UnknownField::TYPE_FIXED64: return left.fixed64() == right.fixed64();
        case UnknownField::TYPE_LENGTH_DELIMITED: return left.length_delimited() == right.length_delimited();
        case UnknownField::TYPE_GROUP: return AreEqual(left.group(), right.group());
    }
    return false;
}

bool AreEqual(const UnknownFieldSet& left, const UnknownFieldSet& right) {
    const int count = left.field_count();
    if (count != right.field_count()) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        if (!AreEqual(left.field(i), right.field(i))) {
            return false;
        }
    }
    return true;
}

UnknownField& FindField(const UnknownFieldSet& record, int field) {
    for (int i = 0; i < record.field_count(); ++i) {
        if (record.field(i).number() == field + 1) {
            return *const_cast<UnknownFieldSet&>(record).mutable_field(i);
        }
    }
    Fail("UnknownFieldSet: a field is missing");
}

/// Which of the record's integers is a Boolean only the caller knows.
void SetValue(UnknownField& field, std::int64_t number) {
    field.set_varint(static_cast<std::uint64_t>(number));
}

void SetValue(UnknownField& field, std::int32_t number) {
    SetValue(field, std::int64_t{number});
}

void SetValue(UnknownField& field, double number) {
    field.set_fixed64(ToBits(number));
}

void SetValue(UnknownField& field, bool truth) {
    field.set_varint(truth ? 1 : 0);
}

class UnknownFieldsSystem final : public System {
public:
    bool Can(Operation operation, const Workload&) const override { return operation != Operation::Path; }

    void Build(const Workload& workload) override {
        root_ = std::make_unique<UnknownFieldSet>();
        Cursor<true> root(*root_);
        Write(workload, root);
    }

    Seen Walk() const override { return WalkRoot(*root_); }

    std::int64_t Lookup(const std::vector<Place>& places) const override {
        const UnknownFieldSet& list = root_->field(0).group();
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += GetValue(FindField(list.field(place.record).group(), place.field));
        }
        return sum;
    }

    void Set(const std::vector<Place>& places) override {
        const UnknownFieldSet& list = root_->field(0).group();
        std::int32_t value = 0;
        for (const Place& place : places) {
            UnknownField& field = FindField(list.field(place.record).group(), place.field);
            SetNumberOf(place, value++, [&field](auto number) { SetValue(field, number); });
        }
    }

    void Copy() override {
        copy_ = std::make_unique<UnknownFieldSet>();
        copy_->MergeFrom(*root_);
    }

    bool EqualsCopy() const override { return AreEqual(*root_, *copy_); }

    std::size_t Save() override {
        bytes_.clear();
        if (!root_->SerializeToString(&bytes_)) {
            Fail("UnknownFieldSet: saving failed");
        }
        return bytes_.size();
    }

    void Load() override {
        google::protobuf::io::ArrayInputStream stream(bytes_.data(), static_cast<int>(bytes_.size()));
        google::protobuf::io::CodedInputStream input(&stream);
        input.SetRecursionLimit(std::numeric_limits<int>::max());
        loaded_ = std::make_unique<UnknownFieldSet>();
        if (!loaded_->ParseFromCodedStream(&input)) {
            Fail("UnknownFieldSet: loading failed");
        }
    }

    Seen WalkLoaded() const override { return WalkRoot(*loaded_); }
    void Release() override { root_.reset(); }
    void ReleaseOthers() override {
        copy_.reset();
        loaded_.reset();
        bytes_ = {};
    }

private:
    static Seen WalkRoot(const UnknownFieldSet& root) {
        Seen seen;
        WalkSet(root, seen);
        return seen;
    }

    std::unique_ptr<UnknownFieldSet> root_;
    std::unique_ptr<UnknownFieldSet> copy_;
    std::unique_ptr<UnknownFieldSet> loaded_;
    std::string bytes_;
};

}  // namespace

std::unique_ptr<System> MakeUnknownFields() {
    return std::make_unique<UnknownFieldsSystem>();
}

}  // namespace Peers
