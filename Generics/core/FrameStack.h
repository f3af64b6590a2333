#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace KivGenerics {

/// The composites that an operation is inside of, outermost first: what the machine's stack would hold, were the operation
/// to call itself. So the depth of a tree is limited by memory alone.
///
/// On failure: Push throws std::bad_alloc beyond the first levels, which are held without the heap.
template <class Frame>
class FrameStack {
public:
    bool IsEmpty() const noexcept { return size_ == 0; }
    /// The innermost; valid until the next Push or Pop.
    Frame& Top() noexcept { return *top_; }
    template <class... Arguments>
    void Push(Arguments&&... arguments) {
        if (size_ < kInline) {
            top_ = ::new (static_cast<void*>(GetFirst() + size_)) Frame(std::forward<Arguments>(arguments)...);
        } else {
            top_ = &deeper_.emplace_back(std::forward<Arguments>(arguments)...);
        }
        ++size_;
    }
    void Pop() noexcept {
        --size_;
        if (size_ < kInline) {
            top_ = GetFirst() + size_ - 1;
        } else {
            deeper_.pop_back();
            top_ = size_ == kInline ? GetFirst() + size_ - 1 : &deeper_.back();
        }
    }

private:
    static_assert(std::is_trivially_destructible_v<Frame>, "frames are forgotten");
    static constexpr std::size_t kInline = 16;

    Frame* GetFirst() noexcept { return reinterpret_cast<Frame*>(first_); }

    alignas(Frame) unsigned char first_[kInline * sizeof(Frame)];
    std::vector<Frame> deeper_;
    std::size_t size_ = 0;
    Frame* top_ = nullptr;
};

}  // namespace KivGenerics
