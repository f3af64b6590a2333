#include <KivBase/Buffer.h>

#include <algorithm>
#include <atomic>
#include <limits>

#include "base/Poison.h"
#include "base/SizeClasses.h"

namespace KivBase {
namespace {

constexpr std::int32_t kSmallestBlock = 1024;

/// A region of blocks with a cursor.
///
///     block:  | next block | handed out ... | cursor -> free ... |
///
/// Nothing stands in front of what is handed out: its size comes back with it. Requests above a quarter of a block (and
/// above 512 bytes), and those aligned to more than 8 bytes, are served apart, each from the system and back to it.
class RegionBuffer final : public Buffer {
public:
    explicit RegionBuffer(std::int32_t blockSize)
        : blockSize_(static_cast<std::size_t>(std::max(blockSize, kSmallestBlock))),
          largest_(std::max(blockSize_ / 4, kSmallestLargest)) {}

    ~RegionBuffer() override {
        while (blocks_ != nullptr) {
            Block* const block = blocks_;
            blocks_ = block->next;
            Unpoison(block, blockSize_);
            ::operator delete(block);
        }
        while (apart_.next != &apart_) {
            FreeApart(apart_.next);
        }
    }

    void* Allocate(std::size_t size, std::size_t alignment) override {
        if (size > largest_ || alignment > kGranule) {
            return AllocateApart(size, alignment);
        }
        const SizeClass sizeClass = GetSizeClass(size);
        void* memory = free_[sizeClass.index];
        if (memory != nullptr) {
            Unpoison(memory, sizeClass.size);
            free_[sizeClass.index] = static_cast<FreeMemory*>(memory)->next;
        } else {
            if (static_cast<std::size_t>(end_ - cursor_) < sizeClass.size) {
                AddBlock();
            }
            memory = cursor_;
            cursor_ += sizeClass.size;
            Unpoison(memory, sizeClass.size);
        }
        inUse_ += sizeClass.size;
        return memory;
    }

    std::size_t BytesReserved() const override { return reserved_; }
    std::size_t BytesInUse() const override { return inUse_; }

    void Free(void* memory, std::size_t size, std::size_t alignment) noexcept override {
        if (memory == nullptr) {
            return;
        }
        if (size > largest_ || alignment > kGranule) {
            FreeApart(reinterpret_cast<Apart*>(static_cast<char*>(memory) - GetRoomBefore(alignment)));
            return;
        }
        const SizeClass sizeClass = GetSizeClass(size);
        inUse_ -= sizeClass.size;
        Keep(memory, sizeClass);
    }

private:
    struct Block {
        Block* next;
    };
    struct FreeMemory {
        FreeMemory* next;
    };
    /// In front of memory that is served apart; all of it is linked in a ring.
    struct Apart {
        Apart* previous;
        Apart* next;
        std::size_t reserved;  // bytes from the system, this record included
        std::size_t size;
        std::size_t alignment;
    };

    static constexpr std::size_t kSmallestLargest = 512;

    static std::size_t GetRoomBefore(std::size_t alignment) noexcept {
        const std::size_t step = std::max(alignment, alignof(Apart));
        return (sizeof(Apart) + step - 1) / step * step;
    }

    void Keep(void* memory, const SizeClass& sizeClass) noexcept {
        auto* const kept = static_cast<FreeMemory*>(memory);
        kept->next = free_[sizeClass.index];
        free_[sizeClass.index] = kept;
        Poison(memory, sizeClass.size);
    }

    void AddBlock() {
        auto* const block = static_cast<Block*>(::operator new(blockSize_));
        KeepRestOfBlock();
        block->next = blocks_;
        blocks_ = block;
        reserved_ += blockSize_;
        cursor_ = reinterpret_cast<char*>(block) + std::max(sizeof(Block), kGranule);
        end_ = reinterpret_cast<char*>(block) + blockSize_ / kGranule * kGranule;
        Poison(cursor_, static_cast<std::size_t>(end_ - cursor_));
    }

    // What is left of the block that the cursor leaves goes to smaller requests.
    void KeepRestOfBlock() noexcept {
        while (static_cast<std::size_t>(end_ - cursor_) >= kGranule) {
            const SizeClass rest = GetExactClassWithin(static_cast<std::size_t>(end_ - cursor_));
            Unpoison(cursor_, rest.size);
            Keep(cursor_, rest);
            cursor_ += rest.size;
        }
    }

    void* AllocateApart(std::size_t size, std::size_t alignment) {
        constexpr auto kMost = static_cast<std::size_t>((std::numeric_limits<std::ptrdiff_t>::max)());
        const std::size_t before = GetRoomBefore(alignment);
        // Nothing larger exists; without the first test an absurd alignment would turn the second one round.
        if (before > kMost || size > kMost - before) {
            throw std::bad_alloc();
        }
        const std::size_t reserved = before + size;
        const auto systemAlignment = static_cast<std::align_val_t>(std::max(alignment, alignof(Apart)));
        void* const memory = ::operator new(reserved, systemAlignment);
        auto* const apart = static_cast<Apart*>(memory);
        *apart = {&apart_, apart_.next, reserved, size, alignment};
        apart_.next->previous = apart;
        apart_.next = apart;
        reserved_ += reserved;
        inUse_ += size;
        return static_cast<char*>(memory) + before;
    }

    void FreeApart(Apart* apart) noexcept {
        apart->previous->next = apart->next;
        apart->next->previous = apart->previous;
        reserved_ -= apart->reserved;
        inUse_ -= apart->size;
        ::operator delete(apart, static_cast<std::align_val_t>(std::max(apart->alignment, alignof(Apart))));
    }

    char* cursor_ = nullptr;
    char* end_ = nullptr;
    std::size_t inUse_ = 0;
    FreeMemory* free_[kSizeClasses] = {};
    std::size_t reserved_ = 0;
    std::size_t blockSize_;
    std::size_t largest_;  // the largest request that a block serves
    Block* blocks_ = nullptr;
    Apart apart_ = {&apart_, &apart_, 0, 0, 0};
};

std::atomic<BufferFactory> bufferFactory{nullptr};

}  // namespace

Buffer* CreateDefaultBuffer(int, int, std::int32_t blockSize, bool) {
    return new RegionBuffer(blockSize);
}

Buffer* CreateBuffer(int reserved1, int reserved2, std::int32_t blockSize, bool reserved3) {
    const BufferFactory factory = bufferFactory.load();
    return (factory != nullptr ? factory : CreateDefaultBuffer)(reserved1, reserved2, blockSize, reserved3);
}

BufferFactory SetBufferFactory(BufferFactory factory) noexcept {
    return bufferFactory.exchange(factory);
}

}  // namespace KivBase
