#include "persistence/BytePacker.h"

#include <KivCOMShared/COrvWriteArchive.h>

namespace KivGenerics {

void BytePacker::Put(std::uint32_t value, int count) {
    for (int i = count - 1; i >= 0; --i) {
        const std::uint32_t byte = value >> (8 * i) & 0xFF;
        accumulator_ |= byte << (24 - 8 * used_);
        if (++used_ == 4) {
            status_ = archive_->WriteLong(static_cast<std::int32_t>(accumulator_));
            accumulator_ = 0;
            used_ = 0;
        }
    }
}

// kept-on-purpose: packer-late-failure
std::int32_t BytePacker::Flush() {
    if (used_ > 0) {
        status_ = archive_->WriteLong(static_cast<std::int32_t>(accumulator_));
        accumulator_ = 0;
        used_ = 0;
    }
    return status_;
}

}  // namespace KivGenerics
