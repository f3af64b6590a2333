#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>

#include "model/World.h"

using namespace KivGenerics;

namespace Model {
namespace {

Value ToValue(const KivBase::WString& text) {
    return Text(text.begin(), text.end());
}
Value ToValue(const GUID& id) {
    return FromLibrary(id);
}
template <class T>
Value ToValue(T number) {
    return number;
}

template <class Set, class Element>
void CheckSet(const std::set<Element>& expected, Node* node, typename Set::Elements::value_type room = {}) {
    const auto* const set = static_cast<Set*>(node);
    Expect(set->Count() == static_cast<int>(expected.size()), "the number of elements");
    int index = 0;
    for (const Element& element : expected) {
        set->Item(index++, room);
        Expect(IsSameValue(ToValue(room), element), "an element");
        Expect(set->Exists(room), "whether an element exists");
    }
}

template <class Set, class Element>
Value GetElements(Node* node) {
    const auto* const set = static_cast<Set*>(node);
    std::set<Element> elements;
    typename Set::Elements::value_type room{};
    for (int i = 0; i < set->Count(); ++i) {
        set->Item(i, room);
        elements.insert(std::get<Element>(ToValue(room)));
    }
    return elements;
}

}  // namespace

KivBase::WString ToLibrary(const Text& text) {
    return KivBase::WString(text.begin(), text.end());
}

GUID ToLibrary(const Id& id) {
    GUID made{};
    made.Data1 = id[0];
    made.Data2 = static_cast<std::uint16_t>(id[1]);
    made.Data3 = static_cast<std::uint16_t>(id[1] >> 16);
    for (unsigned i = 0; i < 8; ++i) {
        made.Data4[i] = static_cast<std::uint8_t>(id[2 + i / 4] >> (i % 4 * 8));
    }
    return made;
}

Id FromLibrary(const GUID& id) {
    Id made = {static_cast<std::uint32_t>(id.Data1), static_cast<std::uint32_t>(id.Data3) << 16 | id.Data2, 0, 0};
    for (unsigned i = 0; i < 8; ++i) {
        made[2 + i / 4] |= static_cast<std::uint32_t>(id.Data4[i]) << (i % 4 * 8);
    }
    return made;
}

Value GetValue(Node* node) {
    switch (node->GetType()) {
        case NodeTypeInteger: return static_cast<Integer*>(node)->Get();
        case NodeTypeInteger64: return static_cast<Integer64*>(node)->Get();
        case NodeTypeBoolean: return static_cast<Boolean*>(node)->Get();
        case NodeTypeDouble: return static_cast<Double*>(node)->Get();
        case NodeTypeGlobalID: return FromLibrary(static_cast<GlobalID*>(node)->Get());
        case NodeTypeString: return Text(static_cast<String*>(node)->Get(), static_cast<String*>(node)->GetLength());
        case NodeTypeIntegerSet: return GetElements<IntegerSet, std::int32_t>(node);
        case NodeTypeDoubleSet: return GetElements<DoubleSet, double>(node);
        case NodeTypeStringSet: return GetElements<StringSet, Text>(node);
        case NodeTypeIdSet: return GetElements<IdSet, Id>(node);
        case NodeTypeVector:
        case NodeTypeMap: break;
    }
    return {};
}

void CheckValue(const Item& item, Node* node) {
    switch (item.type) {
        case NodeTypeIntegerSet: return CheckSet<IntegerSet>(std::get<std::set<std::int32_t>>(item.value), node);
        case NodeTypeDoubleSet: return CheckSet<DoubleSet>(std::get<std::set<double>>(item.value), node);
        case NodeTypeStringSet: return CheckSet<StringSet>(std::get<std::set<Text>>(item.value), node);
        case NodeTypeIdSet: return CheckSet<IdSet>(std::get<std::set<Id>>(item.value), node);
        default: Expect(IsSameValue(item.value, GetValue(node)), "a value");
    }
}

}  // namespace Model
