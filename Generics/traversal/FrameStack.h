#pragma once

#include <cstddef>
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
    Frame& Top() noexcept { return size_ <= kInline ? first_[size_ - 1] : deeper_.back(); }
    void Push(const Frame& frame) {
        if (size_ < kInline) {
            first_[size_] = frame;
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
    static constexpr std::size_t kInline = 16;

    Frame first_[kInline];
    std::vector<Frame> deeper_;
    std::size_t size_ = 0;
};

}  // namespace KivGenerics
