#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <tuple>
#include <vector>

#include <KivBase/Buffer.h>

namespace KivTests {

/// What the buffers of a TestBuffers do and have seen.
struct BufferLog {
    enum class Refusal { Throw, AnswerNull };

    std::vector<std::tuple<int, int, std::int32_t, bool>> created;  ///< the arguments of every CreateBuffer
    int alive = 0;                                                  ///< buffers made and not deleted
    int allocations = 0;                                            ///< requests that were served
    int served = -1;                                                ///< how many more requests are served; -1: all
    Refusal refusal = Refusal::Throw;                               ///< what a request that is not served gets
    bool refuseBuffers = false;                                     ///< CreateBuffer itself is refused, likewise
};

/// While it lives, every buffer made is one that notes and refuses what its log says.
class TestBuffers {
public:
    TestBuffers() {
        Current() = this;
        former_ = KivBase::SetBufferFactory(&Make);
    }
    ~TestBuffers() {
        KivBase::SetBufferFactory(former_);
        Current() = nullptr;
    }
    TestBuffers(const TestBuffers&) = delete;
    TestBuffers& operator=(const TestBuffers&) = delete;

    BufferLog log;

    /// The next `count` requests are served, no further one until Recover.
    void FailAfter(int count, BufferLog::Refusal refusal) {
        log.served = count;
        log.refusal = refusal;
    }
    void Recover() { log.served = -1; }

private:
    class Noting final : public KivBase::Buffer {
    public:
        Noting(BufferLog& log, KivBase::Buffer* inner) : log_(log), inner_(inner) { ++log_.alive; }
        ~Noting() override { --log_.alive; }

        void* Allocate(std::size_t size, std::size_t alignment) override {
            if (log_.served == 0) {
                return Refuse(log_);
            }
            log_.served -= log_.served > 0 ? 1 : 0;
            ++log_.allocations;
            return inner_->Allocate(size, alignment);
        }
        std::size_t BytesReserved() const override { return inner_->BytesReserved(); }
        std::size_t BytesInUse() const override { return inner_->BytesInUse(); }
        void Free(void* memory, std::size_t size, std::size_t alignment) noexcept override {
            inner_->Free(memory, size, alignment);
        }

    private:
        BufferLog& log_;
        std::unique_ptr<KivBase::Buffer> inner_;
    };

    static void* Refuse(const BufferLog& log) {
        if (log.refusal == BufferLog::Refusal::Throw) {
            throw std::bad_alloc();
        }
        return nullptr;
    }

    static KivBase::Buffer* Make(int first, int second, std::int32_t blockSize, bool last) {
        BufferLog& log = Current()->log;
        log.created.emplace_back(first, second, blockSize, last);
        if (log.refuseBuffers) {
            return static_cast<KivBase::Buffer*>(Refuse(log));
        }
        return new Noting(log, KivBase::CreateDefaultBuffer(first, second, blockSize, last));
    }

    static TestBuffers*& Current() {
        static TestBuffers* current = nullptr;
        return current;
    }

    KivBase::BufferFactory former_ = nullptr;
};

}  // namespace KivTests
