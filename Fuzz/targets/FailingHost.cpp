#include "targets/FailingHost.h"

#include <memory>
#include <new>

#include <KivGenerics/ResultCode.h>

namespace KivFuzz {
namespace {

using namespace KivGenerics;

std::int32_t TakeCode(Input& input) {
    constexpr std::int32_t kCodes[] = {ResultNoObject,        ResultNotImplemented,
                                       ResultUnexpected,      ResultOutOfMemory,
                                       ArchiveTypeMismatch,   ArchiveStringTooLong,
                                       ArchiveNestingTooDeep, 0x7FFFFFFF};
    const std::uint8_t choice = input.TakeByte();
    return choice < 0xF0 ? kCodes[choice % 8] : input.TakeLong();
}

Fault* bufferFault = nullptr;

class FailingBuffer final : public KivBase::Buffer {
public:
    explicit FailingBuffer(KivBase::Buffer* inner) noexcept : inner_(inner) {}

    void* Allocate(std::size_t size, std::size_t alignment) override {
        return bufferFault != nullptr && bufferFault->Next() != 0 ? nullptr : inner_->Allocate(size, alignment);
    }
    std::size_t BytesReserved() const override { return inner_->BytesReserved(); }
    std::size_t BytesInUse() const override { return inner_->BytesInUse(); }
    void Free(void* memory, std::size_t size, std::size_t alignment) noexcept override {
        inner_->Free(memory, size, alignment);
    }

private:
    std::unique_ptr<KivBase::Buffer> inner_;
};

KivBase::Buffer* MakeFailingBuffer(int reserved1, int reserved2, std::int32_t blockSize, bool reserved3) {
    if (bufferFault != nullptr && bufferFault->Next() != 0) {
        throw std::bad_alloc();
    }
    return new FailingBuffer(KivBase::CreateDefaultBuffer(reserved1, reserved2, blockSize, reserved3));
}

}  // namespace

Fault::Fault(Input& input) : at_(0), code_(0), forGood_(false) {
    const std::uint8_t at = input.TakeByte();
    at_ = at < 0xFF ? at : static_cast<std::uint32_t>(input.TakeShort());
    code_ = TakeCode(input);
    forGood_ = input.TakeByte() % 2 == 1;
}

std::int32_t Fault::Next() noexcept {
    const std::uint32_t call = calls_++;
    return call == at_ || (forGood_ && call > at_) ? code_ : 0;
}

FailingBuffers::FailingBuffers(Fault& fault) noexcept : former_(KivBase::SetBufferFactory(&MakeFailingBuffer)) {
    bufferFault = &fault;
}

FailingBuffers::~FailingBuffers() {
    KivBase::SetBufferFactory(former_);
    bufferFault = nullptr;
}

}  // namespace KivFuzz
