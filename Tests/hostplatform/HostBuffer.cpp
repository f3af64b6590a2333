#include <KivBase/Buffer.h>

#include <cstdlib>
#include <string>
#include <unordered_set>

#include "Host.h"

namespace Host {
namespace {

std::size_t buffers = 0;
std::size_t pieces = 0;
bool refusing = false;

/// No region at all: each piece comes from malloc, and goes back when it is freed or with the buffer.
class MallocBuffer final : public KivBase::Buffer {
public:
    MallocBuffer() { ++buffers; }
    ~MallocBuffer() override {
        for (void* const piece : pieces_) {
            std::free(piece);
        }
        pieces -= pieces_.size();
        --buffers;
    }

    void* Allocate(std::size_t size, std::size_t alignment) override {
        const std::size_t step = alignment < sizeof(void*) ? sizeof(void*) : alignment;
        const std::size_t rounded = (size / step + 1) * step;
        void* const piece = refusing ? nullptr : std::aligned_alloc(step, rounded);
        if (piece != nullptr) {
            pieces_.insert(piece);
            ++pieces;
            bytes_ += size;
        }
        return piece;
    }
    std::size_t BytesReserved() const override { return bytes_; }
    std::size_t BytesInUse() const override { return bytes_; }
    void Free(void* memory, std::size_t size, std::size_t) noexcept override {
        if (pieces_.erase(memory) != 0) {
            std::free(memory);
            --pieces;
            bytes_ -= size;
        }
    }

private:
    std::unordered_set<void*> pieces_;
    std::size_t bytes_ = 0;
};

}  // namespace

std::size_t GetBuffers() {
    return buffers;
}

std::size_t GetPieces() {
    return pieces;
}

void RefuseMemory(bool refuse) {
    refusing = refuse;
}

}  // namespace Host

KivBase::Buffer* KivBase::CreateBuffer(int reserved1, int reserved2, std::int32_t blockSize, bool reserved3) {
    Host::GetCalls().push_back("buffer " + std::to_string(reserved1) + " " + std::to_string(reserved2) + " " +
                               std::to_string(blockSize) + (reserved3 ? " true" : " false"));
    return new Host::MallocBuffer;
}
