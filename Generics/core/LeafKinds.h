#pragma once

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/String.h>

namespace KivGenerics {

/// Names a class of leaves to a step that is written once for several:
///
///     ForPlainKind(type, [&](auto kind) { return Read<typename decltype(kind)::Leaf>(); }, [] { return false; })
template <class T>
struct KindOf {
    using Leaf = T;
};

// Both are part of their callers, whose loops they stand in. The switch goes over all kinds, so that a new one is a warning.

/// Calls `use` with the KindOf a kind that holds one value, `otherwise` for any other, and answers what that answers.
template <class Use, class Otherwise>
[[gnu::always_inline]] inline auto ForScalarKind(NodeType type, Use use, Otherwise otherwise) {
    switch (type) {
        case NodeTypeInteger: return use(KindOf<Integer>());
        case NodeTypeGlobalID: return use(KindOf<GlobalID>());
        case NodeTypeString: return use(KindOf<String>());
        case NodeTypeDouble: return use(KindOf<Double>());
        case NodeTypeBoolean: return use(KindOf<Boolean>());
        case NodeTypeInteger64: return use(KindOf<Integer64>());
        case NodeTypeVector:
        case NodeTypeMap:
        case NodeTypeIntegerSet:
        case NodeTypeIdSet:
        case NodeTypeStringSet:
        case NodeTypeDoubleSet: break;
    }
    return otherwise();
}

/// The same for the kinds whose nodes own nothing: those but for texts.
template <class Use, class Otherwise>
[[gnu::always_inline]] inline auto ForPlainKind(NodeType type, Use use, Otherwise otherwise) {
    const auto usePlain = [&](auto kind) {
        if constexpr (NodeSource::IsPlain<typename decltype(kind)::Leaf>) {
            return use(kind);
        } else {
            return otherwise();
        }
    };
    return ForScalarKind(type, usePlain, otherwise);
}

}  // namespace KivGenerics
