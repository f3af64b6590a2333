#include "compare/SameValue.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

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

namespace KivInspect {
namespace {

using namespace KivGenerics;

bool IsSame(const GUID& left, const GUID& right) {
    return KivBase::CompareGUID(left, right) == 0;
}

std::uint64_t BitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

bool IsSame(double left, double right, const DiffOptions& options) {
    if (BitsOf(left) == BitsOf(right)) {
        return true;
    }
    const double distance = std::fabs(left - right);
    const double greater = (std::max)(std::fabs(left), std::fabs(right));
    const bool wanted = options.absolute > 0 || options.relative > 0;
    // Of infinities and NaN the distance says nothing.
    return wanted && std::isfinite(distance) &&
           (distance <= options.absolute || distance <= options.relative * greater);
}

template <class Set, class Same>
bool IsSameSet(const Node* left, const Node* right, Same same) {
    typename Set::Elements first;
    typename Set::Elements second;
    static_cast<const Set*>(left)->Get(first);
    static_cast<const Set*>(right)->Get(second);
    return std::equal(first.begin(), first.end(), second.begin(), second.end(), same);
}

template <class Leaf>
bool IsSameLeaf(const Node* left, const Node* right) {
    return static_cast<const Leaf*>(left)->Get() == static_cast<const Leaf*>(right)->Get();
}

bool IsSameText(const String* left, const String* right) {
    return left->GetLength() == right->GetLength() &&
           std::equal(left->Get(), left->Get() + left->GetLength(), right->Get());
}

}  // namespace

bool HaveSameValue(Node* left, Node* right, const DiffOptions& options) {
    const auto sameDouble = [&options](double first, double second) { return IsSame(first, second, options); };
    switch (left->GetType()) {
        case NodeTypeInteger: return IsSameLeaf<Integer>(left, right);
        case NodeTypeGlobalID: return IsSame(static_cast<GlobalID*>(left)->Get(), static_cast<GlobalID*>(right)->Get());
        case NodeTypeString: return IsSameText(static_cast<String*>(left), static_cast<String*>(right));
        case NodeTypeDouble: return sameDouble(static_cast<Double*>(left)->Get(), static_cast<Double*>(right)->Get());
        case NodeTypeBoolean: return IsSameLeaf<Boolean>(left, right);
        case NodeTypeVector: return true;
        case NodeTypeMap: return true;
        case NodeTypeIntegerSet: return IsSameSet<IntegerSet>(left, right, std::equal_to<>());
        case NodeTypeIdSet:
            return IsSameSet<IdSet>(left, right, [](const GUID& a, const GUID& b) { return IsSame(a, b); });
        case NodeTypeStringSet: return IsSameLeaf<StringSet>(left, right);
        case NodeTypeDoubleSet: return IsSameSet<DoubleSet>(left, right, sameDouble);
        case NodeTypeInteger64: return IsSameLeaf<Integer64>(left, right);
    }
    return false;
}

}  // namespace KivInspect
