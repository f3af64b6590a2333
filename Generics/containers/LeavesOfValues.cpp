// Many leaves of one kind at once: what Add, or NewNode, and Set do one by one, in one loop.

#include <algorithm>
#include <cstddef>
#include <new>

#include "core/LeafKinds.h"
#include "core/LeafRun.h"
#include "core/MapChildren.h"
#include "core/NodeAccess.h"
#include "core/TreeImpl.h"

namespace KivGenerics {
namespace {

/// The changes that Add, or NewNode, and Set of a leaf count.
constexpr std::uint32_t kChangesInVector = 2;
constexpr std::uint32_t kChangesInMap = 3;

/// Fewer leaves than this are appended one by one: to enlarge the array of children for all of them costs as much as some do.
constexpr std::size_t kShortestRun = 16;

/// Makes leaves, for `count` of which LeafRun::Count has room, each at the index that `getIndex(i)` answers and with the value of the same
/// number; `place(leaf)` places them.
template <class T, class Value, class GetIndex, class Place>
[[gnu::always_inline]] inline void MakeLeaves(TreeImpl& tree, Composite& parent, const Value* values, std::size_t count,
                                              GetIndex getIndex, Place place) noexcept {
    constexpr std::size_t kSize = KivBase::Buffer::GetTakenSize<T>();
    char* memory = tree.GetBuffer()->template TakeRun<T>(count);
    for (std::size_t i = 0; i < count; ++i, memory += kSize) {
        KivBase::Buffer::PrefetchForWriting(memory);
        // Read before anything is written, which for all the compiler knows might change it.
        const Value value = values[i];
        T* const leaf = NodeAccess::Construct<T>(memory, tree, parent, getIndex(i));
        NodeAccess::GetValue(*leaf) = value;
        place(leaf);
    }
}

template <class T, class Value>
void Fill(T* leaf, const Value& value) {
    if (leaf == nullptr) {
        throw std::bad_alloc();  // a host's buffer answered null
    }
    NodeAccess::GetValue(*leaf) = value;
}

/// Makes so many leaves, for which both the vector and the present block have room.
template <class T, class Value>
[[gnu::always_inline]] inline void AddRun(TreeImpl& tree, Vector& vector, const Value* values,
                                          std::size_t count) noexcept {
    auto& elements = NodeAccess::GetChildren(vector);
    const std::size_t first = elements.size();
    const auto getIndex = [first](std::size_t i) { return static_cast<int>(first + i); };
    NodeAccess::NoteChild(vector);
    tree.CountMore(static_cast<std::uint32_t>(count) * kChangesInVector);
    if (count < kShortestRun) {
        MakeLeaves<T>(tree, vector, values, count, getIndex,
                      [&vector](T* leaf) { NodeAccess::AppendInRoom(vector, leaf); });
    } else {
        elements.resize(first + count);
        Node** next = elements.data() + first;
        MakeLeaves<T>(tree, vector, values, count, getIndex, [&next](T* leaf) { *next++ = leaf; });
    }
}

/// Makes so many leaves, for which the vector has room, where nodes wait to be reused or memory has to be asked for.
template <class T, class Value>
[[gnu::noinline]] void AddInPieces(TreeImpl& tree, Vector& vector, const Value* values, std::size_t count) {
    while (count != 0) {
        std::size_t made = LeafRun<T>::Count(tree, count);
        if (made != 0) {
            AddRun<T>(tree, vector, values, made);
        } else {
            Fill(NodeAccess::Append<T>(vector, kChangesInVector), *values);
            made = 1;
        }
        values += made;
        count -= made;
    }
}

template <class T, class Value>
void AddToVector(Vector& vector, const Value* values, int wanted) {
    if (wanted <= 0) {
        return;
    }
    TreeImpl& tree = *NodeAccess::GetTree(vector);
    const auto count = static_cast<std::size_t>(wanted);
    NodeAccess::NeedRoomFor(vector, T::StaticType, count);
    if (tree.MayTake<T>() && tree.GetBuffer()->template CanTake<T>(count)) {
        AddRun<T>(tree, vector, values, count);
    } else {
        AddInPieces<T>(tree, vector, values, count);
    }
}

/// How many indexes from `first` on ascend, at most `most`; at least one.
std::size_t CountAscending(const int* first, std::size_t most) noexcept {
    std::size_t count = 1;
    while (count < most && first[count - 1] < first[count]) {
        ++count;
    }
    return count;
}

/// Makes the leaves that come into slots that are free, as long as the present block has room, and answers how many.
template <class T, class Value>
std::size_t FillSlots(TreeImpl& tree, const MapChildren& target, const int* indexes, const Value* values,
                      std::size_t wanted) noexcept {
    if (!tree.MayTake<T>()) {
        return 0;
    }
    KivBase::Buffer& buffer = *tree.GetBuffer();
    std::size_t count = 0;
    for (; count < wanted && target.IsSlot(indexes[count]) && buffer.CanTake<T>(); ++count) {
        Node*& slot = target.slots[indexes[count]];
        if (slot != nullptr) {
            break;
        }
        const Value value = values[count];
        T* const leaf = NodeAccess::Construct<T>(buffer.TakeNext<T>(), tree, target.map, indexes[count]);
        NodeAccess::SetTemporalityOfNewLeaf(*leaf, TemporalityPersistent);
        NodeAccess::GetValue(*leaf) = value;
        slot = leaf;
    }
    tree.CountMore(static_cast<std::uint32_t>(count) * kChangesInMap);
    return count;
}

/// Makes the leaves that come behind all others, as long as neither the overflow store nor the tree needs memory for them, and
/// answers how many.
template <class T, class Value>
std::size_t AppendRun(TreeImpl& tree, const MapChildren& target, const int* indexes, const Value* values,
                      std::size_t wanted) noexcept {
    if (target.IsSlot(*indexes) || !target.HasRoom(*indexes)) {
        return 0;
    }
    const std::size_t most = LeafRun<T>::Count(tree, (std::min)(wanted, target.overflow->CountAppendable()));
    if (most == 0) {
        return 0;
    }
    std::size_t count = CountAscending(indexes, most);
    while (!NodeAccess::IsIndex(indexes[count - 1])) {
        --count;  // not below 1: the first one has room
    }
    LeafRun<T> run(tree, target.map, count, TemporalityPersistent, kChangesInMap);
    MapOverflow::AppendRun store(*target.overflow);
    for (std::size_t i = 0; i != count; ++i) {
        const int index = indexes[i];
        const Value value = values[i];
        T* const leaf = run.Make(index);
        NodeAccess::GetValue(*leaf) = value;
        store.Append(index, leaf);
    }
    return count;
}

/// Makes one leaf wherever it comes. An overflow store that has to grow gets room for those that are seen to follow, too.
template <class T, class Value>
void MakeOne(TreeImpl& tree, const MapChildren& target, const int* indexes, const Value& value, std::size_t rest) {
    const bool grows = target.overflow == nullptr || target.overflow->IsFull();
    const std::size_t expected = grows ? CountAscending(indexes, rest) : 0;
    Node* const node = NodeAccess::IsIndex(*indexes)
                           ? NewNodeInMap(target, *indexes, T::StaticType, false, SemanticTagNone, expected)
                           : target.map.NewNode(*indexes, T::StaticType);  // says what is wrong
    Fill(static_cast<T*>(node), value);
    tree.CountMore(1);
}

template <class T, class Value>
void NewInMap(Map& map, const int* indexes, const Value* values, int count) {
    TreeImpl& tree = *NodeAccess::GetTree(map);
    const MapChildren target(map);
    for (std::size_t rest = count > 0 ? static_cast<std::size_t>(count) : 0; rest != 0;) {
        std::size_t made = FillSlots<T>(tree, target, indexes, values, rest);
        made = made != 0 ? made : AppendRun<T>(tree, target, indexes, values, rest);
        if (made != 0) {
            NodeAccess::NoteChild(map);
        } else {
            MakeOne<T>(tree, target, indexes, *values, rest);
            made = 1;
        }
        indexes += made;
        values += made;
        rest -= made;
    }
}

}  // namespace

void Vector::AddLeaves(const bool* values, int count) {
    AddToVector<Boolean>(*this, values, count);
}

void Vector::AddLeaves(const double* values, int count) {
    AddToVector<Double>(*this, values, count);
}

void Vector::AddLeaves(const GUID* values, int count) {
    AddToVector<GlobalID>(*this, values, count);
}

void Vector::AddLeaves(const std::int32_t* values, int count) {
    AddToVector<Integer>(*this, values, count);
}

void Vector::AddLeaves(const std::int64_t* values, int count) {
    AddToVector<Integer64>(*this, values, count);
}

void Map::NewLeaves(const int* indexes, const bool* values, int count) {
    NewInMap<Boolean>(*this, indexes, values, count);
}

void Map::NewLeaves(const int* indexes, const double* values, int count) {
    NewInMap<Double>(*this, indexes, values, count);
}

void Map::NewLeaves(const int* indexes, const GUID* values, int count) {
    NewInMap<GlobalID>(*this, indexes, values, count);
}

void Map::NewLeaves(const int* indexes, const std::int32_t* values, int count) {
    NewInMap<Integer>(*this, indexes, values, count);
}

void Map::NewLeaves(const int* indexes, const std::int64_t* values, int count) {
    NewInMap<Integer64>(*this, indexes, values, count);
}

}  // namespace KivGenerics
