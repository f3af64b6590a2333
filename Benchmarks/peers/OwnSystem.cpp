// This library. Numbers that come together are handed over in arrays, as others fill arrays of objects in place; the visitor
// of a walk is compiled with it, as the functions are that go through others; and fields are set by a LeafSetter. Or, where
// that is asked for, each number is made by itself and the walk calls a visitor. The root must be a map to be saved, so every
// workload's root is one. Loading refuses more than 1,000 levels of composites, whatever the machine's stack: a deeper chain is
// saved but not loaded.

#include <algorithm>
#include <type_traits>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/LeafSetter.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/Visitor.h>
#include <KivGenerics/WalkNodes.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>

#include "Failure.h"
#include "System.h"

using namespace KivGenerics;

namespace Peers {
namespace {

template <class T>
T* New(Vector& vector, int, SemanticTag tag = SemanticTagNone) {
    return vector.Add<T>(tag);
}

template <class T>
T* New(Map& map, int key, SemanticTag tag = SemanticTagNone) {
    return map.NewNode<T>(key, tag);
}

/// The numbers that are handed over at a time: as many as a host would keep in an array of its own.
constexpr int kHandedOver = 256;

void MakeLeaves(Vector& vector, const int*, const std::int32_t* values, int count) {
    vector.AddLeaves(values, count);
}

void MakeLeaves(Map& map, const int* keys, const std::int32_t* values, int count) {
    map.NewLeaves(keys, values, count);
}

/// Makes what stands in a composite; with InRuns numbers that come together in one go.
template <class Composite, bool InRuns>
class Cursor {
public:
    explicit Cursor(Composite& composite) : composite_(composite) {}

    void Integer(int key, std::int32_t value) { New<KivGenerics::Integer>(composite_, key)->Set(value); }
    template <bool Exists = InRuns, class = std::enable_if_t<Exists>>
    void Integers(int count, int step) {
        int keys[kHandedOver];
        std::int32_t values[kHandedOver];
        for (int done = 0; done < count;) {
            const int some = (std::min)(count - done, kHandedOver);
            for (int i = 0; i < some; ++i) {
                values[i] = done + i;
                keys[i] = (done + i) * step;
            }
            MakeLeaves(composite_, keys, values, some);
            done += some;
        }
    }
    void Integer64(int key, std::int64_t value) { New<KivGenerics::Integer64>(composite_, key)->Set(value); }
    void Double(int key, double value) { New<KivGenerics::Double>(composite_, key)->Set(value); }
    void Boolean(int key, bool value) { New<KivGenerics::Boolean>(composite_, key)->Set(value); }
    void Text(int key, const TextValue& value) { New<String>(composite_, key)->Set(value.units); }
    void Guid(int key, const GuidValue& value) { New<GlobalID>(composite_, key)->Set(value.id); }
    template <class Fill>
    void Vector(int key, int size, Fill fill) {
        auto* const vector = New<KivGenerics::Vector>(composite_, key);
        vector->Reserve(size);
        Cursor<KivGenerics::Vector, InRuns> cursor(*vector);
        fill(cursor);
    }
    template <class Fill>
    void Map(int key, int, int tag, Fill fill) {
        Cursor<KivGenerics::Map, InRuns> cursor(*New<KivGenerics::Map>(composite_, key, SemanticTag(tag)));
        fill(cursor);
    }
    void Set(int key, const std::vector<std::int32_t>& values) {
        AddAll(*New<IntegerSet>(composite_, key), values, [](std::int32_t value) { return value; });
    }
    void Set(int key, const std::vector<double>& values) {
        AddAll(*New<DoubleSet>(composite_, key), values, [](double value) { return value; });
    }
    void Set(int key, const std::vector<TextValue>& values) {
        AddAll(*New<StringSet>(composite_, key), values, [](const TextValue& value) { return value.units; });
    }
    void Set(int key, const std::vector<GuidValue>& values) {
        AddAll(*New<IdSet>(composite_, key), values, [](const GuidValue& value) { return value.id; });
    }

private:
    template <class SetNode, class T, class Convert>
    static void AddAll(SetNode& set, const std::vector<T>& values, Convert convert) {
        for (const T& value : values) {
            set.Add(convert(value));
        }
    }

