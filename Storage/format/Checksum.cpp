#include "format/Checksum.h"

#include <new>

#include "format/LittleEndian.h"
#include "format/XxHash.h"

namespace KivStorage {

std::uint64_t Checksum(const std::uint8_t* bytes, std::size_t count, std::uint64_t seed) noexcept {
    const std::uint64_t checksum = XXH3_64bits_withSeed(bytes, count, seed);
    LeaveWideRegisters();
    return checksum;
}

struct PiecewiseChecksum::State {
    XXH3_state_t* const xxh = XXH3_createState();
};

PiecewiseChecksum::PiecewiseChecksum(std::uint64_t seed) : state_(new State) {
    if (state_->xxh == nullptr) {
        throw std::bad_alloc();
    }
    XXH3_64bits_reset_withSeed(state_->xxh, seed);
}

void PiecewiseChecksum::Add(const std::uint8_t* bytes, std::size_t count) noexcept {
    XXH3_64bits_update(state_->xxh, bytes, count);
    LeaveWideRegisters();
}

void PiecewiseChecksum::StartFrom(const PiecewiseChecksum& other) noexcept {
    XXH3_copyState(state_->xxh, other.state_->xxh);
}

std::uint64_t PiecewiseChecksum::Get() const noexcept {
    const std::uint64_t checksum = XXH3_64bits_digest(state_->xxh);
    LeaveWideRegisters();
    return checksum;
}

void PiecewiseChecksum::Free::operator()(State* state) const noexcept {
    XXH3_freeState(state->xxh);
    delete state;
}

std::uint64_t ChainChecksum(std::uint64_t chain, std::uint64_t blockChecksum) noexcept {
    std::uint8_t bytes[8];
    PutLittle64(bytes, blockChecksum);
    return Checksum(bytes, sizeof bytes, chain);
}

}  // namespace KivStorage
