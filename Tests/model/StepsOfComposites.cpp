#include <array>
#include <stdexcept>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>

#include "model/Steps.h"

using namespace KivGenerics;

namespace Model {
namespace {

Composite* CompositeOf(const Item& item) {
    return static_cast<Composite*>(item.twin);
}

Vector* VectorOf(const Item& item) {
    return static_cast<Vector*>(item.twin);
}

template <class T>
struct Kind {
    using Class = T;
};

/// Calls `make` with the class of a kind, as a program does that knows it.
template <class Make>
Node* MakeAs(NodeType type, Make make) {
    switch (type) {
        case NodeTypeInteger: return make(Kind<Integer>());
        case NodeTypeGlobalID: return make(Kind<GlobalID>());
        case NodeTypeString: return make(Kind<String>());
        case NodeTypeDouble: return make(Kind<Double>());
        case NodeTypeBoolean: return make(Kind<Boolean>());
        case NodeTypeVector: return make(Kind<Vector>());
        case NodeTypeMap: return make(Kind<Map>());
        case NodeTypeIntegerSet: return make(Kind<IntegerSet>());
        case NodeTypeIdSet: return make(Kind<IdSet>());
        case NodeTypeStringSet: return make(Kind<StringSet>());
        case NodeTypeDoubleSet: return make(Kind<DoubleSet>());
        case NodeTypeInteger64: return make(Kind<Integer64>());
    }
    return nullptr;
}

bool IsKind(NodeType type) {
    return NodeTypeInteger <= type && type <= NodeTypeInteger64;
}

void RunNewNodeAs(World& world, Choices& choices) {
    Item* const map = choices.AnyMap();
    const NodeType type = choices.AnyType();
    if (map == nullptr || !HasRoom(world, *map, 1) || !IsKind(type)) {
        return;
    }
    const int index = choices.AnyIndex(*map);
    const SemanticTag tag = choices.AnyTag();
    const auto make = [&](auto kind) -> Node* {
        return static_cast<Map*>(map->twin)->template NewNode<typename decltype(kind)::Class>(index, tag);
    };
    world.Both([&] { return MakeAs(type, make); }, [&] { return &NewNode(*map, index, type, false, tag); });
}

void RunAddAs(World& world, Choices& choices) {
    Item* const vector = choices.AnyVector();
    if (vector == nullptr || !HasRoom(world, *vector, 1)) {
        return;
    }
    NodeType type = choices.AnyType();
    if (!vector->elements.empty() && choices.Below(8) != 7) {
        type = vector->elements.front()->type;
    }
    const SemanticTag tag = choices.AnyTag();
    if (IsKind(type)) {
        const auto make = [&](auto kind) -> Node* {
            return VectorOf(*vector)->template Add<typename decltype(kind)::Class>(tag);
        };
        world.Both([&] { return MakeAs(type, make); }, [&] { return &Add(*vector, type, tag); });
    }
}

/// Up to four values of one kind, which both get.
template <class T, class Value>
struct Leaves {
    Leaves(Choices& choices, Value (*choose)(Choices&)) : count(static_cast<int>(choices.Below(kMost + 1))) {
        for (Value& value : values) {
            value = choose(choices);
        }
    }
    /// What Set does to a leaf of the model.
    static void Set(Item& leaf, const Value& value) {
        Guard(*leaf.tree);
        leaf.value = value;
    }

