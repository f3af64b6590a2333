#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <KivInspect/Salvage.h>

#include "scan/StructureReader.h"

namespace KivInspect {

/// Lists what had been announced where reading broke off.
class LostList {
public:
    LostList(const StructureReader& structure, std::vector<LostNodes>& lost) : structure_(structure), lost_(lost) {}

    /// What was still to come in the open objects below the first `depth`.
    void AddBelow(std::size_t depth);
    /// The children of an open object that had not come, up to the one with the number `end`.
    void AddChildren(std::size_t level, std::uint32_t end);

private:
    void AddRange(const std::string& parent, std::uint32_t first, std::uint32_t count);

    const StructureReader& structure_;
    std::vector<LostNodes>& lost_;
};

}  // namespace KivInspect
