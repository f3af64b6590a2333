#include <cmath>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/LeafSetter.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>

#include "model/Steps.h"

using namespace KivGenerics;

namespace Model {
namespace {

double AnyDouble(Choices& choices, bool withNaN) {
    constexpr double kNumbers[] = {0.0, -0.0, 1.5, -1.5, 1e300, HUGE_VAL, -HUGE_VAL};
    const std::uint32_t choice = choices.Below(8);
    return choice == 7 ? (withNaN ? std::nan("") : 3.0) : kNumbers[choice];
}

template <class Set, class Kept>
void SetBothBy(World& world, Item& item, Set set, const Kept& kept) {
    world.Both(set, [&] {
        Guard(*item.tree);
        item.value = kept;
    });
}

template <class Class, class Given, class Kept>
void SetBoth(World& world, Item& item, const Given& given, const Kept& kept) {
    SetBothBy(world, item, [&] { static_cast<Class*>(item.twin)->Set(given); }, kept);
}

template <class Class, class Parent, class Given>
void SetThrough(const Parent& parent, int index, const Given& given) {
    LeafSetter(parent).template Set<Class>(parent, index, given);
}

/// The same, or through the composite that the leaf stands in.
template <class Class, class Given, class Kept>
void SetBothAnyhow(World& world, Choices& choices, Item& item, const Given& given, const Kept& kept) {
    if (item.parent == nullptr || choices.Below(2) == 0) {
        SetBoth<Class>(world, item, given, kept);
    } else if (item.parent->type == NodeTypeMap) {
        SetBothBy(
            world, item, [&] { SetThrough<Class>(*static_cast<Map*>(item.parent->twin), item.index, given); }, kept);
    } else {
        SetBothBy(
            world, item, [&] { SetThrough<Class>(*static_cast<Vector*>(item.parent->twin), item.index, given); }, kept);
    }
}

void SetText(World& world, Item& item, Choices& choices) {
    const Text text = choices.AnyText();
    switch (choices.Below(4)) {
        case 0: return SetBoth<String>(world, item, static_cast<const char16_t*>(nullptr), Text());
        case 1: return SetBoth<String>(world, item, text.c_str(), Text(text.c_str()));
        default: return SetBoth<String>(world, item, ToLibrary(text), text);
    }
}

// What the library takes and the model keeps. Sets of texts keep what stands before a NUL.
std::int32_t ForModel(std::int32_t number) {
    return number;
}
double ForModel(double number) {
    return number;
}
Id ForModel(const GUID& id) {
    return FromLibrary(id);
}
Text ForModel(const KivBase::WString& text) {
    return text.c_str();
}

template <class T>
bool IsKeptWhole(const T&) {
    return true;
}
bool IsKeptWhole(const KivBase::WString& text) {
    return ForModel(text).size() == text.size();
}

// No change of a set is counted, and none asks whether the tree is read-only.
template <class Class, class Kept>
void ChangeSet(Item& item, Choices& choices, const typename Class::Elements::value_type& element) {
    auto& node = *static_cast<Class*>(item.twin);
    auto& set = std::get<std::set<Kept>>(item.value);
    const std::uint32_t choice = choices.Below(4);
    if (choice == 0) {
        node.Remove(element);
        if (IsKeptWhole(element)) {
            set.erase(ForModel(element));
        }
    } else if (choice == 1) {
        typename Class::Elements elements;
        elements.insert(element);
        elements.insert(typename Class::Elements::value_type{});
        node.Set(elements);
        set = {ForModel(element), Kept()};
    } else {
        node.Add(element);
        set.insert(ForModel(element));
    }
    Expect(node.Exists(element) == (IsKeptWhole(element) && set.count(ForModel(element)) != 0),
           "whether an element exists");
}

template <class Class>
void GetItemBeyond(World& world, Item& item, int index) {
    typename Class::Elements::value_type room{};
    world.Both([&] { static_cast<Class*>(item.twin)->Item(index, room); },
               [&] { throw Refusal{u"Item::Index out of range"}; });
}

void RunSet(World& world, Choices& choices) {
    Item* const item = choices.AnyLeaf();
    if (item == nullptr) {
        return;
    }
    switch (item->type) {
        case NodeTypeInteger: {
            const std::int32_t number = choices.AnyNumber();
            return SetBothAnyhow<Integer>(world, choices, *item, number, number);
        }
        case NodeTypeInteger64: {
            const auto number =
                static_cast<std::int64_t>(static_cast<std::uint64_t>(choices.AnyNumber()) * 0x100000001U);
            return SetBothAnyhow<Integer64>(world, choices, *item, number, number);
        }
        case NodeTypeBoolean: {
            const bool value = choices.Below(2) == 1;
            return SetBothAnyhow<Boolean>(world, choices, *item, value, value);
        }
        case NodeTypeDouble: {
            const double number = AnyDouble(choices, true);
            return SetBothAnyhow<Double>(world, choices, *item, number, number);
        }
        case NodeTypeGlobalID: {
            const Id id = choices.AnyId();
            return SetBothAnyhow<GlobalID>(world, choices, *item, ToLibrary(id), id);
        }
        case NodeTypeString: return SetText(world, *item, choices);
        case NodeTypeIntegerSet: return ChangeSet<IntegerSet, std::int32_t>(*item, choices, choices.AnyNumber());
        case NodeTypeDoubleSet: return ChangeSet<DoubleSet, double>(*item, choices, AnyDouble(choices, false));
        case NodeTypeStringSet: return ChangeSet<StringSet, Text>(*item, choices, ToLibrary(choices.AnyText()));
        case NodeTypeIdSet: return ChangeSet<IdSet, Id>(*item, choices, ToLibrary(choices.AnyId()));
        case NodeTypeVector:
        case NodeTypeMap: break;
    }
}

void RunItemBeyond(World& world, Choices& choices) {
    Item* const item = choices.AnyLeaf();
    if (item == nullptr) {
        return;
    }
    const int index = choices.Below(2) == 1 ? -1 : 1000;
    switch (item->type) {
        case NodeTypeIntegerSet: return GetItemBeyond<IntegerSet>(world, *item, index);
        case NodeTypeDoubleSet: return GetItemBeyond<DoubleSet>(world, *item, index);
        case NodeTypeStringSet: return GetItemBeyond<StringSet>(world, *item, index);
        case NodeTypeIdSet: return GetItemBeyond<IdSet>(world, *item, index);
        default: break;
    }
}

}  // namespace

const std::vector<Operation> kValueOperations = {
    {"Set", 24, RunSet},
    {"Item beyond", 2, RunItemBeyond},
};

}  // namespace Model
