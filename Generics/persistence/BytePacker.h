#pragma once

#include <cstdint>

#include <KivGenerics/Forward.h>

namespace KivGenerics {

/// Packs small numbers, most significant byte first, into 32-bit words of an archive.
class BytePacker {
public:
    explicit BytePacker(KivCOMShared::COrvWriteArchive* archive) noexcept : archive_(archive) {}

    /// Appends the `count` low bytes, 1, 2 or 4, of a number. Every word that fills is written.
    void Put(std::uint32_t value, int count);

    /// Writes the word that is not yet full, if there is one, filled up with zeros. Returns that write's result, or, where
    /// nothing was left, the result of the last word written before.
    std::int32_t Flush();

private:
    std::int32_t status_ = 0;
    std::uint32_t accumulator_ = 0;
    std::int32_t used_ = 0;  // bytes in the accumulator, 0 to 3
    KivCOMShared::COrvWriteArchive* archive_;
};

}  // namespace KivGenerics
