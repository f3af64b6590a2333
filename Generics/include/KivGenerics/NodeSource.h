#pragma once

#include <new>
#include <type_traits>

#include <KivBase/Buffer.h>
#include <KivGenerics/ChangeGuard.h>
#include <KivGenerics/Export.h>
#include <KivGenerics/Forward.h>
#include <KivGenerics/NodeType.h>

namespace KivGenerics {

/// The part of a tree that makes nodes inline, where their kind is known when compiling.
class NodeSource : public ChangeGuard {
public:
    /// True for the kinds that own nothing besides the node itself: Boolean, Double, GlobalID, Integer and Integer64.
    template <class T>
    static constexpr bool IsPlain = std::is_trivially_destructible_v<T>;

    /// True for the kinds that are made inline: those of which trees have many, and of which no tag fixes the class.
    template <class T>
    static constexpr bool IsMadeInline = IsPlain<T> || std::is_same_v<T, String> || std::is_same_v<T, Vector>;

    /// A node of the kind T for `owner` and `index`, reused or new; the caller places it. Counts one change. Null where a
    /// host's buffer answers null.
    template <class T>
    T* Create(NodeOwner& owner, int index) {
        static_assert(IsMadeInline<T>, "a node with more to it is made by its kind's number");
        CheckReadOnly();
        if (waiting_[T::StaticType - 1] != nullptr) {
            return static_cast<T*>(Reuse(T::StaticType, owner, index));
        }
        // A host's buffer may answer null, which a new-expression must not see.
        void* const memory = buffer_->template Take<T>();
        return memory != nullptr ? ::new (memory) T(this, owner, index) : nullptr;
    }

    /// True when CreateNext may make a T: the tree is not read-only, none waits to be reused, and the buffer has room.
    template <class T>
    bool CanCreateNext() const noexcept {
        return !readOnly_ && waiting_[T::StaticType - 1] == nullptr && buffer_->template CanTake<T>();
    }
    /// Create after CanCreateNext: nothing can fail, and nothing is called, so that whoever makes nodes keeps nothing on the
    /// stack. Counts `changes` changes.
    template <class T>
    T* CreateNext(NodeOwner& owner, int index, std::uint32_t changes) noexcept {
        CountMore(changes);
        return ::new (buffer_->template TakeNext<T>()) T(this, owner, index);
    }

    /// The buffer of the forest.
    KivBase::Buffer* GetBuffer() const noexcept { return buffer_; }

protected:
    NodeSource() = default;
    ~NodeSource() = default;

    /// The node of this kind that waits in the forest, for `owner` and `index`.
    KIV_GENERICS_EXPORT Node* Reuse(NodeType type, NodeOwner& owner, int index) noexcept;

    KivBase::Buffer* buffer_ = nullptr;  // of the forest
    Node* const* waiting_ = nullptr;  // by kind - 1: the nodes that the forest hands out again
};

}  // namespace KivGenerics
