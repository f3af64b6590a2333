// Cap'n Proto: one recursive structure whose bytes in memory are those that are saved. Copying, saving and loading are one copy of
// bytes each, whatever the tree is: they are shown and not counted. Lists have the size they were made with; a map is a list whose
// elements have keys, found one after another; a list of integers, in ascending order, stands for a set of integers. There are no
// paths. Structures that are no canonical messages have no comparison: the one here compares field by field.

#include <Node.capnp.h>
#include <capnp/message.h>
#include <capnp/serialize.h>

#include "Failure.h"
#include "System.h"

namespace Peers {
namespace {

using Structure = PeerStructures::Node;
using Nodes = capnp::List<Structure>;

constexpr unsigned kFirstWords = 1U << 16;

/// Fills a list from its first element on.
template <bool InMap>
class Cursor {
public:
    explicit Cursor(Nodes::Builder nodes) : nodes_(nodes) {}

    void Integer(int key, std::int32_t value) { Next(key).setInteger(value); }
    void Integer64(int key, std::int64_t value) { Next(key).setInteger64(value); }
    void Double(int key, double value) { Next(key).setNumber(value); }
    void Boolean(int key, bool value) { Next(key).setBoolean(value); }
    void Text(int key, const TextValue& value) {
        Next(key).setText(capnp::Text::Reader(value.utf8.data(), value.utf8.size()));
    }
    void Guid(int key, const GuidValue& value) {
        const auto* const bytes = reinterpret_cast<const kj::byte*>(value.bytes.data());
        Next(key).setGuid(capnp::Data::Reader(bytes, value.bytes.size()));
    }
    template <class Fill>
    void Vector(int key, int size, Fill fill) {
        Cursor<false> cursor(Next(key).initVector(static_cast<unsigned>(size)));
        fill(cursor);
    }
    template <class Fill>
    void Map(int key, int size, int, Fill fill) {
        Cursor<true> cursor(Next(key).initMap(static_cast<unsigned>(size)));
        fill(cursor);
    }
    void Set(int key, const std::vector<std::int32_t>& values) {
        std::vector<std::int32_t> sorted(values);
        std::sort(sorted.begin(), sorted.end());
        auto elements = Next(key).initIntegers(static_cast<unsigned>(sorted.size()));
        unsigned next = 0;
        for (const std::int32_t value : sorted) {
            elements.set(next++, value);
        }
    }
    template <class T>
    void Set(int key, const std::vector<T>& values) {
        PutSetAsVector(*this, key, values);
    }

private:
    Structure::Builder Next(int key) {
        Structure::Builder made = nodes_[next_++];
        if constexpr (InMap) {
            made.setKey(key);
        }
        return made;
    }

