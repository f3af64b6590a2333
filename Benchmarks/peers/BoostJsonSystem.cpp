// Boost.JSON in a monotonic resource. Its model is JSON: a map's keys are texts of digits, copied into each object, found one after
// another in small objects and by hash in those of more than 18; a GUID is a text of 36 characters; a vector in ascending
// order stands for a set. What is changed in the resource is not given back before it goes as a whole.

#include <limits>

#include <boost/json.hpp>

#include "KeyText.h"
#include "System.h"

namespace Peers {
namespace {

namespace json = boost::json;

json::string_view View(std::string_view text) {
    return {text.data(), text.size()};
}

json::value& Put(json::array& array, int, json::value&& value) {
    return array.emplace_back(std::move(value));
}

json::value& Put(json::object& object, int key, json::value&& value) {
    return object.emplace(View(GetKeyText(key)), std::move(value)).first->value();
}

template <class Composite>
class Cursor {
public:
    explicit Cursor(Composite& composite) : composite_(composite) {}

    void Integer(int key, std::int32_t value) { Put(composite_, key, Make(std::int64_t{value})); }
    void Integer64(int key, std::int64_t value) { Put(composite_, key, Make(value)); }
    void Double(int key, double value) { Put(composite_, key, Make(value)); }
    void Boolean(int key, bool value) { Put(composite_, key, Make(value)); }
    void Text(int key, const TextValue& value) { Put(composite_, key, Make(View(value.utf8))); }
    void Guid(int key, const GuidValue& value) { Put(composite_, key, Make(View(value.text))); }
    template <class Fill>
    void Vector(int key, int size, Fill fill) {
        json::array& array = Put(composite_, key, Make(json::array_kind)).get_array();
        array.reserve(static_cast<std::size_t>(size));
        Cursor<json::array> cursor(array);
        fill(cursor);
    }
    template <class Fill>
    void Map(int key, int size, int, Fill fill) {
        json::object& object = Put(composite_, key, Make(json::object_kind)).get_object();
        object.reserve(static_cast<std::size_t>(size));
        Cursor<json::object> cursor(object);
        fill(cursor);
    }
    template <class T>
    void Set(int key, const std::vector<T>& values) {
        PutSetAsVector(*this, key, values);
    }

private:
    template <class T>
    json::value Make(T content) const {
        return json::value(content, composite_.storage());
    }

    Composite& composite_;
};

std::int64_t GetValue(const json::value& value) {
    switch (value.kind()) {
        case json::kind::int64: return value.get_int64();
        case json::kind::uint64: return static_cast<std::int64_t>(value.get_uint64());
        case json::kind::double_: return static_cast<std::int64_t>(value.get_double());
        case json::kind::bool_: return value.get_bool() ? 1 : 0;
        case json::kind::string: return static_cast<std::int64_t>(value.get_string().size());
        default: return 1;
    }
}

void WalkValue(const json::value& value, Seen& seen) {
    ++seen.nodes;
    if (const json::array* const array = value.if_array()) {
        for (const json::value& element : *array) {
            WalkValue(element, seen);
        }
    } else if (const json::object* const object = value.if_object()) {
        for (const json::key_value_pair& member : *object) {
            WalkValue(member.value(), seen);
        }
    } else {
        seen.sum += GetValue(value);
    }
}

/// A tree and the memory that it lives in.
struct Document {
    json::monotonic_resource resource;
    json::value root = json::value(json::storage_ptr(&resource));
};

class BoostJsonSystem final : public System {
public:
    int GuidLength() const override { return static_cast<int>(GetRecordGuid().text.size()); }

    void Build(const Workload& workload) override {
        tree_ = std::make_unique<Document>();
        json::object& object = tree_->root.emplace_object();
        object.reserve(static_cast<std::size_t>(GetRootSize(workload)));
        Cursor<json::object> root(object);
        Write(workload, root);
    }

    Seen Walk() const override { return WalkDocument(*tree_); }

    std::int64_t Lookup(const std::vector<Place>& places) const override {
        const json::array& list = GetList();
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += GetValue(*FindField(list, place));
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
        json::error_code error;
        for (const std::string& path : paths_) {
            sum += GetValue(*tree_->root.find_pointer(path, error));
        }
        return sum;
    }

    void Set(const std::vector<Place>& places) override {
        json::array& list = tree_->root.get_object().begin()->value().get_array();
        std::int32_t value = 0;
        for (const Place& place : places) {
            json::object& record = list[static_cast<std::size_t>(place.record)].get_object();
            json::value& field = record.find(View(GetKeyText(place.field)))->value();
            SetNumberOf(place, value++, [&field](auto number) { field = number; });
        }
    }

    void Copy() override {
        copy_ = std::make_unique<Document>();
        copy_->root = tree_->root;
    }

    bool EqualsCopy() const override { return tree_->root == copy_->root; }

    std::size_t Save() override {
        text_ = json::serialize(tree_->root);
        return text_.size();
    }

    void Load() override {
        json::parse_options options;
        options.max_depth = std::numeric_limits<std::size_t>::max();
        loaded_ = std::make_unique<Document>();
        loaded_->root = json::parse(text_, &loaded_->resource, options);
    }

    Seen WalkLoaded() const override { return WalkDocument(*loaded_); }
    void Release() override { tree_.reset(); }
    void ReleaseOthers() override {
        copy_.reset();
        loaded_.reset();
        text_ = {};
        paths_ = {};
    }

private:
    static Seen WalkDocument(const Document& document) {
        Seen seen;
        WalkValue(document.root, seen);
        return seen;
    }

    const json::array& GetList() const { return tree_->root.get_object().begin()->value().get_array(); }

    static const json::value* FindField(const json::array& list, const Place& place) {
        return list[static_cast<std::size_t>(place.record)].get_object().if_contains(View(GetKeyText(place.field)));
    }

    std::unique_ptr<Document> tree_;
    std::unique_ptr<Document> copy_;
    std::unique_ptr<Document> loaded_;
    std::string text_;
    std::vector<std::string> paths_;
};

}  // namespace

std::unique_ptr<System> MakeBoostJson() {
    return std::make_unique<BoostJsonSystem>();
}

}  // namespace Peers
