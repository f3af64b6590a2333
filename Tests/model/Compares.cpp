#include <algorithm>
#include <limits>

#include <KivGenerics/IterateFlags.h>

#include "model/Model.h"

using namespace KivGenerics;

namespace Model {
namespace {

int CompareVectors(Item& mine, Item& theirs, int t) {
    int next = 0;
    for (int i = 0; Item* const child = Get(mine, i); ++i) {
        if (GetDerived(*child) > t) {
            continue;
        }
        Item* other = Get(theirs, next++);
        while (other != nullptr && GetDerived(*other) > t && next < CountChildren(theirs)) {
            other = Get(theirs, next++);
        }
        if (const int order = Compare(*child, other, t, false)) {
            return order;
        }
    }
    return 0;
}

Item* FindCountedAfter(Item& map, int index, int t) {
    Item* child = FindAfter(map, index);
    while (child != nullptr && GetDerived(*child) > t) {
        child = FindAfter(map, child->index);
    }
    return child;
}

int CompareMaps(Item& mine, Item& theirs, int t) {
    int result = 0;
    int last = -1;
    const auto see = [&](Item& other, bool) {
        Item* const child = FindCountedAfter(mine, last, t);
        if (child == nullptr) {
            result = -1;
            return VisitStop;
        }
        last = child->index;
        result = child->index - other.index;
        if (result == 0) {
            result = Compare(*child, &other, t, false);
        }
        return result != 0 ? VisitStop : VisitSkipChildren;
    };
    const int upTo = t == 2 ? IterateUpToPersistent : (t == 3 ? IterateUpToTransient : IterateUpToTemporary);
    Iterate(theirs, see, 0, static_cast<unsigned>(upTo));
    return result;
}

}  // namespace

int Compare(Item& mine, Item* theirs, int t, bool recalculate) {
    if (theirs == nullptr) {
        throw Refusal{u"Can't compare NULL node!"};
    }
    if (recalculate) {
        Update(*mine.tree);
        Update(*theirs->tree);
    }
    if (GetDerived(mine) > t) {
        return 0;
    }
    const std::int64_t tags = std::int64_t{mine.tag} - theirs->tag;
    if (tags != 0) {
        return static_cast<int>(
            std::clamp<std::int64_t>(tags, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    }
    if (mine.type != theirs->type) {
        return mine.type - theirs->type;
    }
    if (!mine.IsComposite()) {
        return CompareValues(mine, *theirs);
    }
    if (const int sizes = GetSize(mine, t) - GetSize(*theirs, t)) {
        return sizes;
    }
    return mine.IsVector() ? CompareVectors(mine, *theirs, t) : CompareMaps(mine, *theirs, t);
}

}  // namespace Model
