// What people write by hand: std::map<int, std::variant<...>> for maps, std::vector of the same variant for vectors. It has no
// format of its own: saving and loading write and read the kind and the value of each node, which is the least that a hand-made
// format needs. Every map's entry is an allocation of its own, and so is every text that std::string cannot hold inside. A
// set of integers is a std::set. There are no paths.

#include <array>
#include <cstring>
#include <map>
#include <numeric>
#include <set>
#include <variant>

#include "Failure.h"
#include "System.h"

namespace Peers {
namespace {

struct Value;
using List = std::vector<Value>;
using Fields = std::map<int, Value>;
using GuidBytes = std::array<char, 16>;
using Integers = std::set<std::int32_t>;

struct Value {
    std::variant<std::int32_t, std::int64_t, double, bool, std::string, GuidBytes, List, Fields, Integers> content;
};

bool operator==(const Value& left, const Value& right) {
    return left.content == right.content;
}

Value& Put(List& list, int) {
    return list.emplace_back();
}

Value& Put(Fields& fields, int key) {
    return fields.emplace_hint(fields.end(), key, Value{})->second;
}

template <class Composite>
class Cursor {
public:
    explicit Cursor(Composite& composite) : composite_(composite) {}

    void Integer(int key, std::int32_t value) { Put(composite_, key).content = value; }
    void Integer64(int key, std::int64_t value) { Put(composite_, key).content = value; }
    void Double(int key, double value) { Put(composite_, key).content = value; }
    void Boolean(int key, bool value) { Put(composite_, key).content = value; }
    void Text(int key, const TextValue& value) {
        Put(composite_, key).content.template emplace<std::string>(value.utf8);
    }
    void Guid(int key, const GuidValue& value) {
        std::memcpy(Put(composite_, key).content.template emplace<GuidBytes>().data(), value.bytes.data(),
                    sizeof(GuidBytes));
    }
    template <class Fill>
    void Vector(int key, int size, Fill fill) {
        List& list = Put(composite_, key).content.template emplace<List>();
        list.reserve(static_cast<std::size_t>(size));
        Cursor<List> cursor(list);
        fill(cursor);
    }
    template <class Fill>
    void Map(int key, int, int, Fill fill) {
        Cursor<Fields> cursor(Put(composite_, key).content.template emplace<Fields>());
        fill(cursor);
    }
    void Set(int key, const std::vector<std::int32_t>& values) {
        Put(composite_, key).content.template emplace<Integers>(values.begin(), values.end());
    }
    template <class T>
    void Set(int key, const std::vector<T>& values) {
        PutSetAsVector(*this, key, values);
    }

private:
    Composite& composite_;
};

struct GetValue {
    std::int64_t operator()(std::int32_t value) const { return value; }
    std::int64_t operator()(std::int64_t value) const { return value; }
    std::int64_t operator()(double value) const { return static_cast<std::int64_t>(value); }
    std::int64_t operator()(bool value) const { return value ? 1 : 0; }
    std::int64_t operator()(const std::string& value) const { return static_cast<std::int64_t>(value.size()); }
    std::int64_t operator()(const GuidBytes& value) const { return static_cast<std::int64_t>(value.size()); }
    std::int64_t operator()(const List&) const { return 1; }
    std::int64_t operator()(const Fields&) const { return 1; }
    std::int64_t operator()(const Integers& values) const {
        return std::accumulate(values.begin(), values.end(), std::int64_t{0});
    }
};

void WalkValue(const Value& value, Seen& seen) {
    ++seen.nodes;
    if (const List* const list = std::get_if<List>(&value.content)) {
        for (const Value& element : *list) {
            WalkValue(element, seen);
        }
    } else if (const Fields* const fields = std::get_if<Fields>(&value.content)) {
        for (const auto& field : *fields) {
            WalkValue(field.second, seen);
        }
    } else {
        seen.sum += std::visit(GetValue{}, value.content);
    }
}

class Writer {
public:
    explicit Writer(std::string& bytes) : bytes_(bytes) {}

    void Write(const Value& value) {
        bytes_.push_back(static_cast<char>(value.content.index()));
        std::visit([this](const auto& content) { Put(content); }, value.content);
    }

private:
    template <class T>
    void Put(const T& value) {
        bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void Put(const std::string& text) {
        Put(text.size());
        bytes_.append(text);
    }
    void Put(const List& list) {
        Put(list.size());
        for (const Value& element : list) {
            Write(element);
        }
    }
    void Put(const Integers& values) {
        Put(values.size());
        for (const std::int32_t value : values) {
            Put(value);
        }
    }
    void Put(const Fields& fields) {
        Put(fields.size());
        for (const auto& field : fields) {
            Put(field.first);
            Write(field.second);
        }
    }

    std::string& bytes_;
};

class Reader {
public:
    explicit Reader(const std::string& bytes) : next_(bytes.data()), end_(bytes.data() + bytes.size()) {}

