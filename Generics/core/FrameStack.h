#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
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
    Frame& Top() noexcept { return size_ <= kInline ? *std::launder(GetFirst() + size_ - 1) : deeper_.back(); }
    void Push(const Frame& frame) {
        if (size_ < kInline) {
            ::new (static_cast<void*>(GetFirst() + size_)) Frame(frame);
        } else {
            deeper_.push_back(frame);
        }
        ++size_;
    }
    void Pop() noexcept {
        if (size_ > kInline) {
            deeper_.pop_back();
        }
        --size_;
    }

private:
    static_assert(std::is_trivially_destructible_v<Frame>, "frames are forgotten");
    static constexpr std::size_t kInline = 16;

    Frame* GetFirst() noexcept { return reinterpret_cast<Frame*>(first_); }

    alignas(Frame) unsigned char first_[kInline * sizeof(Frame)];
    std::vector<Frame> deeper_;
    std::size_t size_ = 0;
};

}  // namespace KivGenerics
