#include <KivInspect/NodeSize.h>

#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivInspect/Walk.h>

namespace KivInspect {
namespace {

using namespace KivGenerics;

constexpr std::size_t UnitSize = sizeof(char16_t);

template <class Set>
std::size_t SizeOfSet(const Node* node) {
    typename Set::Elements elements;
    static_cast<const Set*>(node)->Get(elements);
    return elements.size() * sizeof(typename Set::Elements::value_type);
}

std::size_t SizeOfTexts(const StringSet* set) {
    std::size_t units = 0;
    for (const KivBase::WString& text : set->Get()) {
        units += text.size();
    }
    return units * UnitSize;
}

}  // namespace

std::size_t SizeOfValue(Node* node) {
    switch (node->GetType()) {
        case NodeTypeInteger: return sizeof(std::int32_t);
        case NodeTypeGlobalID: return sizeof(GUID);
        case NodeTypeString: return static_cast<String*>(node)->GetLength() * UnitSize;
        case NodeTypeDouble: return sizeof(double);
        case NodeTypeBoolean: return 1;
        case NodeTypeVector: return 0;
        case NodeTypeMap: return 0;
        case NodeTypeIntegerSet: return SizeOfSet<IntegerSet>(node);
        case NodeTypeIdSet: return SizeOfSet<IdSet>(node);
        case NodeTypeStringSet: return SizeOfTexts(static_cast<StringSet*>(node));
        case NodeTypeDoubleSet: return SizeOfSet<DoubleSet>(node);
        case NodeTypeInteger64: return sizeof(std::int64_t);
    }
    return 0;
}

std::size_t SizeOf(Node* node) {
    std::size_t size = 0;
    Walk walk(node);
    while (Node* const each = walk.Next()) {
        size += SizeOfValue(each);
    }
    return size;
}

}  // namespace KivInspect
