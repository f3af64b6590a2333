#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace KivGenerics {

/// The composites that an operation is inside of, outermost first: what the machine's stack would hold, were the operation
/// to call itself. So the depth of a tree is limited by memory alone.
///
/// The first levels stand in the object itself, those below them in pieces of the heap, each twice as long as the one before
/// it. A piece stays until the end: a tree that goes up and down around one costs nothing.
///
/// On failure: Push throws std::bad_alloc beyond the first levels.
template <class Frame>
class FrameStack {
public:
    FrameStack() = default;
    FrameStack(const FrameStack&) = delete;
    FrameStack& operator=(const FrameStack&) = delete;

    bool IsEmpty() const noexcept { return next_ == GetFirst(inline_); }
    /// The innermost; valid until it is popped.
    Frame& Top() noexcept { return next_[-1]; }
    template <class... Arguments>
    void Push(Arguments&&... arguments) {
        if (next_ == end_) {
            GoDeeper();
        }
        ::new (static_cast<void*>(next_)) Frame(std::forward<Arguments>(arguments)...);
        ++next_;
    }
    void Pop() noexcept {
        --next_;
        if (next_ == begin_ && piece_ != nullptr) {
            GoBack();
        }
    }

private:
    static_assert(std::is_trivially_destructible_v<Frame>, "frames are forgotten");
    static_assert(alignof(Frame) <= alignof(std::max_align_t));
    static constexpr std::size_t kInline = 16;

    struct Piece {
        Piece(std::size_t count, Piece* previous)
            : memory(new unsigned char[count * sizeof(Frame)]), length(count), above(previous) {}

        std::unique_ptr<unsigned char[]> memory;
        std::size_t length;  // in frames
        Piece* above;
        std::unique_ptr<Piece> below;
    };

    static Frame* GetFirst(unsigned char* memory) noexcept { return reinterpret_cast<Frame*>(memory); }
    static const Frame* GetFirst(const unsigned char* memory) noexcept {
        return reinterpret_cast<const Frame*>(memory);
    }

    std::unique_ptr<Piece>& GetBelow() noexcept { return piece_ != nullptr ? piece_->below : below_; }
    void GoDeeper() {
        std::unique_ptr<Piece>& below = GetBelow();
        if (below == nullptr) {
            below = std::make_unique<Piece>(static_cast<std::size_t>(end_ - begin_) * 2, piece_);
        }
        piece_ = below.get();
        begin_ = GetFirst(piece_->memory.get());
        end_ = begin_ + piece_->length;
        next_ = begin_;
    }
    /// The last frame of a piece has gone: the next one to go is the last of the piece above, which is full.
    void GoBack() noexcept {
        piece_ = piece_->above;
        begin_ = GetFirst(piece_ != nullptr ? piece_->memory.get() : inline_);
        end_ = begin_ + (piece_ != nullptr ? piece_->length : kInline);
        next_ = end_;
    }

    alignas(Frame) unsigned char inline_[kInline * sizeof(Frame)];
    std::unique_ptr<Piece> below_;  // the first piece of the heap
    Piece* piece_ = nullptr;  // the present one; null for the object itself
    Frame* begin_ = GetFirst(inline_);  // of the present piece
    Frame* next_ = begin_;
    Frame* end_ = begin_ + kInline;
};

}  // namespace KivGenerics
