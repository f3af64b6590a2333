#include "faults/Faults.h"

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>

#include <KivBase/Buffer.h>

namespace {

std::atomic<long> countdown{0};  // 0: not armed
std::atomic<bool> forGood{false};
std::atomic<bool> struck{false};
std::atomic<long> liveBlocks{0};
std::atomic<long> liveBuffers{0};
std::atomic<bool> nullOnFailure{false};

bool Strikes() noexcept {
    long left = countdown.load();
    if (left == 0) {
        return false;
    }
    if (left > 1) {
        countdown = left - 1;
        return false;
    }
    if (!forGood) {
        countdown = 0;
    }
    struck = true;
    return true;
}

void* TakeBlock(std::size_t size, std::size_t alignment) noexcept {
    if (Strikes()) {
        return nullptr;
    }
    void* const block = alignment > alignof(std::max_align_t)
                            ? std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment)
                            : std::malloc(size == 0 ? 1 : size);
    if (block != nullptr) {
        ++liveBlocks;
    }
    return block;
}

void* NeedBlock(std::size_t size, std::size_t alignment) {
    void* const block = TakeBlock(size, alignment);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void GiveBlock(void* block) noexcept {
    if (block != nullptr) {
        --liveBlocks;
        std::free(block);
    }
}

class FaultyBuffer final : public KivBase::Buffer {
public:
    explicit FaultyBuffer(KivBase::Buffer* buffer) : buffer_(buffer) { ++liveBuffers; }
    ~FaultyBuffer() override { --liveBuffers; }

    void* Allocate(std::size_t size, std::size_t alignment) override {
        if (!Strikes()) {
            return buffer_->Allocate(size, alignment);
        }
        if (nullOnFailure) {
            return nullptr;
        }
        throw std::bad_alloc();
    }
    std::size_t BytesReserved() const override { return buffer_->BytesReserved(); }
    std::size_t BytesInUse() const override { return buffer_->BytesInUse(); }
    void Free(void* memory, std::size_t size, std::size_t alignment) noexcept override {
        buffer_->Free(memory, size, alignment);
    }

private:
    std::unique_ptr<KivBase::Buffer> buffer_;
};

KivBase::Buffer* MakeFaultyBuffer(int reserved1, int reserved2, std::int32_t blockSize, bool reserved3) {
    std::unique_ptr<KivBase::Buffer> buffer(KivBase::CreateDefaultBuffer(reserved1, reserved2, blockSize, reserved3));
    KivBase::Buffer* const faulty = new FaultyBuffer(buffer.get());
    buffer.release();
    return faulty;
}

}  // namespace

void* operator new(std::size_t size) { return NeedBlock(size, 1); }
void* operator new[](std::size_t size) { return NeedBlock(size, 1); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return TakeBlock(size, 1); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return TakeBlock(size, 1); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    return NeedBlock(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept { GiveBlock(block); }
void operator delete[](void* block) noexcept { GiveBlock(block); }
void operator delete(void* block, std::size_t) noexcept { GiveBlock(block); }
void operator delete[](void* block, std::size_t) noexcept { GiveBlock(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { GiveBlock(block); }
void operator delete(void* block, std::align_val_t) noexcept { GiveBlock(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { GiveBlock(block); }

namespace Faults {

Armed::Armed(long k, Lasting lasting) {
    struck = false;
    forGood = lasting == Lasting::ForGood;
    countdown = k;
}

Armed::~Armed() {
    countdown = 0;
}

bool Armed::HasStruck() const {
    return struck;
}

WrappedBuffers::WrappedBuffers(bool answersNull) {
    nullOnFailure = answersNull;
    KivBase::SetBufferFactory(MakeFaultyBuffer);
}

WrappedBuffers::~WrappedBuffers() {
    KivBase::SetBufferFactory(nullptr);
}

long GetLiveBlocks() {
    return liveBlocks;
}

long GetLiveBuffers() {
    return liveBuffers;
}

}  // namespace Faults
