#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace KivStorage {

/// XXH3-64 with a seed.
std::uint64_t Checksum(const std::uint8_t* bytes, std::size_t count, std::uint64_t seed) noexcept;

/// The same checksum of bytes that come in pieces.
class PiecewiseChecksum {
public:
    /// Throws std::bad_alloc.
    explicit PiecewiseChecksum(std::uint64_t seed);

    void Add(const std::uint8_t* bytes, std::size_t count) noexcept;
    /// Goes on where another one stands.
    void StartFrom(const PiecewiseChecksum& other) noexcept;
    std::uint64_t Get() const noexcept;

private:
    struct State;
    struct Free {
        void operator()(State* state) const noexcept;
    };

    std::unique_ptr<State, Free> state_;
};

/// The running checksum over the checksums of all blocks so far: `chain` is that of the blocks before, 0 for none.
std::uint64_t ChainChecksum(std::uint64_t chain, std::uint64_t blockChecksum) noexcept;

}  // namespace KivStorage
