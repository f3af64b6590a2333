// msgpack-c with its zone. Its model is an array of 24-byte objects for each composite: arrays and maps have the size they were
// made with, and a map's keys are found one after another. A number has the sign of its value for a type, so that there are no
// Integer64s beside Integers. Texts are copied into the zone, also when loading: what is loaded does not depend on the bytes.

#include <cstring>

#include <msgpack.hpp>

#include "Failure.h"
#include "System.h"

namespace Peers {
namespace {

using msgpack::object;

object MakeInteger(std::int64_t value) {
    return object(value);
}

object MakeRaw(msgpack::zone& zone, std::string_view bytes, msgpack::type::object_type type) {
    char* const copy = static_cast<char*>(zone.allocate_align(bytes.size(), 1));
    std::memcpy(copy, bytes.data(), bytes.size());
    object made;
    made.type = type;
    if (type == msgpack::type::STR) {
        made.via.str = {static_cast<std::uint32_t>(bytes.size()), copy};
    } else {
        made.via.bin = {static_cast<std::uint32_t>(bytes.size()), copy};
    }
    return made;
}

template <class T>
T* Allocate(msgpack::zone& zone, int count) {
    return static_cast<T*>(zone.allocate_align(sizeof(T) * static_cast<std::size_t>(count), alignof(T)));
}

/// Fills the elements or members of a composite one after another.
template <class Slot>
class Cursor {
public:
    Cursor(msgpack::zone& zone, Slot* next) : zone_(zone), next_(next) {}

    void Integer(int key, std::int32_t value) { Put(key, MakeInteger(value)); }
    void Integer64(int key, std::int64_t value) { Put(key, MakeInteger(value)); }
    void Double(int key, double value) { Put(key, object(value)); }
    void Boolean(int key, bool value) { Put(key, object(value)); }
    void Text(int key, const TextValue& value) { Put(key, MakeRaw(zone_, value.utf8, msgpack::type::STR)); }
    void Guid(int key, const GuidValue& value) { Put(key, MakeRaw(zone_, value.bytes, msgpack::type::BIN)); }
    template <class Fill>
    void Vector(int key, int size, Fill fill) {
        object made;
        made.type = msgpack::type::ARRAY;
        made.via.array = {static_cast<std::uint32_t>(size), Allocate<object>(zone_, size)};
        Put(key, made);
        Cursor<object> cursor(zone_, made.via.array.ptr);
        fill(cursor);
    }
    template <class Fill>
    void Map(int key, int size, int, Fill fill) {
        object made;
        made.type = msgpack::type::MAP;
        made.via.map = {static_cast<std::uint32_t>(size), Allocate<msgpack::object_kv>(zone_, size)};
        Put(key, made);
        Cursor<msgpack::object_kv> cursor(zone_, made.via.map.ptr);
        fill(cursor);
    }
    template <class T>
    void Set(int key, const std::vector<T>& values) {
        PutSetAsVector(*this, key, values);
    }

private:
    void Put(int key, const object& value) {
        if constexpr (std::is_same_v<Slot, object>) {
            new (next_++) object(value);
        } else {
            new (&next_->key) object(static_cast<std::uint64_t>(key));
            new (&next_->val) object(value);
            ++next_;
        }
    }

    msgpack::zone& zone_;
    Slot* next_;
};

std::int64_t GetValue(const object& value) {
    switch (value.type) {
        case msgpack::type::POSITIVE_INTEGER:
        case msgpack::type::NEGATIVE_INTEGER: return value.via.i64;
        case msgpack::type::FLOAT32:
        case msgpack::type::FLOAT64: return static_cast<std::int64_t>(value.via.f64);
        case msgpack::type::BOOLEAN: return value.via.boolean ? 1 : 0;
        case msgpack::type::STR: return value.via.str.size;
        case msgpack::type::BIN: return value.via.bin.size;
        default: return 1;
    }
}

void WalkObject(const object& value, Seen& seen) {
    ++seen.nodes;
    if (value.type == msgpack::type::ARRAY) {
        for (std::uint32_t i = 0; i < value.via.array.size; ++i) {
            WalkObject(value.via.array.ptr[i], seen);
        }
    } else if (value.type == msgpack::type::MAP) {
        for (std::uint32_t i = 0; i < value.via.map.size; ++i) {
            WalkObject(value.via.map.ptr[i].val, seen);
        }
    } else {
        seen.sum += GetValue(value);
    }
}

object& FindField(const object& record, int field) {
    const msgpack::object_map& map = record.via.map;
    for (std::uint32_t i = 0; i < map.size; ++i) {
        if (map.ptr[i].key.via.u64 == static_cast<std::uint64_t>(field)) {
            return map.ptr[i].val;
        }
    }
    Fail("msgpack-c: a field is missing");
}

class MsgpackSystem final : public System {
public:
    bool Can(Operation operation, const Workload&) const override { return operation != Operation::Path; }

    void Build(const Workload& workload) override {
        zone_ = std::make_unique<msgpack::zone>();
        root_.type = msgpack::type::MAP;
        const int entries = GetRootSize(workload);
        root_.via.map = {static_cast<std::uint32_t>(entries), Allocate<msgpack::object_kv>(*zone_, entries)};
        Cursor<msgpack::object_kv> root(*zone_, root_.via.map.ptr);
        Write(workload, root);
    }

    Seen Walk() const override { return WalkRoot(root_); }

    std::int64_t Lookup(const std::vector<Place>& places) const override {
        const object* const list = GetList();
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += GetValue(FindField(list[place.record], place.field));
        }
        return sum;
    }

    void Set(const std::vector<Place>& places) override {
        const object* const list = GetList();
        std::int32_t value = 0;
        for (const Place& place : places) {
            object& field = FindField(list[place.record], place.field);
            SetNumberOf(place, value++, [&field](auto number) { field = object(number); });
        }
    }

    void Copy() override { copy_ = msgpack::clone(root_); }
    bool EqualsCopy() const override { return root_ == copy_.get(); }

    std::size_t Save() override {
        bytes_ = std::make_unique<msgpack::sbuffer>();
        msgpack::pack(*bytes_, root_);
        return bytes_->size();
    }

    void Load() override { loaded_ = msgpack::unpack(bytes_->data(), bytes_->size()); }

    Seen WalkLoaded() const override { return WalkRoot(loaded_.get()); }
    void Release() override { zone_.reset(); }
    void ReleaseOthers() override {
        copy_ = {};
        loaded_ = {};
        bytes_.reset();
    }

private:
    static Seen WalkRoot(const object& root) {
        Seen seen;
        WalkObject(root, seen);
        return seen;
    }

    const object* GetList() const { return root_.via.map.ptr[0].val.via.array.ptr; }

    std::unique_ptr<msgpack::zone> zone_;
    object root_;
    msgpack::object_handle copy_;
    msgpack::object_handle loaded_;
    std::unique_ptr<msgpack::sbuffer> bytes_;
};

}  // namespace

std::unique_ptr<System> MakeMsgpack() {
    return std::make_unique<MsgpackSystem>();
}

}  // namespace Peers
