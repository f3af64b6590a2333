// nlohmann-json, saved and loaded as MessagePack, which is the faster of its formats. Its model is JSON with binary values: a map is a
// std::map whose keys are texts of digits, a GUID a binary value of 16 bytes, a vector in ascending order stands for a set.
// Every text, binary value, array and map is an allocation of its own.

#include <nlohmann/json.hpp>

#include "KeyText.h"
#include "System.h"

namespace Peers {
namespace {

using Json = nlohmann::json;

Json& Put(Json::array_t& array, int, Json&& value) {
    return array.emplace_back(std::move(value));
}

Json& Put(Json::object_t& object, int key, Json&& value) {
    return object.emplace(GetKeyText(key), std::move(value)).first->second;
}

template <class Composite>
class Cursor {
public:
    explicit Cursor(Composite& composite) : composite_(composite) {}

    void Integer(int key, std::int32_t value) { Put(composite_, key, Json(value)); }
    void Integer64(int key, std::int64_t value) { Put(composite_, key, Json(value)); }
    void Double(int key, double value) { Put(composite_, key, Json(value)); }
    void Boolean(int key, bool value) { Put(composite_, key, Json(value)); }
    void Text(int key, const TextValue& value) { Put(composite_, key, Json(value.utf8)); }
    void Guid(int key, const GuidValue& value) {
        Put(composite_, key, Json::binary(Json::binary_t::container_type(value.bytes.begin(), value.bytes.end())));
    }
    template <class Fill>
    void Vector(int key, int size, Fill fill) {
        auto& array = Put(composite_, key, Json(Json::value_t::array)).template get_ref<Json::array_t&>();
        array.reserve(static_cast<std::size_t>(size));
        Cursor<Json::array_t> cursor(array);
        fill(cursor);
    }
    template <class Fill>
    void Map(int key, int, int, Fill fill) {
        Json& map = Put(composite_, key, Json(Json::value_t::object));
        Cursor<Json::object_t> cursor(map.template get_ref<Json::object_t&>());
        fill(cursor);
    }
    template <class T>
    void Set(int key, const std::vector<T>& values) {
        PutSetAsVector(*this, key, values);
    }

private:
    Composite& composite_;
};

std::int64_t GetValue(const Json& value) {
    switch (value.type()) {
        case Json::value_t::number_integer: return *value.get_ptr<const Json::number_integer_t*>();
        case Json::value_t::number_unsigned:
            return static_cast<std::int64_t>(*value.get_ptr<const Json::number_unsigned_t*>());
        case Json::value_t::number_float:
            return static_cast<std::int64_t>(*value.get_ptr<const Json::number_float_t*>());
        case Json::value_t::boolean: return *value.get_ptr<const Json::boolean_t*>() ? 1 : 0;
        case Json::value_t::string: return static_cast<std::int64_t>(value.get_ptr<const Json::string_t*>()->size());
        case Json::value_t::binary: return static_cast<std::int64_t>(value.get_binary().size());
        default: return 1;
    }
}

void WalkValue(const Json& value, Seen& seen) {
    ++seen.nodes;
    if (const auto* const array = value.get_ptr<const Json::array_t*>()) {
        for (const Json& element : *array) {
            WalkValue(element, seen);
        }
    } else if (const auto* const object = value.get_ptr<const Json::object_t*>()) {
        for (const auto& member : *object) {
            WalkValue(member.second, seen);
        }
    } else {
        seen.sum += GetValue(value);
    }
}

void SetValue(Json& value, std::int64_t number) {
    *value.get_ptr<Json::number_integer_t*>() = number;
}

void SetValue(Json& value, std::int32_t number) {
    SetValue(value, std::int64_t{number});
}

void SetValue(Json& value, double number) {
    *value.get_ptr<Json::number_float_t*>() = number;
}

void SetValue(Json& value, bool truth) {
    *value.get_ptr<Json::boolean_t*>() = truth;
}

class NlohmannSystem final : public System {
public:
    void Build(const Workload& workload) override {
        root_ = Json(Json::value_t::object);
        Cursor<Json::object_t> root(root_.get_ref<Json::object_t&>());
        Write(workload, root);
    }

    Seen Walk() const override { return WalkRoot(root_); }

    std::int64_t Lookup(const std::vector<Place>& places) const override {
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += GetValue(FindField(place));
        }
        return sum;
    }

    void PreparePaths(const std::vector<Place>& places) override {
        for (const Place& place : places) {
            paths_.push_back("/0/" + std::to_string(place.record) + "/" + std::to_string(place.field));
        }
    }

    std::int64_t FindPaths() const override {
        std::int64_t sum = 0;
        for (const std::string& path : paths_) {
            sum += GetValue(root_[Json::json_pointer(path)]);
        }
        return sum;
    }

    void Set(const std::vector<Place>& places) override {
        std::int32_t value = 0;
        for (const Place& place : places) {
            Json& field = const_cast<Json&>(FindField(place));
            SetNumberOf(place, value++, [&field](auto number) { SetValue(field, number); });
        }
    }

    void Copy() override { copy_ = root_; }
    bool EqualsCopy() const override { return root_ == copy_; }

    std::size_t Save() override {
        bytes_ = Json::to_msgpack(root_);
        return bytes_.size();
    }

    void Load() override { loaded_ = Json::from_msgpack(bytes_); }
    Seen WalkLoaded() const override { return WalkRoot(loaded_); }
    void Release() override { root_ = Json(); }
    void ReleaseOthers() override {
        copy_ = Json();
        loaded_ = Json();
        bytes_ = {};
        paths_ = {};
    }

private:
    static Seen WalkRoot(const Json& root) {
        Seen seen;
        WalkValue(root, seen);
        return seen;
    }

    const Json& FindField(const Place& place) const {
        const auto& list = root_.get_ref<const Json::object_t&>().begin()->second.get_ref<const Json::array_t&>();
        const auto& record = list[static_cast<std::size_t>(place.record)].get_ref<const Json::object_t&>();
        return record.find(GetKeyText(place.field))->second;
    }

    Json root_;
    Json copy_;
    Json loaded_;
    std::vector<std::uint8_t> bytes_;
    std::vector<std::string> paths_;
};

}  // namespace

std::unique_ptr<System> MakeNlohmann() {
    return std::make_unique<NlohmannSystem>();
}

}  // namespace Peers
