#pragma once

#include <cstddef>
#include <limits>
#include <new>
#include <type_traits>

#include <KivBase/Buffer.h>

namespace KivBase {

/// A standard allocator over a buffer, or over the heap when default constructed.
///
/// It stays with its container: copying, moving or swapping containers never carries it over, and a copy of a container
/// uses the heap, so that a caller's copy of a string or set outlives the forest it came from.
template <class T>
class Allocator {
public:
    using value_type = T;
    using propagate_on_container_copy_assignment = std::false_type;
    using propagate_on_container_move_assignment = std::false_type;
    using propagate_on_container_swap = std::false_type;
    using is_always_equal = std::false_type;

    /// Over the heap.
    Allocator() noexcept = default;
    /// Over a buffer, which must outlive every container that uses it.
    explicit Allocator(Buffer* buffer) noexcept : buffer_(buffer) {}
    template <class U>
    Allocator(const Allocator<U>& other) noexcept : buffer_(other.GetBuffer()) {}

    /// Throws std::bad_alloc, also where a host's buffer answers null.
    T* allocate(std::size_t count) {
        if (count > (std::numeric_limits<std::size_t>::max)() / sizeof(T)) {
            throw std::bad_alloc();
        }
        const std::size_t size = count * sizeof(T);
        void* const memory = buffer_ != nullptr ? buffer_->AllocateInline(size, alignof(T)) : ::operator new(size);
        if (memory == nullptr) {
            throw std::bad_alloc();
        }
        return static_cast<T*>(memory);
    }

    void deallocate(T* memory, std::size_t count) noexcept {
        if (buffer_ != nullptr) {
            buffer_->Free(memory, count * sizeof(T), alignof(T));
        } else {
            ::operator delete(memory);
        }
    }

    Allocator select_on_container_copy_construction() const noexcept { return Allocator(); }

    /// Null for the heap.
    Buffer* GetBuffer() const noexcept { return buffer_; }

private:
    Buffer* buffer_ = nullptr;
};

template <class T, class U>
bool operator==(const Allocator<T>& left, const Allocator<U>& right) noexcept {
    return left.GetBuffer() == right.GetBuffer();
}

template <class T, class U>
bool operator!=(const Allocator<T>& left, const Allocator<U>& right) noexcept {
    return !(left == right);
}

}  // namespace KivBase
