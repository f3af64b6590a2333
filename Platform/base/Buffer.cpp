#include <KivBase/Buffer.h>

#include <algorithm>
#include <atomic>
#include <limits>

#include "base/Poison.h"
#include "base/Regions.h"
#include "base/SizeClasses.h"

namespace KivBase {
namespace {

constexpr std::int32_t kSmallestBlock = 1024;

/// A run of blocks in one piece of memory, from the heap or, where it is mapped, a region of the system's.
struct Run {
    Run* next;
    std::size_t size;  // bytes, this record included
    bool mapped;
};

/// Blocks with a cursor, carved from runs that grow with the buffer.
///
///     run:  | record | block ... cursor -> free ... | block | ... |
///
/// Nothing stands in front of what is handed out: its size comes back with it. Requests above a quarter of a block (and
/// above 512 bytes), and those aligned to more than 8 bytes, are served apart, each from the system and back to it.
class RegionBuffer final : public Buffer {
public:
    explicit RegionBuffer(std::int32_t blockSize)
        : blockSize_(static_cast<std::size_t>(std::max(blockSize, kSmallestBlock)) / kGranule * kGranule),
          largest_(std::max(blockSize_ / 4, kLargestTake)) {
        returned_ = free_;
    }

    ~RegionBuffer() override {
        while (runs_ != nullptr) {
            Run* const run = runs_;
            runs_ = run->next;
            ReleaseRun(run);
        }
        while (apart_.next != &apart_) {
            FreeApart(apart_.next);
        }
    }

    void* Allocate(std::size_t size, std::size_t alignment) override {
        // What is rare is called last, so that what nearly all requests need keeps nothing on the stack.
        if (size > largest_ || alignment > kGranule) {
            return AllocateApart(size, alignment);
        }
        const SizeClass sizeClass = GetSizeClass(size);
        void* const kept = free_[sizeClass.index];
        if (kept != nullptr) {
            Unpoison(kept, sizeClass.size);
            free_[sizeClass.index] = static_cast<FreeMemory*>(kept)->next;
            kept_ -= sizeClass.size;
            return kept;
        }
        return GetRest() >= sizeClass.size ? TakeRest(sizeClass.size) : TakeFromNewBlock(sizeClass.size);
    }

    std::size_t BytesReserved() const override { return blocks_ * blockSize_ + apartReserved_; }
    // All of every block is in use but what lies ahead of the cursor and what came back.
    std::size_t BytesInUse() const override { return blocks_ * blockSize_ - GetRest() - kept_ + apartInUse_; }

    void Free(void* memory, std::size_t size, std::size_t alignment) noexcept override {
        if (memory == nullptr) {
            return;
        }
        if (size > largest_ || alignment > kGranule) {
            FreeApart(reinterpret_cast<Apart*>(static_cast<char*>(memory) - GetRoomBefore(alignment)));
            return;
        }
        Keep(memory, GetSizeClass(size));
    }

private:
    struct FreeMemory {
        void* next;
    };
    /// In front of memory that is served apart; all of it is linked in a ring.
    struct Apart {
        Apart* previous;
        Apart* next;
        std::size_t reserved;  // bytes from the system, this record included
        std::size_t size;
        std::size_t alignment;
    };

    // Beyond so much a buffer is large, and takes whole regions.
    static constexpr std::size_t kLargeBuffer = kRegionSize / 2;

    static std::size_t GetRoomBefore(std::size_t alignment) noexcept {
        const std::size_t step = std::max(alignment, alignof(Apart));
        return (sizeof(Apart) + step - 1) / step * step;
    }

    void Keep(void* memory, const SizeClass& sizeClass) noexcept {
        auto* const kept = static_cast<FreeMemory*>(memory);
        kept->next = free_[sizeClass.index];
        free_[sizeClass.index] = kept;
        kept_ += sizeClass.size;
        Poison(memory, sizeClass.size);
    }

    /// Memory of the present block, which has so much left.
    void* TakeRest(std::size_t size) noexcept {
        void* const memory = cursor_;
        cursor_ += size;
        ShowRest();
        Unpoison(memory, size);
        return memory;
    }

    [[gnu::noinline]] void* TakeFromNewBlock(std::size_t size) {
        AddBlock();
        return TakeRest(size);
    }

    // A block that follows on the present one makes that longer.
    void AddBlock() {
        if (static_cast<std::size_t>(runEnd_ - blockEnd_) < blockSize_) {
            AddRun();
        }
        blockEnd_ += blockSize_;
        ++blocks_;
        ShowRest();
    }

    // Runs grow with the buffer, so that a large one costs few requests and a small one takes little.
    void AddRun() {
        std::size_t size = sizeof(Run) + std::max(blocks_, std::size_t{1}) * blockSize_;
        void* memory = nullptr;
        const bool mapped = blocks_ * blockSize_ >= kLargeBuffer && blockSize_ <= kRegionSize - sizeof(Run);
        if (mapped) {
            size = kRegionSize;
            memory = TakeRegion();
        } else {
            memory = ::operator new(size);
        }
        if (memory == nullptr) {
            throw std::bad_alloc();
        }
        KeepRestOfBlock();
        runs_ = ::new (memory) Run{runs_, size, mapped};
        cursor_ = reinterpret_cast<char*>(runs_ + 1);
        blockEnd_ = cursor_;
        runEnd_ = static_cast<char*>(memory) + size;
        Poison(runs_ + 1, size - sizeof(Run));
    }

    void ReleaseRun(Run* run) noexcept {
        Unpoison(run, run->size);
        if (run->mapped) {
            ReturnRegion(run);
        } else {
            ::operator delete(run);
        }
    }

    // What is left of the block that the cursor leaves goes to smaller requests.
    void KeepRestOfBlock() noexcept {
        while (GetRest() >= kGranule) {
            const SizeClass rest = GetExactClassWithin(GetRest());
            Unpoison(cursor_, rest.size);
            Keep(cursor_, rest);
            cursor_ += rest.size;
        }
    }

    /// What is left of the present block, in bytes.
    std::size_t GetRest() const noexcept { return static_cast<std::size_t>(blockEnd_ - cursor_); }

    // Where memory is poisoned none of it is shown, so that every request comes to Allocate.
    void ShowRest() noexcept { end_ = kPoisons ? cursor_ : blockEnd_; }

    [[gnu::noinline]] void* AllocateApart(std::size_t size, std::size_t alignment) {
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
        apartReserved_ += reserved;
        apartInUse_ += size;
        return static_cast<char*>(memory) + before;
    }

    void FreeApart(Apart* apart) noexcept {
        apart->previous->next = apart->next;
        apart->next->previous = apart->previous;
        apartReserved_ -= apart->reserved;
        apartInUse_ -= apart->size;
        ::operator delete(apart, static_cast<std::align_val_t>(std::max(apart->alignment, alignof(Apart))));
    }

    char* blockEnd_ = nullptr;  // of the present block
    char* runEnd_ = nullptr;  // room for more blocks up to here
    std::size_t blocks_ = 0;
    std::size_t kept_ = 0;  // bytes in free_
    void* free_[kSizeClasses] = {};  // by class, each the first of a list of FreeMemory
    std::size_t blockSize_;
    std::size_t largest_;  // the largest request that a block serves
    Run* runs_ = nullptr;
    std::size_t apartReserved_ = 0;
    std::size_t apartInUse_ = 0;
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