    Nodes::Builder nodes_;
    unsigned next_ = 0;
};

std::int64_t GetValue(Structure::Reader node) {
    switch (node.which()) {
        case Structure::INTEGER: return node.getInteger();
        case Structure::INTEGER64: return node.getInteger64();
        case Structure::NUMBER: return static_cast<std::int64_t>(node.getNumber());
        case Structure::BOOLEAN: return node.getBoolean() ? 1 : 0;
        case Structure::TEXT: return static_cast<std::int64_t>(node.getText().size());
        case Structure::GUID: return static_cast<std::int64_t>(node.getGuid().size());
        default: return 1;
    }
}

void WalkNode(Structure::Reader node, Seen& seen) {
    ++seen.nodes;
    switch (node.which()) {
        case Structure::VECTOR:
            for (const Structure::Reader element : node.getVector()) {
                WalkNode(element, seen);
            }
            return;
        case Structure::MAP:
            for (const Structure::Reader element : node.getMap()) {
                WalkNode(element, seen);
            }
            return;
        case Structure::INTEGERS:
            for (const std::int32_t element : node.getIntegers()) {
                seen.sum += element;
            }
            return;
        default: seen.sum += GetValue(node); return;
    }
}

bool AreEqual(Structure::Reader left, Structure::Reader right);

bool AreEqual(Nodes::Reader left, Nodes::Reader right) {
    if (left.size() != right.size()) {
        return false;
    }
    for (unsigned i = 0; i < left.size(); ++i) {
        if (!AreEqual(left[i], right[i])) {
            return false;
        }
    }
    return true;
}

bool AreEqual(capnp::List<std::int32_t>::Reader left, capnp::List<std::int32_t>::Reader right) {
    if (left.size() != right.size()) {
        return false;
    }
    for (unsigned i = 0; i < left.size(); ++i) {
        if (left[i] != right[i]) {
            return false;
        }
    }
    return true;
}

bool AreEqual(Structure::Reader left, Structure::Reader right) {
    if (left.which() != right.which() || left.getKey() != right.getKey()) {
        return false;
    }
    switch (left.which()) {
        case Structure::INTEGER: return left.getInteger() == right.getInteger();
        case Structure::INTEGER64: return left.getInteger64() == right.getInteger64();
        case Structure::NUMBER: return left.getNumber() == right.getNumber();
        case Structure::BOOLEAN: return left.getBoolean() == right.getBoolean();
        case Structure::TEXT: return left.getText() == right.getText();
        case Structure::GUID: return left.getGuid() == right.getGuid();
        case Structure::VECTOR: return AreEqual(left.getVector(), right.getVector());
        case Structure::MAP: return AreEqual(left.getMap(), right.getMap());
        case Structure::INTEGERS: return AreEqual(left.getIntegers(), right.getIntegers());
    }
    return false;
}

template <class List>
auto FindField(List record, int field) {
    for (unsigned i = 0; i < record.size(); ++i) {
        if (record[i].getKey() == field) {
            return record[i];
        }
    }
    Fail("Cap'n Proto: a field is missing");
}

void SetValue(Structure::Builder node, std::int32_t number) {
    node.setInteger(number);
}

void SetValue(Structure::Builder node, std::int64_t number) {
    node.setInteger64(number);
}

void SetValue(Structure::Builder node, double number) {
    node.setNumber(number);
}

void SetValue(Structure::Builder node, bool truth) {
    node.setBoolean(truth);
}

capnp::ReaderOptions TrustOurOwn() {
    capnp::ReaderOptions options;
    options.traversalLimitInWords = kj::maxValue;
    options.nestingLimit = kj::maxValue;
    return options;
}

using Words = kj::Array<capnp::word>;

/// A tree as it was saved, over a copy of the bytes.
struct Received {
    explicit Received(Words saved) : words(kj::mv(saved)), reader(words, TrustOurOwn()) {}
    Structure::Reader GetRoot() { return reader.getRoot<Structure>(); }

    Words words;
    capnp::FlatArrayMessageReader reader;
};

class CapnProtoSystem final : public System {
public:
    bool Can(Operation operation, const Workload&) const override { return operation != Operation::Path; }

    void Build(const Workload& workload) override {
        tree_ = std::make_unique<capnp::MallocMessageBuilder>(kFirstWords);
        const auto entries = static_cast<unsigned>(GetRootSize(workload));
        Cursor<true> root(tree_->initRoot<Structure>().initMap(entries));
        Write(workload, root);
    }

    Seen Walk() const override { return WalkFrom(GetRoot()); }

    std::int64_t Lookup(const std::vector<Place>& places) const override {
        const Nodes::Reader list = GetRoot().getMap()[0].getVector();
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += GetValue(FindField(list[static_cast<unsigned>(place.record)].getMap(), place.field));
        }
        return sum;
    }

    void Set(const std::vector<Place>& places) override {
        Nodes::Builder list = tree_->getRoot<Structure>().getMap()[0].getVector();
        std::int32_t value = 0;
        for (const Place& place : places) {
            const auto field = FindField(list[static_cast<unsigned>(place.record)].getMap(), place.field);
            SetNumberOf(place, value++, [&field](auto number) { SetValue(field, number); });
        }
    }

    void Copy() override { copy_ = std::make_unique<Received>(capnp::messageToFlatArray(*tree_)); }
    bool EqualsCopy() const override { return AreEqual(GetRoot(), copy_->GetRoot()); }

    std::size_t Save() override {
        saved_ = capnp::messageToFlatArray(*tree_);
        return saved_.asBytes().size();
    }

    void Load() override { loaded_ = std::make_unique<Received>(kj::heapArray(saved_.asPtr())); }
    Seen WalkLoaded() const override { return WalkFrom(loaded_->GetRoot()); }
    void Release() override { tree_.reset(); }
    void ReleaseOthers() override {
        copy_.reset();
        loaded_.reset();
        saved_ = nullptr;
    }

private:
    Structure::Reader GetRoot() const { return tree_->getRoot<Structure>().asReader(); }

    static Seen WalkFrom(Structure::Reader root) {
        Seen seen;
        WalkNode(root, seen);
        return seen;
    }

    std::unique_ptr<capnp::MallocMessageBuilder> tree_;
    std::unique_ptr<Received> copy_;
    std::unique_ptr<Received> loaded_;
    Words saved_;
};

}  // namespace

std::unique_ptr<System> MakeCapnProto() {
    return std::make_unique<CapnProtoSystem>();
}

}  // namespace Peers