    void Read(Value& value) {
        switch (*Take(1)) {
            case 0: Get(value.content.emplace<0>()); return;
            case 1: Get(value.content.emplace<1>()); return;
            case 2: Get(value.content.emplace<2>()); return;
            case 3: Get(value.content.emplace<3>()); return;
            case 4: Get(value.content.emplace<4>()); return;
            case 5: Get(value.content.emplace<5>()); return;
            case 6: Get(value.content.emplace<6>()); return;
            case 7: Get(value.content.emplace<7>()); return;
            case 8: Get(value.content.emplace<8>()); return;
            default: Fail("std::map: loading failed");
        }
    }

private:
    const char* Take(std::size_t count) {
        if (static_cast<std::size_t>(end_ - next_) < count) {
            Fail("std::map: loading failed");
        }
        const char* const taken = next_;
        next_ += count;
        return taken;
    }
    template <class T>
    void Get(T& value) {
        std::memcpy(&value, Take(sizeof value), sizeof value);
    }
    std::size_t GetSize() {
        std::size_t size = 0;
        Get(size);
        return size;
    }
    void Get(std::string& text) {
        const std::size_t size = GetSize();
        text.assign(Take(size), size);
    }
    void Get(List& list) {
        list.resize(GetSize());
        for (Value& element : list) {
            Read(element);
        }
    }
    void Get(Integers& values) {
        for (std::size_t left = GetSize(); left > 0; --left) {
            std::int32_t value = 0;
            Get(value);
            values.emplace_hint(values.end(), value);
        }
    }
    void Get(Fields& fields) {
        for (std::size_t left = GetSize(); left > 0; --left) {
            int key = 0;
            Get(key);
            Read(fields.emplace_hint(fields.end(), key, Value{})->second);
        }
    }

    const char* next_;
    const char* end_;
};

class VariantMapSystem final : public System {
public:
    bool Can(Operation operation, const Workload&) const override { return operation != Operation::Path; }
    bool HasSets() const override { return true; }

    void Build(const Workload& workload) override {
        root_ = std::make_unique<Value>();
        Cursor<Fields> root(root_->content.emplace<Fields>());
        Write(workload, root);
    }

    Seen Walk() const override { return WalkRoot(*root_); }

    std::int64_t Lookup(const std::vector<Place>& places) const override {
        const List& list = GetList();
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += std::visit(GetValue{}, FindField(list, place).content);
        }
        return sum;
    }

    std::int64_t Contains(const std::vector<Place>& places) const override {
        const List& list = GetList();
        std::int64_t sum = 0;
        for (const Place& place : places) {
            const Integers& set = std::get<Integers>(list[static_cast<std::size_t>(place.record)].content);
            sum += static_cast<std::int64_t>(set.count(place.field));
        }
        return sum;
    }

    void Set(const std::vector<Place>& places) override {
        const List& list = GetList();
        std::int32_t value = 0;
        for (const Place& place : places) {
            Value& field = const_cast<Value&>(FindField(list, place));
            SetNumberOf(place, value++, [&field](auto number) { std::get<decltype(number)>(field.content) = number; });
        }
    }

    void Copy() override { copy_ = std::make_unique<Value>(*root_); }
    bool EqualsCopy() const override { return *root_ == *copy_; }

    std::size_t Save() override {
        bytes_.clear();
        Writer(bytes_).Write(*root_);
        return bytes_.size();
    }

    void Load() override {
        loaded_ = std::make_unique<Value>();
        Reader(bytes_).Read(*loaded_);
    }

    Seen WalkLoaded() const override { return WalkRoot(*loaded_); }
    void Release() override { root_.reset(); }
    void ReleaseOthers() override {
        copy_.reset();
        loaded_.reset();
        bytes_ = {};
    }

private:
    static Seen WalkRoot(const Value& root) {
        Seen seen;
        WalkValue(root, seen);
        return seen;
    }

    const List& GetList() const { return std::get<List>(std::get<Fields>(root_->content).find(0)->second.content); }

    static const Value& FindField(const List& list, const Place& place) {
        const Fields& fields = std::get<Fields>(list[static_cast<std::size_t>(place.record)].content);
        return fields.find(place.field)->second;
    }

    std::unique_ptr<Value> root_;
    std::unique_ptr<Value> copy_;
    std::unique_ptr<Value> loaded_;
    std::string bytes_;
};

}  // namespace

std::unique_ptr<System> MakeVariantMap() {
    return std::make_unique<VariantMapSystem>();
}

}  // namespace Peers
