#include <algorithm>
#include <deque>

#include "model/Model.h"

using namespace KivGenerics;

namespace Model {
namespace {

constexpr unsigned kSelf = 0x100000;
constexpr unsigned kChildren = 0x200000;
constexpr unsigned kDeeper = 0x400000;
constexpr unsigned kUpToPersistent = 0x01000000;
constexpr unsigned kUpToTransient = 0x02000000;
constexpr unsigned kUpToTemporary = 0x04000000;
constexpr unsigned kUpTo = kUpToPersistent | kUpToTransient | kUpToTemporary;
constexpr unsigned kSee = 0xF0000000;

unsigned Complete(unsigned flags, int tag) {
    flags |= (flags & 0xFFFF) == 0 ? 0xFFFF : 0;
    if (tag != 0 && tag != 1) {
        flags &= 0xFFFF0000 | 1U << (NodeTypeMap - 1);
    }
    flags |= (flags & 0x30000) == 0 ? 0x10000 : 0;
    flags |= (flags & (kSelf | kChildren | kDeeper)) == 0 ? kChildren | kDeeper : 0;
    flags |= (flags & (kUpTo | kSee)) == 0 ? kSee : 0;
    flags |= (flags & kUpToTemporary) != 0 ? kUpToTransient : 0;
    flags |= (flags & kUpToTransient) != 0 ? kUpToPersistent : 0;
    return flags;
}

bool Passes(unsigned flags, int temporality) {
    switch (temporality) {
        case 1: return (flags & (kUpToPersistent | 0x10000000)) != 0;
        case 2: return (flags & (kUpToPersistent | 0x20000000)) != 0;
        case 3: return (flags & (kUpToTransient | 0x40000000)) != 0;
        case 4: return (flags & (kUpToTemporary | 0x80000000)) != 0;
        default: return false;
    }
}

bool IsShown(const Item& item, int tag, unsigned flags) {
    const bool byTemporality = (item.IsMap() && (flags & kUpTo) != 0) || Passes(flags, item.temporality);
    const bool byTag = !item.IsMap() || tag == 0 || tag == item.tag;
    return (flags & kSelf) != 0 && (flags & 1U << (item.type - 1)) != 0 && byTemporality && byTag;
}

int WalkOn(Item& item, const See& see, int tag, unsigned flags);

// A map's child beyond the slots removes itself, which counts once more than its map removing it.
void RemoveSeen(Item& composite, Item& child) {
    if (composite.IsMap() && child.index >= composite.slots) {
        Remove(child);
    } else {
        RemoveChild(composite, child.index);
    }
}

bool WalkThroughChildren(Item& item, const See& see, int tag, unsigned flags) {
    unsigned below = flags & ~(kSelf | kChildren);
    below |= (flags & kChildren) != 0 ? kSelf : 0;
    below |= (flags & kDeeper) != 0 ? kChildren : 0;
    int last = -1;
    while (Item* const child = FindAfter(item, last)) {
        last = child->index;
        const int code = WalkOn(*child, see, tag, below);
        if (code == VisitStop) {
            return false;
        }
        if (code == VisitRemove) {
            RemoveSeen(item, *child);
            last -= item.IsVector() ? 1 : 0;
        }
    }
    return true;
}

int WalkOn(Item& item, const See& see, int tag, unsigned flags) {
    const bool shown = IsShown(item, tag, flags);
    if (!item.IsComposite()) {
        return shown ? see(item, false) : VisitContinue;
    }
    if ((flags & kUpTo) != 0 && !Passes(flags, item.derived)) {
        return VisitContinue;
    }
    if (shown && (flags & 0x10000) != 0) {
        const int code = see(item, false);
        if (code != VisitContinue) {
            return code == VisitSkipChildren ? VisitContinue : code;
        }
    }
    if ((flags & (kChildren | kDeeper)) != 0 && !WalkThroughChildren(item, see, tag, flags)) {
        return VisitStop;
    }
    if (shown && (flags & 0x20000) != 0) {
        const int code = see(item, true);
        return code == VisitSkipChildren ? VisitContinue : code;
    }
    return VisitContinue;
}

template <class Format>
Text Join(const Item& item, Format format) {
    Text key;
    for (const Item* each = &item; each->parent != nullptr; each = each->parent) {
        key = format(*each) + u":" + key;
    }
    return key;
}

Text Digits(std::uint32_t number, std::uint32_t base) {
    Text digits;
    do {
        digits += u"0123456789abcdef"[number % base];
        number /= base;
    } while (number != 0);
    std::reverse(digits.begin(), digits.end());
    return digits;
}

}  // namespace

void Iterate(Item& start, const See& see, int tag, unsigned flags) {
    if (WalkOn(start, see, tag, Complete(flags, tag)) == VisitRemove) {
        Remove(start);
    }
}

void WalkByLevels(Item& start, const std::function<bool(Item&)>& see) {
    std::deque<Item*> queue = {&start};
    while (!queue.empty()) {
        Item& item = *queue.front();
        queue.pop_front();
        if (see(item)) {
            Remove(item);
            continue;
        }
        for (Item* child = FindAfter(item, -1); child != nullptr; child = FindAfter(item, child->index)) {
            queue.push_back(child);
        }
    }
}

Text GetKey(const Item& item) {
    return Join(item, [](const Item& each) { return Digits(static_cast<std::uint32_t>(each.index), 10); });
}

Text GetTagKey(const Item& item) {
    return Join(item, [](const Item& each) { return Digits(static_cast<std::uint32_t>(each.tag), 16); });
}

}  // namespace Model