    Composite& composite_;
};

std::int64_t GetNumber(const Composite&) {
    return 0;
}
std::int64_t GetNumber(const Boolean& leaf) {
    return leaf.Get() ? 1 : 0;
}
std::int64_t GetNumber(const Double& leaf) {
    return static_cast<std::int64_t>(leaf.Get());
}
std::int64_t GetNumber(const GlobalID&) {
    return sizeof(GUID);
}
std::int64_t GetNumber(const Integer& leaf) {
    return leaf.Get();
}
std::int64_t GetNumber(const Integer64& leaf) {
    return leaf.Get();
}
std::int64_t GetNumber(const String& leaf) {
    return static_cast<std::int64_t>(leaf.GetLength());
}

template <class Elements, class Convert>
std::int64_t AddUp(const Elements& elements, Convert convert) {
    std::int64_t sum = 0;
    for (const auto& element : elements) {
        sum += convert(element);
    }
    return sum;
}

std::int64_t GetNumber(const DoubleSet& leaf) {
    return AddUp(leaf.GetElements(), [](double value) { return static_cast<std::int64_t>(value); });
}
std::int64_t GetNumber(const IdSet& leaf) {
    return AddUp(leaf.GetElements(), [](const GUID&) { return std::int64_t{sizeof(GUID)}; });
}
std::int64_t GetNumber(const IntegerSet& leaf) {
    return AddUp(leaf.GetElements(), [](std::int32_t value) { return value; });
}
std::int64_t GetNumber(const StringSet& leaf) {
    return AddUp(leaf.Get(), [](const KivBase::WString& value) { return static_cast<std::int64_t>(value.size()); });
}

std::int64_t GetValue(const Node* node) {
    switch (node->GetType()) {
        case NodeTypeInteger: return GetNumber(*static_cast<const Integer*>(node));
        case NodeTypeInteger64: return GetNumber(*static_cast<const Integer64*>(node));
        case NodeTypeDouble: return GetNumber(*static_cast<const Double*>(node));
        case NodeTypeBoolean: return GetNumber(*static_cast<const Boolean*>(node));
        case NodeTypeString: return GetNumber(*static_cast<const String*>(node));
        case NodeTypeGlobalID: return GetNumber(*static_cast<const GlobalID*>(node));
        default: return 1;
    }
}

/// What a walk comes to, by a visitor that is known when compiling.
struct Sum {
    template <class T>
    void operator()(const T& node) {
        ++seen.nodes;
        seen.sum += GetNumber(node);
    }

    Seen seen;
};

/// The same by a visitor that is called for each node.
class CalledSum final : public Visitor {
public:
    VisitCode VisitBoolean(Boolean* node) override { return Add(*node); }
    VisitCode VisitDouble(Double* node) override { return Add(*node); }
    VisitCode VisitGlobalID(GlobalID* node) override { return Add(*node); }
    VisitCode VisitInteger(Integer* node) override { return Add(*node); }
    VisitCode VisitInteger64(Integer64* node) override { return Add(*node); }
    VisitCode VisitString(String* node) override { return Add(*node); }
    VisitCode VisitDoubleSet(DoubleSet* node) override { return Add(*node); }
    VisitCode VisitIdSet(IdSet* node) override { return Add(*node); }
    VisitCode VisitIntegerSet(IntegerSet* node) override { return Add(*node); }
    VisitCode VisitStringSet(StringSet* node) override { return Add(*node); }
    VisitCode VisitMap(Map* node, bool) override { return Add(*node); }
    VisitCode VisitVector(Vector* node, bool) override { return Add(*node); }

    Seen GetSeen() const { return sum_.seen; }

private:
    template <class T>
    VisitCode Add(const T& node) {
        sum_(node);
        return VisitContinue;
    }

    Sum sum_;
};

template <bool Inline>
Seen WalkTree(const Tree& tree) {
    if constexpr (Inline) {
        return WalkNodes(tree.GetRoot(), Sum()).seen;
    } else {
        CalledSum sum;
        tree.GetRoot()->Iterate(&sum, SemanticTagNone, IterateSelf | IterateChildren | IterateDeeper);
        return sum.GetSeen();
    }
}

void SetValue(LeafSetter& setter, const Map& record, int field, std::int32_t value) {
    setter.Set<Integer>(record, field, value);
}
void SetValue(LeafSetter& setter, const Map& record, int field, std::int64_t value) {
    setter.Set<Integer64>(record, field, value);
}
void SetValue(LeafSetter& setter, const Map& record, int field, double value) {
    setter.Set<Double>(record, field, value);
}
void SetValue(LeafSetter& setter, const Map& record, int field, bool value) {
    setter.Set<Boolean>(record, field, value);
}

using TreeHandle = KivBase::ReturnPtrI<Tree>;

TreeHandle NewTree() {
    return CreateGenericTree(EnumOrvObjectType(0));
}

template <bool InRuns>
class OwnSystem final : public System {
public:
    bool Can(Operation operation, const Workload& workload) const override {
        return operation != Operation::Load || workload.shape != Shape::Chain || workload.size < MaxLoadNesting;
    }

