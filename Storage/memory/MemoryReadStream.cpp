#include <KivStorage/MemoryReadStream.h>

#include <new>
#include <utility>

#include "format/Failure.h"
#include "memory/MemorySource.h"

namespace KivStorage {
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
