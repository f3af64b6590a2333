#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "salvage/Segments.h"
#include "scan/StructureReader.h"

namespace KivInspect {

/// Where reading can go on behind a damage.
struct Resumption {
    std::size_t depth = 0;        ///< so many objects are still those that were open before the damage
    std::uint32_t nextChild = 0;  ///< of the innermost of them: what comes next
    std::size_t offset = 0;       ///< where in the segment
};

/// Finds the place in the tree from the end of a file's last segment, which must end with the tree. None, when what was
/// announced before the damage does not agree with what comes behind it.
std::optional<Resumption> FindResumption(const Segment& tail, const StructureReader& before);

}  // namespace KivInspect
