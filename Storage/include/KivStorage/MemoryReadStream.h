#pragma once

#include <cstddef>

#include <KivBase/ReturnPtrI.h>
#include <KivStorage/ReadStream.h>

namespace KivStorage {

/// Reads what a MemoryWriteStream, or a file, holds.
class KIV_STORAGE_EXPORT MemoryReadStream final : public ReadStream {
public:
    /// A new stream, held once, over bytes that must stay where they are as long as it lives; empty when there is no memory
    /// for it. Data that are none of ours show with the first read.
    static KivBase::ReturnPtrI<MemoryReadStream> Create(const void* bytes, std::size_t count,
                                                        const ReadLimits& limits = {}) noexcept;

private:
    MemoryReadStream(std::unique_ptr<ByteSource> source, const ReadLimits& limits);
    ~MemoryReadStream() override;
};

}  // namespace KivStorage