    static constexpr int kMost = 4;
    int count;
    std::array<Value, kMost> values{};
};

using Integers = Leaves<Integer, std::int32_t>;
using Doubles = Leaves<Double, double>;

std::int32_t ChooseNumber(Choices& choices) {
    return choices.AnyNumber();
}

double ChooseHalf(Choices& choices) {
    return choices.AnyNumber() / 2.0;
}

template <class T, class Value>
void AddLeavesToBoth(World& world, Item& vector, const Leaves<T, Value>& leaves) {
    world.Both([&] { VectorOf(vector)->AddLeaves(leaves.values.data(), leaves.count); },
               [&] {
                   for (int i = 0; i < leaves.count; ++i) {
                       leaves.Set(Add(vector, T::StaticType, 0), leaves.values[static_cast<std::size_t>(i)]);
                   }
               });
}

void RunAddLeaves(World& world, Choices& choices) {
    Item* const vector = choices.AnyVector();
    if (vector == nullptr || !HasRoom(world, *vector, Integers::kMost)) {
        return;
    }
    if (choices.Below(3) == 2) {
        AddLeavesToBoth(world, *vector, Doubles(choices, ChooseHalf));
    } else {
        AddLeavesToBoth(world, *vector, Integers(choices, ChooseNumber));
    }
}

// As a rule the indexes ascend from the first one on.
std::array<int, Integers::kMost> ChooseIndexes(const Item& map, Choices& choices) {
    std::array<int, Integers::kMost> indexes{};
    const bool ascend = choices.Below(4) != 3;
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        const bool goesOn = ascend && i > 0 && indexes[i - 1] < 0x20000000;
        indexes[i] = goesOn ? indexes[i - 1] + 1 + static_cast<int>(choices.Below(3)) : choices.AnyIndex(map);
    }
    return indexes;
}

template <class T, class Value>
void NewLeavesInBoth(World& world, Item& map, const std::array<int, Integers::kMost>& indexes,
                     const Leaves<T, Value>& leaves) {
    auto* const twin = static_cast<Map*>(map.twin);
    world.Both([&] { twin->NewLeaves(indexes.data(), leaves.values.data(), leaves.count); },
               [&] {
                   for (int i = 0; i < leaves.count; ++i) {
                       const auto at = static_cast<std::size_t>(i);
                       leaves.Set(NewNode(map, indexes[at], T::StaticType, false, 0), leaves.values[at]);
                   }
               });
}

void RunNewLeaves(World& world, Choices& choices) {
    Item* const map = choices.AnyMap();
    if (map == nullptr || !HasRoom(world, *map, Integers::kMost)) {
        return;
    }
    const auto indexes = ChooseIndexes(*map, choices);
    if (choices.Below(3) == 2) {
        NewLeavesInBoth(world, *map, indexes, Doubles(choices, ChooseHalf));
    } else {
        NewLeavesInBoth(world, *map, indexes, Integers(choices, ChooseNumber));
    }
}

void RunNewNode(World& world, Choices& choices) {
    Item* const composite = choices.AnyComposite();
    if (composite == nullptr || !HasRoom(world, *composite, 1)) {
        return;
    }
    const int index = choices.AnyIndex(*composite);
    const NodeType type = choices.AnyType();
    const bool keepOld = choices.Below(3) == 2;
    const SemanticTag tag = choices.AnyTag();
    world.Both([&] { return CompositeOf(*composite)->NewNode(index, type, keepOld, tag); },
               [&] { return &NewNode(*composite, index, type, keepOld, tag); });
}

void RunAdd(World& world, Choices& choices) {
    Item* const vector = choices.AnyVector();
    if (vector == nullptr || !HasRoom(world, *vector, 1)) {
        return;
    }
    NodeType type = choices.AnyType();
    if (!vector->elements.empty() && choices.Below(8) != 7) {
        type = vector->elements.front()->type;
    }
    const SemanticTag tag = choices.AnyTag();
    world.Both([&] { return VectorOf(*vector)->Add(type, tag); }, [&] { return &Add(*vector, type, tag); });
}

void RunInsert(World& world, Choices& choices) {
    Item* const vector = choices.AnyVector();
    if (vector != nullptr && HasRoom(world, *vector, 1)) {
        const int index = choices.AnyIndex(*vector);
        const NodeType type = choices.AnyType();
        const SemanticTag tag = choices.AnyTag();
        world.Both([&] { return VectorOf(*vector)->Insert(index, type, tag); },
                   [&] { return &Insert(*vector, index, type, tag); });
    }
}

// A target with room for a copy of the source, which may be none.
struct CopyChoice {
    CopyChoice(World& world, Item* composite, Choices& choices) : target(composite) {
        source = choices.OneIn(32) ? nullptr : choices.AnyItem();
        if (target != nullptr && !HasRoom(world, *target, source != nullptr ? CountNodes(*source) : 0)) {
            target = nullptr;
        }
    }
    Item* target;
    Item* source;
};

void RunReplaceWithCopy(World& world, Choices& choices) {
    const CopyChoice copy(world, choices.AnyComposite(), choices);
    if (copy.target != nullptr) {
        const int index = choices.AnyIndex(*copy.target);
        world.Both([&] { return CompositeOf(*copy.target)->ReplaceWithCopy(index, TwinOf(copy.source)); },
                   [&] { return &ReplaceWithCopy(*copy.target, index, copy.source); });
    }
}

void RunAddCopy(World& world, Choices& choices) {
    const CopyChoice copy(world, choices.AnyVector(), choices);
    if (copy.target != nullptr) {
        world.Both([&] { return VectorOf(*copy.target)->AddCopy(TwinOf(copy.source)); },
                   [&] { return &AddCopy(*copy.target, copy.source); });
    }
}

void RunInsertCopy(World& world, Choices& choices) {
    const CopyChoice copy(world, choices.AnyVector(), choices);
    if (copy.target != nullptr) {
        const int index = choices.AnyIndex(*copy.target);
        world.Both([&] { return VectorOf(*copy.target)->InsertCopy(index, TwinOf(copy.source)); },
                   [&] { return &InsertCopy(*copy.target, index, copy.source); });
    }
}

void RunPopulateVector(World& world, Choices& choices) {
    const CopyChoice copy(world, choices.AnyVector(), choices);
    if (copy.target != nullptr && (copy.source == nullptr || copy.source->IsVector())) {
        world.Both([&] { VectorOf(*copy.target)->Populate(static_cast<Vector*>(TwinOf(copy.source))); },
                   [&] { PopulateVector(*copy.target, copy.source); });
    }
}

// Whether the node is its tree's root: one that is moved elsewhere stands in two places.
bool IsTheRoot(const Item* item) {
    return item != nullptr && item->tree->root.get() == item;
}

void RunMove(World& world, Choices& choices) {
    Item* const composite = choices.AnyComposite();
    Item* const item = choices.OneIn(32) ? nullptr : choices.AnyItem();
    if (composite != nullptr && (!IsTheRoot(item) || IsInside(*composite, *item))) {
        const int index = choices.AnyIndex(*composite);
        world.Both([&] { CompositeOf(*composite)->Move(index, TwinOf(item)); }, [&] { Move(*composite, index, item); });
    }
}

// Only a free node of the same tree may be inserted; a node above is refused.
void RunInsertNode(World& world, Choices& choices) {
    Item* const vector = choices.AnyVector();
    if (vector == nullptr) {
        return;
    }
    auto& free = vector->tree->free;
    Item* item = nullptr;
    if (!free.empty() && !choices.OneIn(16)) {
        item = free[choices.Below(static_cast<std::uint32_t>(free.size()))].get();
    } else if (choices.Below(2) == 1) {
        item = vector->parent;
    }
    const int index = choices.AnyIndex(*vector);
    world.Both([&] { VectorOf(*vector)->InsertNode(index, TwinOf(item)); }, [&] { InsertNode(*vector, index, item); });
}

void RunRemoveAt(World& world, Choices& choices) {
    if (Item* const composite = choices.AnyComposite()) {
        const int index = choices.AnyIndex(*composite);
        world.Both([&] { CompositeOf(*composite)->Remove(index); }, [&] { RemoveChild(*composite, index); });
    }
}

void RunDetachAt(World& world, Choices& choices) {
    if (Item* const composite = choices.AnyComposite()) {
        const int index = choices.AnyIndex(*composite);
        world.Both([&] { return CompositeOf(*composite)->Detach(index); },
                   [&] {
                       Owned taken = DetachChild(*composite, index);
                       return composite->tree->free.emplace_back(std::move(taken)).get();
                   });
    }
}

void RunReserve(World&, Choices& choices) {
    if (Item* const vector = choices.AnyVector()) {
        const int room = static_cast<int>(choices.Below(40)) - 1;
        bool refused = false;
        try {
            VectorOf(*vector)->Reserve(room);
        } catch (const std::length_error&) {
            refused = true;
        }
        Expect(refused == (room < 0), "whether room is refused");
    }
}

void RunSetSemanticTag(World& world, Choices& choices) {
    if (Item* const map = choices.AnyMap()) {
        const SemanticTag tag = choices.AnyTag();
        world.Both([&] { static_cast<Map*>(map->twin)->SetSemanticTag(tag); }, [&] { SetTag(*map, tag); });
    }
}

void RunGets(World& world, Choices& choices) {
    if (Item* const composite = choices.AnyComposite()) {
        const int index = choices.AnyIndex(*composite);
        const EnumOrvGenericsTemporality t = choices.AnyTemporality();
        Composite& twin = *CompositeOf(*composite);
        Expect(twin.Get(index) == TwinOf(Get(*composite, index)), "the child at an index");
        Expect(twin.GetNext(index) == TwinOf(GetNext(*composite, index)), "the next child");
        Expect(twin.GetNth(index) == TwinOf(GetNth(*composite, index)), "the n-th child");
        Expect(twin.IsEmpty() == (CountChildren(*composite) == 0), "whether there are children");
        world.Both([&] { return std::int64_t{twin.GetSize(t)}; }, [&] { return std::int64_t{GetSize(*composite, t)}; });
    }
}

}  // namespace

const std::vector<Operation> kCompositeOperations = {
    {"NewNode", 32, RunNewNode},
    {"NewNode of a kind", 12, RunNewNodeAs},
    {"Add", 16, RunAdd},
    {"Add of a kind", 8, RunAddAs},
    {"Insert", 8, RunInsert},
    {"ReplaceWithCopy", 8, RunReplaceWithCopy},
    {"AddCopy", 6, RunAddCopy},
    {"AddLeaves", 6, RunAddLeaves},
    {"NewLeaves", 6, RunNewLeaves},
    {"InsertCopy", 6, RunInsertCopy},
    {"Populate of a vector", 2, RunPopulateVector},
    {"Move", 16, RunMove},
    {"InsertNode", 10, RunInsertNode},
    {"Remove at", 6, RunRemoveAt},
    {"Detach at", 6, RunDetachAt},
    {"Reserve", 3, RunReserve},
    {"SetSemanticTag", 6, RunSetSemanticTag},
    {"Get, GetNext, GetNth, GetSize", 12, RunGets},
};

}  // namespace Model