    bool HasSets() const override { return true; }

    void Build(const Workload& workload) override {
        tree_ = NewTree();
        Cursor<Map, InRuns> root(*static_cast<Map*>(tree_->NewRoot(NodeTypeMap)));
        Write(workload, root);
    }

    Seen Walk() const override { return WalkTree<InRuns>(*tree_); }

    std::int64_t Lookup(const std::vector<Place>& places) const override {
        const Vector& list = GetList();
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += GetValue(static_cast<Map*>(list.GetNV(place.record))->GetNV(place.field));
        }
        return sum;
    }

    std::int64_t Contains(const std::vector<Place>& places) const override {
        const Vector& list = GetList();
        std::int64_t sum = 0;
        for (const Place& place : places) {
            sum += static_cast<IntegerSet*>(list.GetNV(place.record))->Exists(place.field) ? 1 : 0;
        }
        return sum;
    }

    void PreparePaths(const std::vector<Place>& places) override {
        for (const Place& place : places) {
            const std::string path = "0:" + std::to_string(place.record) + ":" + std::to_string(place.field) + ":";
            paths_.emplace_back(path.begin(), path.end());
        }
    }

    std::int64_t FindPaths() const override {
        std::int64_t sum = 0;
        for (const KivBase::WString& path : paths_) {
            sum += GetValue(tree_->FindNodeByKey(path));
        }
        return sum;
    }

    void Set(const std::vector<Place>& places) override {
        const Vector& list = GetList();
        LeafSetter setter(list);
        std::int32_t value = 0;
        for (const Place& place : places) {
            const Map& record = *static_cast<Map*>(list.GetNV(place.record));
            SetNumberOf(place, value++, [&](auto number) { SetValue(setter, record, place.field, number); });
        }
    }

    void Copy() override {
        copy_ = NewTree();
        copy_->CopyFromTree(tree_.Get());
    }

    bool EqualsCopy() const override {
        return tree_->GetRoot()->Compare(copy_->GetRoot(), TemporalityTemporary, true) == 0;
    }

    std::size_t Save() override {
        const auto stream = KivStorage::MemoryWriteStream::Create();
        if (tree_->SaveToStream(stream.Get(), false) < 0 || !stream->Finish().Ok()) {
            Fail("this library: saving failed: " + stream->GetError().sentence);
        }
        bytes_ = stream->TakeBytes();
        return bytes_.size();
    }

    void Load() override {
        const auto stream = KivStorage::MemoryReadStream::Create(bytes_.data(), bytes_.size());
        loaded_ = NewTree();
        if (loaded_->LoadFromStream(stream.Get()) < 0 || !stream->Finish().Ok()) {
            Fail("this library: loading failed: " + stream->GetError().sentence);
        }
    }

    Seen WalkLoaded() const override { return WalkTree<InRuns>(*loaded_); }
    void Release() override { tree_ = TreeHandle(); }
    void ReleaseOthers() override {
        copy_ = TreeHandle();
        loaded_ = TreeHandle();
        bytes_ = {};
        paths_ = {};
    }

private:
    const Vector& GetList() const { return *static_cast<Vector*>(static_cast<Map*>(tree_->GetRoot())->Get(0)); }

    TreeHandle tree_;
    TreeHandle copy_;
    TreeHandle loaded_;
    KivStorage::SavedBytes bytes_;
    std::vector<KivBase::WString> paths_;
};

}  // namespace

std::unique_ptr<System> MakeOwn() {
    return std::make_unique<OwnSystem<true>>();
}

std::unique_ptr<System> MakeOwnOneByOne() {
    return std::make_unique<OwnSystem<false>>();
}

}  // namespace Peers
