#pragma once

#include <cstddef>
#include <cstdint>

#include "core/NodeAccess.h"
#include "core/TreeImpl.h"

namespace KivGenerics {

/// Makes leaves of a plain kind one after the other, as Create would, where none of them needs a new block or is a reused one:
/// what Create asks for each is asked once. The caller places them.
///
/// On failure: nothing can fail.
template <class T>
class LeafRun {
public:
    /// How many leaves a run can have, at most `wanted`; 0 where Create has to be asked, which may refuse.
    static std::size_t Count(const TreeImpl& tree, std::size_t wanted) noexcept {
        return tree.MayTake<T>() ? tree.GetBuffer()->template CountTakeable<T>(wanted) : 0;
    }

    /// Leaves of one own temporality, which the tree knows. Each counts as `changes` changes. `most` is at most Count and not 0.
    LeafRun(TreeImpl& tree, Composite& parent, std::size_t most, EnumOrvGenericsTemporality temporality,
            std::uint32_t changes) noexcept
        : tree_(tree),
          parent_(parent),
          first_(tree.GetBuffer()->template TakeRun<T>(most)),
          next_(first_),
          end_(first_ + most * kSize),
          model_(NodeAccess::Construct<T>(first_, tree, parent, 0)),
          changes_(changes) {
        NodeAccess::SetTemporalityOfNewLeaf(*model_, temporality);
    }
    LeafRun(const LeafRun&) = delete;
    LeafRun& operator=(const LeafRun&) = delete;
    ~LeafRun() {
        tree_.GetBuffer()->GiveBackRun(next_, end_);
        tree_.CountMore(static_cast<std::uint32_t>(static_cast<std::size_t>(next_ - first_) / kSize) * changes_);
    }

    /// The next leaf, of which there are at most as many as were asked for.
    T* Make(int index) noexcept {
        char* const place = next_;
        next_ = place + kSize;
        KivBase::Buffer::PrefetchForWriting(place);
        return NodeAccess::ConstructLike(*model_, place, parent_, index);
    }

private:
    static constexpr std::size_t kSize = KivBase::Buffer::GetTakenSize<T>();

    TreeImpl& tree_;
    Composite& parent_;
    char* const first_;
    char* next_;
    char* const end_;
    T* const model_;  // at first_, where the first leaf will be
    const std::uint32_t changes_;
};

}  // namespace KivGenerics
