#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include <KivStorage/Export.h>
#include <KivStorage/FileScanner.h>

namespace KivStorage {

/// A block put right again.
struct RepairedBlock {
    bool found = false;
    std::vector<std::uint8_t> bytes;  ///< the whole block, as it was written
    std::size_t changed = 0;          ///< where in it the wrong byte stood
};

/// What is called now and then: how many of the block's bytes have been tried.
using RepairProgress = std::function<void(std::size_t tried)>;

/// Looks for the one change, of a bit, or in small blocks of a byte, with which a damaged stretch becomes the block that its
/// checksum belongs to. A match cannot be a coincidence. Takes up to a few seconds. Throws std::bad_alloc.
KIV_STORAGE_EXPORT RepairedBlock RepairBlock(const ScannedPart& part, const RepairProgress& progress = {});

}  // namespace KivStorage
