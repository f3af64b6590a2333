#pragma once

#include <cstdint>

#include "persistence/ArchiveWriter.h"

namespace KivGenerics {

/// Packs small numbers, most significant byte first, into 32-bit words of an archive.
class BytePacker {
public:
    explicit BytePacker(const ArchiveWriter& out) noexcept : out_(out) {}

    /// Appends the `count` low bytes, 1 to 4, of a number. Every word that fills is written.
    void Put(std::uint32_t value, int count) {
        const std::uint64_t mask = (std::uint64_t{1} << (8 * count)) - 1;
        bytes_ = bytes_ << (8 * count) | (value & mask);
        used_ += count;
        if (used_ >= 4) {
            used_ -= 4;
            status_ = out_.WriteLong(static_cast<std::int32_t>(bytes_ >> (8 * used_) & 0xFFFFFFFF));
        }
    }

    /// Writes the word that is not yet full, if there is one, filled up with zeros. Returns that write's result, or, where
    /// nothing was left, the result of the last word written before.
    // kept-on-purpose: packer-late-failure
    std::int32_t Flush() {
        if (used_ > 0) {
            Put(0, 4 - used_);
        }
        return status_;
    }

private:
    std::int32_t status_ = 0;
    std::int32_t used_ = 0;  // bytes not yet written, 0 to 3
    std::uint64_t bytes_ = 0;  // the last of them lowest; above them stands what was written before
    ArchiveWriter out_;
};

}  // namespace KivGenerics
