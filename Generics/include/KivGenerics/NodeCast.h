#pragma once

#include <type_traits>

#include <KivGenerics/Node.h>

namespace KivGenerics {

/// The node as the class of its kind, or null when it is null or of another kind: `node_cast<Integer>(node)`.
template <class T, class N>
auto node_cast(N* node) noexcept -> std::conditional_t<std::is_const_v<N>, const T*, T*> {
    using Result = std::conditional_t<std::is_const_v<N>, const T*, T*>;
    if constexpr (std::is_same_v<T, Composite>) {
        return node != nullptr && IsCompositeType(node->GetType()) ? static_cast<Result>(node) : nullptr;
    } else {
        return node != nullptr && node->GetType() == T::StaticType ? static_cast<Result>(node) : nullptr;
    }
}

}  // namespace KivGenerics
