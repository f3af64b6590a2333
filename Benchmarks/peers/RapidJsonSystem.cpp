// RapidJSON with its pool allocator. Its model is JSON: a map's keys are texts of digits, found one after another; a GUID is a
// text of 36 characters; there are no sets, a vector in ascending order stands for one. The tree is built through the document's
// own events, which lays every composite out in its exact size. Keys are referenced, as names in a host's code are; texts
// are copied. Comparing objects takes the square of their size, so that the Unicode tree with its one map of 288,767 entries is not
// compared.

#include <rapidjson/document.h>
#include <rapidjson/pointer.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "Failure.h"
#include "KeyText.h"
#include "System.h"

namespace Peers {
namespace {

using rapidjson::Document;
using rapidjson::SizeType;
using rapidjson::Value;

/// Writes a composite's content as the events that the document builds itself from.
template <bool InMap>
class Cursor {
public:
    explicit Cursor(Document& handler) : handler_(handler) {}

    void Integer(int key, std::int32_t value) { At(key).Int(value); }
    void Integer64(int key, std::int64_t value) { At(key).Int64(value); }
    void Double(int key, double value) { At(key).Double(value); }
    void Boolean(int key, bool value) { At(key).Bool(value); }
    void Text(int key, const TextValue& value) { PutText(key, value.utf8); }
    void Guid(int key, const GuidValue& value) { PutText(key, value.text); }
    template <class Fill>
    void Vector(int key, int size, Fill fill) {
        At(key).StartArray();
        Cursor<false> cursor(handler_);
        fill(cursor);
        handler_.EndArray(static_cast<SizeType>(size));
    }
    template <class Fill>
    void Map(int key, int size, int, Fill fill) {
        At(key).StartObject();
        Cursor<true> cursor(handler_);
        fill(cursor);
        handler_.EndObject(static_cast<SizeType>(size));
    }
    template <class T>
    void Set(int key, const std::vector<T>& values) {
        PutSetAsVector(*this, key, values);
    }

private:
    Document& At(int key) {
        if constexpr (InMap) {
            const std::string_view text = GetKeyText(key);
            handler_.Key(text.data(), static_cast<SizeType>(text.size()), false);
        }
        return handler_;
    }
    void PutText(int key, std::string_view text) {
        At(key).String(text.data(), static_cast<SizeType>(text.size()), true);
    }

    Document& handler_;
};

void WalkValue(const Value& value, Seen& seen) {
    ++seen.nodes;
    switch (value.GetType()) {
        case rapidjson::kArrayType:
            for (const Value& element : value.GetArray()) {
                WalkValue(element, seen);
            }
            return;
        case rapidjson::kObjectType:
            for (const auto& member : value.GetObject()) {
                WalkValue(member.value, seen);
            }
            return;
        case rapidjson::kStringType: seen.sum += value.GetStringLength(); return;
        case rapidjson::kNumberType:
            seen.sum += value.IsInt64() ? value.GetInt64() : static_cast<std::int64_t>(value.GetDouble());
            return;
        case rapidjson::kTrueType: ++seen.sum; return;
        case rapidjson::kFalseType:
        case rapidjson::kNullType: return;
    }
}

std::int64_t GetValue(const Value& value) {
    switch (value.GetType()) {
        case rapidjson::kStringType: return value.GetStringLength();
        case rapidjson::kNumberType:
            return value.IsInt64() ? value.GetInt64() : static_cast<std::int64_t>(value.GetDouble());
        case rapidjson::kFalseType: return 0;
        default: return 1;
    }
}

void SetValue(Value& value, std::int64_t number) {
    value.SetInt64(number);
}

void SetValue(Value& value, std::int32_t number) {
    value.SetInt64(number);
}

void SetValue(Value& value, double number) {
    value.SetDouble(number);
}

void SetValue(Value& value, bool truth) {
    value.SetBool(truth);
}

Value FieldName(int field) {
    const std::string_view text = GetKeyText(field);
    return Value(rapidjson::StringRef(text.data(), text.size()));
}

class RapidJsonSystem final : public System {
public:
    bool Can(Operation operation, const Workload& workload) const override {
        return operation != Operation::Compare || workload.shape != Shape::Recorded;
    }
    int GuidLength() const override { return static_cast<int>(GetRecordGuid().text.size()); }

    void Build(const Workload& workload) override {
        document_ = std::make_unique<Document>();
        const auto generate = [&workload](Document& handler) {
            handler.StartObject();
            Cursor<true> root(handler);
            Write(workload, root);
            return handler.EndObject(static_cast<SizeType>(GetRootSize(workload)));
        };
        document_->Populate(generate);
    }

    Seen Walk() const override { return WalkDocument(*document_); }

    std::int64_t Lookup(const std::vector<Place>& places) const override {
        const Value& list = (*document_)["0"];
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += GetValue(list[static_cast<SizeType>(place.record)].FindMember(FieldName(place.field))->value);
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
            sum += GetValue(*rapidjson::Pointer(path.data(), path.size()).Get(*document_));
        }
        return sum;
    }

    void Set(const std::vector<Place>& places) override {
        Value& list = (*document_)["0"];
        std::int32_t value = 0;
        for (const Place& place : places) {
            Value& field = list[static_cast<SizeType>(place.record)].FindMember(FieldName(place.field))->value;
            SetNumberOf(place, value++, [&field](auto number) { SetValue(field, number); });
        }
    }

    void Copy() override {
        copy_ = std::make_unique<Document>();
        copy_->CopyFrom(*document_, copy_->GetAllocator());
    }

    bool EqualsCopy() const override { return *document_ == *copy_; }

    std::size_t Save() override {
        text_ = std::make_unique<rapidjson::StringBuffer>();
        rapidjson::Writer<rapidjson::StringBuffer> writer(*text_);
        document_->Accept(writer);
        return text_->GetSize();
    }

    void Load() override {
        loaded_ = std::make_unique<Document>();
        loaded_->Parse<rapidjson::kParseIterativeFlag>(text_->GetString(), text_->GetSize());
        if (loaded_->HasParseError()) {
            Fail("RapidJSON: loading failed");
        }
    }

    Seen WalkLoaded() const override { return WalkDocument(*loaded_); }
    void Release() override { document_.reset(); }
    void ReleaseOthers() override {
        copy_.reset();
        loaded_.reset();
        text_.reset();
        paths_ = {};
    }

private:
    static Seen WalkDocument(const Document& document) {
        Seen seen;
        WalkValue(document, seen);
        return seen;
    }

    std::unique_ptr<Document> document_;
    std::unique_ptr<Document> copy_;
    std::unique_ptr<Document> loaded_;
    std::unique_ptr<rapidjson::StringBuffer> text_;
    std::vector<std::string> paths_;
};

}  // namespace

std::unique_ptr<System> MakeRapidJson() {
    return std::make_unique<RapidJsonSystem>();
}

}  // namespace Peers
