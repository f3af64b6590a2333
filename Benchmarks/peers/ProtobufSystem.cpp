// protobuf: one recursive message on an arena, its maps protobuf's own with integers as keys. A GUID is a value of 16 bytes; a
// vector of plain integers, in ascending order, stands for a set of integers, and a vector for the others. A map has no
// order. There are no paths. MessageDifferencer compares through reflection, so that a host that compares often compares field by field
// as is done here.

#include <limits>

#include <Node.pb.h>
#include <google/protobuf/arena.h>
#include <google/protobuf/io/coded_stream.h>

#include "Failure.h"
#include "System.h"

namespace Peers {
namespace {

using google::protobuf::Arena;
using Message = PeerMessages::Node;

Message& Put(PeerMessages::Vector& vector, int) {
    return *vector.add_elements();
}

Message& Put(PeerMessages::Map& map, int key) {
    return (*map.mutable_entries())[key];
}

template <class Composite>
class Cursor {
public:
    explicit Cursor(Composite& composite) : composite_(composite) {}

    void Integer(int key, std::int32_t value) { Put(composite_, key).set_integer(value); }
    void Integer64(int key, std::int64_t value) { Put(composite_, key).set_integer64(value); }
    void Double(int key, double value) { Put(composite_, key).set_number(value); }
    void Boolean(int key, bool value) { Put(composite_, key).set_boolean(value); }
    void Text(int key, const TextValue& value) { Put(composite_, key).set_text(value.utf8); }
    void Guid(int key, const GuidValue& value) { Put(composite_, key).set_guid(value.bytes); }
    template <class Fill>
    void Vector(int key, int size, Fill fill) {
        PeerMessages::Vector& vector = *Put(composite_, key).mutable_vector();
        vector.mutable_elements()->Reserve(size);
        Cursor<PeerMessages::Vector> cursor(vector);
        fill(cursor);
    }
    template <class Fill>
    void Map(int key, int, int, Fill fill) {
        Cursor<PeerMessages::Map> cursor(*Put(composite_, key).mutable_map());
        fill(cursor);
    }
    void Set(int key, const std::vector<std::int32_t>& values) {
        auto& elements = *Put(composite_, key).mutable_integers()->mutable_elements();
        elements.Add(values.begin(), values.end());
        std::sort(elements.begin(), elements.end());
    }
    template <class T>
    void Set(int key, const std::vector<T>& values) {
        PutSetAsVector(*this, key, values);
    }

private:
    Composite& composite_;
};

std::int64_t GetValue(const Message& message) {
    switch (message.value_case()) {
        case Message::kInteger: return message.integer();
        case Message::kInteger64: return message.integer64();
        case Message::kNumber: return static_cast<std::int64_t>(message.number());
        case Message::kBoolean: return message.boolean() ? 1 : 0;
        case Message::kText: return static_cast<std::int64_t>(message.text().size());
        case Message::kGuid: return static_cast<std::int64_t>(message.guid().size());
        default: return 1;
    }
}

void WalkMessage(const Message& message, Seen& seen) {
    ++seen.nodes;
    switch (message.value_case()) {
        case Message::kVector:
            for (const Message& element : message.vector().elements()) {
                WalkMessage(element, seen);
            }
            return;
        case Message::kMap:
            for (const auto& entry : message.map().entries()) {
                WalkMessage(entry.second, seen);
            }
            return;
        case Message::kIntegers:
            for (const std::int32_t element : message.integers().elements()) {
                seen.sum += element;
            }
            return;
        default: seen.sum += GetValue(message); return;
    }
}

bool AreEqual(const Message& left, const Message& right);

bool AreEqual(const PeerMessages::Vector& left, const PeerMessages::Vector& right) {
    return std::equal(left.elements().begin(), left.elements().end(), right.elements().begin(), right.elements().end(),
                      [](const Message& one, const Message& other) { return AreEqual(one, other); });
}

bool AreEqual(const PeerMessages::Map& left, const PeerMessages::Map& right) {
    if (left.entries_size() != right.entries_size()) {
        return false;
    }
    for (const auto& entry : left.entries()) {
        const auto found = right.entries().find(entry.first);
        if (found == right.entries().end() || !AreEqual(entry.second, found->second)) {
            return false;
        }
    }
    return true;
}

bool AreEqual(const Message& left, const Message& right) {
    if (left.value_case() != right.value_case()) {
        return false;
    }
    switch (left.value_case()) {
        case Message::kInteger: return left.integer() == right.integer();
        case Message::kInteger64: return left.integer64() == right.integer64();
        case Message::kNumber: return left.number() == right.number();
        case Message::kBoolean: return left.boolean() == right.boolean();
        case Message::kText: return left.text() == right.text();
        case Message::kGuid: return left.guid() == right.guid();
        case Message::kVector: return AreEqual(left.vector(), right.vector());
        case Message::kMap: return AreEqual(left.map(), right.map());
        case Message::kIntegers:
            return std::equal(left.integers().elements().begin(), left.integers().elements().end(),
                              right.integers().elements().begin(), right.integers().elements().end());
        case Message::VALUE_NOT_SET: return true;
    }
    return false;
}

void SetValue(Message& message, std::int32_t number) {
    message.set_integer(number);
}

void SetValue(Message& message, std::int64_t number) {
    message.set_integer64(number);
}

void SetValue(Message& message, double number) {
    message.set_number(number);
}

void SetValue(Message& message, bool truth) {
    message.set_boolean(truth);
}

/// A tree and the memory that it lives in.
struct Document {
    Arena arena{MakeOptions()};
    Message& root{*Arena::CreateMessage<Message>(&arena)};

