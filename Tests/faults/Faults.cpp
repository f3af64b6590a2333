#include "faults/Faults.h"

#include <atomic>
#include <memory>
#include <new>

#include <KivBase/Buffer.h>

#include "faults/Heap.h"

namespace {

std::atomic<long> countdown{0};  // 0: not armed
std::atomic<bool> forGood{false};
std::atomic<bool> struck{false};
std::atomic<long> liveBlocks{0};
std::atomic<long> liveBuffers{0};
std::atomic<bool> nullOnFailure{false};

}  // namespace

namespace Faults {

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

void AddLiveBlock() noexcept {
    ++liveBlocks;
}

void RemoveLiveBlock() noexcept {
    --liveBlocks;
}

namespace {

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
    static_cast<void>(buffer.release());
    return faulty;
}

}  // namespace

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
