#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include <KivBase/Export.h>

namespace KivBase {

/// A region of memory: many allocations, one release of everything.
///
/// Threads:    one thread at a time.
/// On failure: Allocate throws std::bad_alloc; a host's own buffer may answer null instead. Nothing is changed then.
class Buffer {
public:
    virtual ~Buffer() = default;

    /// Memory of `size` bytes aligned to `alignment`, a power of two. Valid until it is freed or the buffer goes.
    virtual void* Allocate(std::size_t size, std::size_t alignment) = 0;

    /// Bytes reserved from the system.
    virtual std::size_t BytesReserved() const = 0;

    /// Bytes handed out and not given back.
    virtual std::size_t BytesInUse() const = 0;

    /// Gives back what Allocate(size, alignment) returned, for reuse by later calls of about that size.
    /// Null is ignored. `size` and `alignment` must be those of the allocation.
    virtual void Free(void* memory, std::size_t size, std::size_t alignment) noexcept = 0;

    /// Allocate, inlined where the buffer shows its free memory and that nothing of this size has come back to it.
    void* AllocateInline(std::size_t size, std::size_t alignment) {
        if (returned_ != nullptr && size != 0 && size <= kLargestTake && alignment <= kTakeAlignment) {
            const std::size_t units = (size + kTakeAlignment - 1) / kTakeAlignment;
            if (returned_[units] == nullptr && units * kTakeAlignment <= static_cast<std::size_t>(end_ - cursor_)) {
                char* const memory = cursor_;
                cursor_ = memory + units * kTakeAlignment;
                PrefetchForWriting(memory);
                return memory;
            }
        }
        return Allocate(size, alignment);
    }

    /// Allocate for one T that never comes back, inlined where the buffer shows its free memory.
    template <class T>
    void* Take() {
        return CanTake<T>() ? TakeNext<T>() : Allocate(sizeof(T), alignof(T));
    }
    /// True when Take gives the next T by itself.
    template <class T>
    bool CanTake() const noexcept {
        // As numbers, so that where the next free memory begins is calculated once for this and for TakeNext.
        return reinterpret_cast<std::uintptr_t>(cursor_) + GetTakenSize<T>() <= reinterpret_cast<std::uintptr_t>(end_);
    }
    /// True when TakeRun gives so many T at once.
    template <class T>
    bool CanTake(std::size_t count) const noexcept {
        return static_cast<std::size_t>(end_ - cursor_) >= count * GetTakenSize<T>();
    }
    /// Take after CanTake: nothing can fail, and nothing is called.
    template <class T>
    void* TakeNext() noexcept {
        char* const taken = cursor_;
        cursor_ = taken + GetTakenSize<T>();
        PrefetchForWriting(taken, sizeof(T));
        return taken;
    }
    /// How many T TakeRun can give at once.
    template <class T>
    std::size_t CountTakeable() const noexcept {
        return static_cast<std::size_t>(end_ - cursor_) / GetTakenSize<T>();
    }
    /// The same, at most `wanted`.
    template <class T>
    std::size_t CountTakeable(std::size_t wanted) const noexcept {
        return CanTake<T>(wanted) ? wanted : CountTakeable<T>();
    }
    /// Take for so many T, side by side, GetTakenSize<T>() bytes each; at most CountTakeable<T>().
    template <class T>
    char* TakeRun(std::size_t count) noexcept {
        char* const taken = cursor_;
        cursor_ = taken + count * GetTakenSize<T>();
        return taken;
    }
    /// Gives the end of a run back, from `rest` on, as long as nothing has been taken after the run; else it is lost.
    void GiveBackRun(char* rest, const char* end) noexcept {
        if (cursor_ == end) {
            cursor_ = rest;
        }
    }
    /// The bytes from one T to the next in a run.
    template <class T>
    static constexpr std::size_t GetTakenSize() noexcept {
        static_assert(alignof(T) <= kTakeAlignment && sizeof(T) <= kLargestTake);
        return (sizeof(T) + kTakeAlignment - 1) / kTakeAlignment * kTakeAlignment;
    }
    /// What is taken at `place` is written next, and what comes a little later soon: its line is on its way when that is so.
    static void PrefetchForWriting([[maybe_unused]] const char* place, [[maybe_unused]] std::size_t size = 1) noexcept {
#if defined(__GNUC__)
        constexpr std::size_t kLine = 64;
        for (std::size_t i = 0; i < size; i += kLine) {
            __builtin_prefetch(place + kPrefetchDistance + i, 1);
        }
#endif
    }

protected:
    Buffer() = default;
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    static constexpr std::size_t kTakeAlignment = 8;
    static constexpr std::size_t kLargestTake = 512;
    static constexpr std::size_t kPrefetchDistance = 2048;

    // Where the free memory of the present block begins, a multiple of 8, and where it ends: Take moves the former. A buffer that
    // leaves both null, as a host's own may, is asked for every object by Allocate.
    char* cursor_ = nullptr;
    char* end_ = nullptr;
    // By size in units of 8 bytes, from 1 to 64, whether something has come back that Allocate would hand out again: null where
    // not. A buffer that shows it is given back by Free what Allocate did not hand out, of as many units.
    void* const* returned_ = nullptr;
};

/// Makes a buffer, owned by the caller, who deletes it.
///
/// `blockSize` is the number of bytes that one request to the system brings; requests too large for a block are served
/// apart. The first two arguments and the last are reserved for hosts and ignored here. Throws std::bad_alloc.
KIV_PLATFORM_EXPORT Buffer* CreateBuffer(int reserved1, int reserved2, std::int32_t blockSize, bool reserved3);

/// What makes the buffers that CreateBuffer returns.
using BufferFactory = Buffer* (*)(int, int, std::int32_t, bool);

/// Sends every later CreateBuffer to `factory`; null brings the default back. Returns the factory that stood before, null
/// for the default. Threads: any, but a factory must stand before the threads that rely on it start.
KIV_PLATFORM_EXPORT BufferFactory SetBufferFactory(BufferFactory factory) noexcept;

/// What CreateBuffer does when no factory is set; for factories that wrap it.
KIV_PLATFORM_EXPORT Buffer* CreateDefaultBuffer(int reserved1, int reserved2, std::int32_t blockSize, bool reserved3);

/// Where a placement `new` puts its object; the matching `delete` needs the size again, so it travels with the place.
struct Place {
    Buffer& buffer;
    std::size_t size;
    std::size_t alignment;
};

/// The place for one T in a buffer: `new (KivBase::In<T>(buffer)) T(...)`.
template <class T>
Place In(Buffer& buffer) noexcept {
    return {buffer, sizeof(T), alignof(T)};
}

}  // namespace KivBase

/// Placement allocation from a buffer; std::bad_alloc also where a host's buffer answers null.
inline void* operator new(std::size_t, const KivBase::Place& place) {
    void* const memory = place.buffer.Allocate(place.size, place.alignment);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

/// The matching delete, called when the constructor throws: the memory goes back to the buffer.
inline void operator delete(void* memory, const KivBase::Place& place) noexcept {
    place.buffer.Free(memory, place.size, place.alignment);
}