    static google::protobuf::ArenaOptions MakeOptions() {
        constexpr std::size_t kLargeBlock = std::size_t{1} << 20;
        google::protobuf::ArenaOptions options;
        options.max_block_size = kLargeBlock;
        return options;
    }
};

class ProtobufSystem final : public System {
public:
    bool Can(Operation operation, const Workload&) const override { return operation != Operation::Path; }

    void Build(const Workload& workload) override {
        tree_ = std::make_unique<Document>();
        Cursor<PeerMessages::Map> root(*tree_->root.mutable_map());
        Write(workload, root);
    }

    Seen Walk() const override { return WalkDocument(*tree_); }

    std::int64_t Lookup(const std::vector<Place>& places) const override {
        const PeerMessages::Vector& list = tree_->root.map().entries().at(0).vector();
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += GetValue(list.elements(place.record).map().entries().find(place.field)->second);
        }
        return sum;
    }

    void Set(const std::vector<Place>& places) override {
        PeerMessages::Vector& list = *tree_->root.mutable_map()->mutable_entries()->at(0).mutable_vector();
        std::int32_t value = 0;
        for (const Place& place : places) {
            auto& entries = *list.mutable_elements(place.record)->mutable_map()->mutable_entries();
            Message& field = entries.find(place.field)->second;
            SetNumberOf(place, value++, [&field](auto number) { SetValue(field, number); });
        }
    }

    void Copy() override {
        copy_ = std::make_unique<Document>();
        copy_->root.CopyFrom(tree_->root);
    }

    bool EqualsCopy() const override { return AreEqual(tree_->root, copy_->root); }

    std::size_t Save() override {
        bytes_.clear();
        if (!tree_->root.SerializeToString(&bytes_)) {
            Fail("protobuf: saving failed");
        }
        return bytes_.size();
    }

    void Load() override {
        google::protobuf::io::CodedInputStream input(reinterpret_cast<const std::uint8_t*>(bytes_.data()),
                                                     static_cast<int>(bytes_.size()));
        input.SetRecursionLimit(std::numeric_limits<int>::max());
        loaded_ = std::make_unique<Document>();
        if (!loaded_->root.ParseFromCodedStream(&input)) {
            Fail("protobuf: loading failed");
        }
    }

    Seen WalkLoaded() const override { return WalkDocument(*loaded_); }
    void Release() override { tree_.reset(); }
    void ReleaseOthers() override {
        copy_.reset();
        loaded_.reset();
        bytes_ = {};
    }

private:
    static Seen WalkDocument(const Document& document) {
        Seen seen;
        WalkMessage(document.root, seen);
        return seen;
    }

    std::unique_ptr<Document> tree_;
    std::unique_ptr<Document> copy_;
    std::unique_ptr<Document> loaded_;
    std::string bytes_;
};

}  // namespace

std::unique_ptr<System> MakeProtobuf() {
    return std::make_unique<ProtobufSystem>();
}

}  // namespace Peers
