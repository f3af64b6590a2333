#include <cmath>

#include "model/Model.h"

using namespace KivGenerics;

namespace Model {
namespace {

template <class T>
int Order(const T& a, const T& b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

}  // namespace

Value NewValue(NodeType type) {
    switch (type) {
        case NodeTypeInteger: return std::int32_t{0};
        case NodeTypeGlobalID: return Id{};
        case NodeTypeString: return Text();
        case NodeTypeDouble: return 0.0;
        case NodeTypeBoolean: return false;
        case NodeTypeIntegerSet: return std::set<std::int32_t>();
        case NodeTypeIdSet: return std::set<Id>();
        case NodeTypeStringSet: return std::set<Text>();
        case NodeTypeDoubleSet: return std::set<double>();
        case NodeTypeInteger64: return std::int64_t{0};
        case NodeTypeVector:
        case NodeTypeMap: break;
    }
    return {};
}

bool IsSameValue(const Value& a, const Value& b) {
    const auto* const x = std::get_if<double>(&a);
    const auto* const y = std::get_if<double>(&b);
    if (x != nullptr && y != nullptr) {
        return std::isnan(*x) ? std::isnan(*y) : *x == *y && std::signbit(*x) == std::signbit(*y);
    }
    return a == b;
}

int CompareValues(const Item& mine, const Item& theirs) {
    if (mine.type == NodeTypeString) {
        return Order(std::get<Text>(mine.value), Text(std::get<Text>(theirs.value).c_str()));
    }
    return std::visit(
        [&](const auto& value) { return Order(value, std::get<std::decay_t<decltype(value)>>(theirs.value)); },
        mine.value);
}

bool IsInside(const Item& node, const Item& above) {
    for (const Item* each = &node; each != nullptr; each = each->parent) {
        if (each == &above) {
            return true;
        }
    }
    return false;
}

int CountNodes(const Item& item) {
    int count = 1;
    for (const Owned& element : item.elements) {
        count += CountNodes(*element);
    }
    for (const auto& entry : item.entries) {
        count += CountNodes(*entry.second);
    }
    return count;
}

}  // namespace Model
