#pragma once

#include <cstddef>

#include <KivBase/Buffer.h>

namespace KivFuzz {

/// While it lives, counts what the buffers of all forests hold. One at a time.
class PeakBuffers {
public:
    PeakBuffers() noexcept;
    ~PeakBuffers();
    PeakBuffers(const PeakBuffers&) = delete;
    PeakBuffers& operator=(const PeakBuffers&) = delete;

    /// The most bytes that were reserved from the system at a time, and the most that were in use.
    std::size_t GetReserved() const noexcept;
    std::size_t GetInUse() const noexcept;
    /// How many requests the buffers have served.
    std::size_t GetAllocations() const noexcept;

private:
    KivBase::BufferFactory former_;
};

}  // namespace KivFuzz
