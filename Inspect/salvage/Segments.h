#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <KivInspect/Salvage.h>

namespace KivInspect {

/// The bytes of items of blocks that follow each other without a damage between them.
using Segment = std::vector<std::uint8_t>;

/// What is left of a file.
struct Segments {
    KivStorage::Result result;  ///< the first damage that could not be put right
    std::vector<Segment> segments;  ///< between every two of them something is missing; the first may be empty
    std::vector<Repair> repairs;
};

Segments ReadSegments(KivStorage::FileScanner& scanner, const SalvageOptions& options);

}  // namespace KivInspect
