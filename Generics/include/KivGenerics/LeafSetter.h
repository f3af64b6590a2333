#pragma once

#include <cassert>
#include <cstdint>
#include <type_traits>
#include <utility>

#include <KivGenerics/ChangeGuard.h>
#include <KivGenerics/Composite.h>
#include <KivGenerics/NodeSource.h>

namespace KivGenerics {

/// Sets many leaves of one tree, each through the composite it stands in:
///
///     LeafSetter setter(*list);
///     for (const Change& change : changes) {
///         setter.Set<Double>(*static_cast<Map*>(list->GetNV(change.record)), change.field, change.value);
///     }
///
/// As Set of each leaf, and quicker where the leaves are in no cache: a leaf is written and not read. Whether the tree is
/// read-only is asked when the setter is made, and the changes are counted when it goes. So the tree must outlive it, and must
/// not be made read-only meanwhile.
class LeafSetter {
public:
    /// For the tree of this composite. Throws ReadOnlyException.
    explicit LeafSetter(const Composite& composite) : guard_(*composite.GetGuard()) { guard_.TestWritable(); }
    ~LeafSetter() { guard_.CountMore(changes_); }
    LeafSetter(const LeafSetter&) = delete;
    LeafSetter& operator=(const LeafSetter&) = delete;

    /// Set of the child at `index` of a Map or Vector of the tree. It must be there, and of the kind T, which is one that holds
    /// a number, a truth value or a GUID; a debug build asserts it.
    template <class T, class Parent>
    void Set(const Parent& parent, int index, decltype(std::declval<const T&>().Get()) value) noexcept {
        static_assert(NodeSource::IsPlain<T> && !std::is_base_of_v<Composite, T>, "only kinds that hold a plain value");
        Node* const leaf = parent.GetNV(index);
        assert(parent.GetGuard() == &guard_ && leaf != nullptr && leaf->GetType() == T::StaticType);
        static_cast<T*>(leaf)->value_ = value;
        ++changes_;
    }

private:
    ChangeGuard& guard_;
    std::uint64_t changes_ = 0;
};

}  // namespace KivGenerics
