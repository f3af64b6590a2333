#include "salvage/LostList.h"

#include <algorithm>

namespace KivInspect {

using State = StructureReader::Level::State;

void LostList::AddBelow(std::size_t depth) {
    // What is innermost comes first in the tree's order.
    const std::size_t end = std::max<std::size_t>(1, depth);
    for (std::size_t i = structure_.GetDepth(); i > end;) {
        --i;
        const StructureReader::Level& level = structure_.GetLevel(i);
        if (level.state == State::Header) {
            const std::string key = structure_.GetKeyOfLevel(i + 1);
            lost_.push_back({key, key, 1, "with everything below it"});
        } else if (level.state == State::SetElements || level.state == State::SetCount) {
            const std::string key = structure_.GetKeyOfLevel(i + 1);
            const std::uint32_t left = level.node.count - level.next;
            lost_.push_back(
                {key, key, 1, left > 0 ? std::to_string(left) + " elements of the set" : "the set's elements"});
        } else if (level.state == State::Children) {
            AddChildren(i, level.node.count);
        }
    }
}

void LostList::AddChildren(std::size_t i, std::uint32_t end) {
    const StructureReader::Level& level = structure_.GetLevel(i);
    // Of a child that is open something has come; what of it has not is told where it is.
    const std::uint32_t from = level.next + (i + 1 < structure_.GetDepth() ? 1 : 0);
    const std::string parent = structure_.GetKeyOfLevel(i + 1);
    std::uint32_t begin = 0;
    for (const KeyRun& run : level.header.GetRuns()) {
        const std::uint32_t first = std::max(begin, from);
        const std::uint32_t last = std::min(begin + run.count, end);
        if (first < last) {
            AddRange(parent, run.first + (first - begin), last - first);
        }
        begin += run.count;
    }
}

/// Neighbours that are announced unlike are one range all the same.
void LostList::AddRange(const std::string& parent, std::uint32_t first, std::uint32_t count) {
    const auto key = [&parent](std::uint32_t index) { return parent + std::to_string(index) + ':'; };
    if (!lost_.empty() && first > 0 && lost_.back().last == key(first - 1) && lost_.back().note.empty()) {
        lost_.back().last = key(first + count - 1);
        lost_.back().count += count;
    } else {
        lost_.push_back({key(first), key(first + count - 1), count, {}});
    }
}

}  // namespace KivInspect
