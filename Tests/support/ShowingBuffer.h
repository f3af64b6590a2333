#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <KivBase/Buffer.h>

namespace KivTests {

/// One block of 4 KiB after the other, each shown.
class ShowingBuffer final : public KivBase::Buffer {
public:
    void* Allocate(std::size_t size, std::size_t) override {
        const std::size_t rounded = (size + 7) / 8 * 8;
        if (static_cast<std::size_t>(end_ - cursor_) < rounded) {
            blocks_.push_back(std::make_unique<char[]>(rounded + kBlock));
            cursor_ = blocks_.back().get();
            end_ = cursor_ + rounded + kBlock;
        }
        void* const memory = cursor_;
        cursor_ += rounded;
        return memory;
    }
    std::size_t BytesReserved() const override { return blocks_.size() * kBlock; }
    std::size_t BytesInUse() const override { return BytesReserved(); }
    void Free(void*, std::size_t, std::size_t) noexcept override {}

private:
    static constexpr std::size_t kBlock = 4096;
    std::vector<std::unique_ptr<char[]>> blocks_;
};

/// While it lives, every buffer made is one that shows its free memory, as the default one does but with the sanitizers.
class ShowingBuffers {
public:
    ShowingBuffers() : former_(KivBase::SetBufferFactory(Make)) {}
    ~ShowingBuffers() { KivBase::SetBufferFactory(former_); }
    ShowingBuffers(const ShowingBuffers&) = delete;
    ShowingBuffers& operator=(const ShowingBuffers&) = delete;

private:
    static KivBase::Buffer* Make(int, int, std::int32_t, bool) { return new ShowingBuffer; }

    KivBase::BufferFactory former_;
};

}  // namespace KivTests
