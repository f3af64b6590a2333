#include "targets/PeakBuffer.h"

#include <algorithm>
#include <cstdint>
#include <memory>

namespace KivFuzz {
namespace {

/// What all buffers hold at present, and held at most.
struct Totals {
    std::size_t reserved = 0;
    std::size_t inUse = 0;
    std::size_t mostReserved = 0;
    std::size_t mostInUse = 0;
    std::size_t allocations = 0;
};

Totals totals;

class PeakBuffer final : public KivBase::Buffer {
public:
    explicit PeakBuffer(KivBase::Buffer* inner) noexcept : inner_(inner) {}
    ~PeakBuffer() override {
        totals.reserved -= reserved_;
        totals.inUse -= inUse_;
    }

    void* Allocate(std::size_t size, std::size_t alignment) override {
        void* const memory = inner_->Allocate(size, alignment);
        ++totals.allocations;
        Count();
        return memory;
    }
    std::size_t BytesReserved() const override { return inner_->BytesReserved(); }
    std::size_t BytesInUse() const override { return inner_->BytesInUse(); }
    void Free(void* memory, std::size_t size, std::size_t alignment) noexcept override {
        inner_->Free(memory, size, alignment);
        Count();
    }

private:
    /// Brings what this buffer adds to the totals up to date.
    void Count() noexcept {
        const std::size_t reserved = inner_->BytesReserved();
        const std::size_t inUse = inner_->BytesInUse();
        totals.reserved = totals.reserved - reserved_ + reserved;
        totals.inUse = totals.inUse - inUse_ + inUse;
        reserved_ = reserved;
        inUse_ = inUse;
        totals.mostReserved = std::max(totals.mostReserved, totals.reserved);
        totals.mostInUse = std::max(totals.mostInUse, totals.inUse);
    }

    std::unique_ptr<KivBase::Buffer> inner_;
    std::size_t reserved_ = 0;
    std::size_t inUse_ = 0;
};

KivBase::Buffer* MakePeakBuffer(int reserved1, int reserved2, std::int32_t blockSize, bool reserved3) {
    return new PeakBuffer(KivBase::CreateDefaultBuffer(reserved1, reserved2, blockSize, reserved3));
}

}  // namespace

PeakBuffers::PeakBuffers() noexcept {
    totals = {};
    former_ = KivBase::SetBufferFactory(&MakePeakBuffer);
}

PeakBuffers::~PeakBuffers() {
    KivBase::SetBufferFactory(former_);
}

std::size_t PeakBuffers::GetReserved() const noexcept {
    return totals.mostReserved;
}

std::size_t PeakBuffers::GetInUse() const noexcept {
    return totals.mostInUse;
}

std::size_t PeakBuffers::GetAllocations() const noexcept {
    return totals.allocations;
}

}  // namespace KivFuzz
