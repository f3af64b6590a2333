#include "salvage/Tail.h"

#include <algorithm>

#include <KivGenerics/NodeType.h>
#include <KivStorage/ItemScanner.h>

namespace KivInspect {
namespace {

using namespace KivGenerics;
using KivStorage::ItemScanner;
using Level = StructureReader::Level;

constexpr std::uint8_t ItemLong = 0x01;
constexpr std::uint8_t ItemDouble = 0x02;
constexpr std::uint8_t ItemText = 0x04;
constexpr std::uint8_t ItemGuid = 0x05;
constexpr std::uint8_t ItemOpens = 0x07;
constexpr std::uint8_t ItemEnds = 0x08;

// Chains of items that begin at different bytes soon meet; those that begin so near to each other must have.
constexpr std::size_t StartsToTry = 32;

/// Where each item would end if one began at each byte, as far as the items from there on reach the end exactly; else 0.
std::vector<std::size_t> FollowItems(const Segment& tail) {
    std::vector<std::size_t> ends(tail.size() + 1, 0);
    ends[tail.size()] = tail.size();
    for (std::size_t at = tail.size(); at > 0;) {
        --at;
        const std::size_t size = ItemScanner::SizeWithin(tail.data() + at, tail.size() - at);
        if (size > 0 && ends[at + size] > 0) {
            ends[at] = at + size;
        }
    }
    return ends;
}

/// The first byte at which an item begins for certain: where all chains have met that begin near the first one.
std::size_t FindBoundary(const std::vector<std::size_t>& ends) {
    const std::size_t size = ends.size() - 1;
    std::size_t meeting = 0;
    while (meeting < size && ends[meeting] == 0) {
        meeting += 1;
    }
    const std::size_t lastStart = std::min(size, meeting + StartsToTry);
    for (std::size_t start = meeting + 1; start <= lastStart; ++start) {
        std::size_t other = start;
        while (ends[start] > 0 && other != meeting) {
            std::size_t& behind = other < meeting ? other : meeting;
            behind = ends[behind];
        }
    }
    return meeting;
}

/// Something that stands directly in an object: a value, or an object with all that is in it.
struct Unit {
    std::uint8_t type;
    std::size_t offset;
};

/// What comes of an object that was open before.
struct OpenObject {
    std::size_t offset = 0;  // of the first unit
    std::vector<Unit> units;
};

/// The objects that are open at the boundary, innermost first; empty when the tree does not end with the segment.
std::vector<OpenObject> ReadOpenObjects(const Segment& tail, const std::vector<std::size_t>& ends, std::size_t at) {
    std::vector<OpenObject> objects(1);
    objects.back().offset = at;
    std::size_t inside = 0;
    for (; at < tail.size(); at = ends[at]) {
        const std::uint8_t type = tail[at];
        if (type == ItemEnds && inside == 0) {
            objects.emplace_back();
            objects.back().offset = ends[at];
            continue;
        }
        if (inside == 0) {
            objects.back().units.push_back({type, at});
        }
        inside += type == ItemOpens ? 1 : 0;
        inside -= type == ItemEnds ? 1 : 0;
    }
    const bool complete = inside == 0 && objects.back().units.empty();
    objects.pop_back();
    return complete ? objects : std::vector<OpenObject>{};
}

std::uint8_t ItemOf(TypeCode type) {
    switch (type.GetKind()) {
        case NodeTypeGlobalID:
        case NodeTypeIdSet: return ItemGuid;
        case NodeTypeString:
        case NodeTypeStringSet: return ItemText;
        case NodeTypeDouble:
        case NodeTypeDoubleSet: return ItemDouble;
        default: return ItemLong;
    }
}

/// The first item of a child as it is announced, and how many units it is.
std::uint8_t FirstItemOf(TypeCode type) {
    const bool isSet = NodeTypeIntegerSet <= type.GetKind() && type.GetKind() <= NodeTypeDoubleSet;
    return type.IsObject() || isSet ? ItemOpens : ItemOf(type);
}
std::size_t UnitsOf(TypeCode type) {
    if (type.GetKind() == NodeTypeInteger64) {
        return 2;
    }
    return type.GetKind() > NodeTypeInteger64 ? static_cast<std::size_t>(type.GetExtraWords()) : 1;
}

/// How many of an object's last children its units are, and where the first of these stands.
struct Match {
    std::uint32_t children = 0;
    std::size_t offset = 0;
};

/// Compares from the end. Only the first unit may be part of a child.
std::optional<Match> MatchChildren(const Level& level, const OpenObject& object) {
    Match match;
    std::size_t left = object.units.size();
    match.offset = object.offset;
    const std::vector<KeyRun>& runs = level.header.GetRuns();
    for (auto run = runs.rbegin(); run != runs.rend() && left > 0; ++run) {
        const TypeCode type = run->type;
        const std::size_t each = UnitsOf(type);
        if (each == 0) {
            match.children += run->count;  // of these nothing stands in the data
            continue;
        }
        for (std::uint32_t i = 0; i < run->count && left > 0; ++i) {
            for (std::size_t unit = 0; unit < each; ++unit) {
                if (left == 0) {
                    return match;  // the rest of this child is lost
                }
                left -= 1;
                if (object.units[left].type != FirstItemOf(type)) {
                    return std::nullopt;
                }
            }
            match.children += 1;
            match.offset = object.units[left].offset;
        }
    }
    return left == 0 ? std::optional<Match>(match) : std::nullopt;
}

std::optional<Match> MatchElements(const Level& level, const OpenObject& object) {
    const std::uint8_t expected = ItemOf({static_cast<std::uint16_t>(level.node.kind << 8)});
    for (const Unit& unit : object.units) {
        if (unit.type != expected) {
            return std::nullopt;
        }
    }
    return Match{static_cast<std::uint32_t>(object.units.size()), object.offset};
}

std::optional<Match> MatchUnits(const Level& level, const OpenObject& object) {
    switch (level.state) {
        case Level::State::Children: return MatchChildren(level, object);
        case Level::State::SetElements: return MatchElements(level, object);
        default: return std::nullopt;
    }
}

}  // namespace

std::optional<Resumption> FindResumption(const Segment& tail, const StructureReader& before) {
    const std::vector<std::size_t> ends = FollowItems(tail);
    const std::vector<OpenObject> objects = ReadOpenObjects(tail, ends, FindBoundary(ends));
    std::optional<Resumption> found;
    // From the root inwards, as long as the objects are the same.
    for (std::size_t i = 1; i < objects.size() && i < before.GetDepth(); ++i) {
        const Level& level = before.GetLevel(i);
        const bool hasOpenChild = i + 1 < objects.size();
        const std::optional<Match> match = MatchUnits(level, objects[objects.size() - 1 - i]);
        const std::uint64_t seen = level.next + (hasOpenChild ? std::uint64_t{1} : 0);
        if (!match || seen + match->children > level.node.count) {
            break;
        }
        const std::uint32_t next = level.node.count - match->children;
        found = Resumption{i + 1, next, match->offset};
        const bool sameChild = hasOpenChild && next - 1 == level.next && i + 1 < before.GetDepth();
        if (!sameChild) {
            break;
        }
    }
    return found;
}

}  // namespace KivInspect
