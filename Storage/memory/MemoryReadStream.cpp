#include <KivStorage/MemoryReadStream.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "format/ByteSink.h"
#include "format/Failure.h"

namespace KivStorage {
namespace {

/// Bytes that the caller keeps.
class MemorySource final : public ByteSource {
public:
    MemorySource(const std::uint8_t* bytes, std::size_t count) noexcept : bytes_(bytes), count_(count) {}

    Result Read(std::uint8_t* to, std::size_t count, std::size_t& got) override {
        got = std::min(count, count_ - next_);
        if (got > 0) {
            std::memcpy(to, bytes_ + next_, got);
            next_ += got;
        }
        return {};
    }
    std::uint64_t GetSize() const override { return count_; }
    std::string GetPlace() const override { return "memory"; }

private:
    const std::uint8_t* bytes_;
    std::size_t count_;
    std::size_t next_ = 0;
};

}  // namespace

MemoryReadStream::MemoryReadStream(std::unique_ptr<ByteSource> source, const ReadLimits& limits)
    : ReadStream(std::move(source), limits) {}
MemoryReadStream::~MemoryReadStream() = default;

KivBase::ReturnPtrI<MemoryReadStream> MemoryReadStream::Create(const void* bytes, std::size_t count,
                                                               const ReadLimits& limits) noexcept {
    try {
        const std::size_t usable = bytes != nullptr ? count : 0;
        auto source = std::make_unique<MemorySource>(static_cast<const std::uint8_t*>(bytes), usable);
        KivBase::ReturnPtrI<MemoryReadStream> stream(new MemoryReadStream(std::move(source), limits));
        if (bytes == nullptr && count > 0) {
            stream->SetError(FailQuietly(StorageNullPointer, "memory"));
        }
        return stream;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

}  // namespace KivStorage
