#include <KivStorage/ItemScanner.h>

#include <algorithm>

#include <KivGenerics/ResultCode.h>

#include "format/Framing.h"
#include "format/LittleEndian.h"

namespace KivStorage {
namespace {

static_assert(static_cast<std::uint8_t>(ScannedItemType::Long) == ItemLong);
static_assert(static_cast<std::uint8_t>(ScannedItemType::Variant) == ItemVariant);
static_assert(static_cast<std::uint8_t>(ScannedItemType::ObjectEnds) == ItemEndObject);

constexpr std::size_t kTextHead = 5;  // type and number of units

/// The size of the item whose first bytes are given: 0 when no item begins so. Of a text whose number of units is not yet
/// there, the size up to it.
std::size_t SizeOfItem(const std::uint8_t* bytes, std::size_t there) noexcept {
    const int payload = ItemPayload(bytes[0]);
    if (payload < 0) {
        return 0;
    }
    if (bytes[0] != ItemText || there < kTextHead) {
        return 1 + static_cast<std::size_t>(payload);
    }
    const std::uint32_t units = GetLittle32(bytes + 1);
    return units <= KivGenerics::MaxStringUnits ? kTextHead + std::size_t{units} * 2 : 0;
}

}  // namespace

std::int32_t ScannedItem::GetLong() const noexcept {
    return static_cast<std::int32_t>(GetLittle32(bytes + 1));
}
std::uint16_t ScannedItem::GetTag() const noexcept {
    return GetLittle16(bytes + 1);
}
std::uint64_t ScannedItem::GetBits() const noexcept {
    return GetLittle64(bytes + 1);
}
std::uint32_t ScannedItem::GetUnits() const noexcept {
    return GetLittle32(bytes + 1);
}
char16_t ScannedItem::GetUnit(std::uint32_t i) const noexcept {
    return static_cast<char16_t>(GetLittle16(bytes + kTextHead + std::size_t{i} * 2));
}

void ItemScanner::Feed(const std::uint8_t* bytes, std::size_t size, std::uint64_t offset) noexcept {
    bytes_ = bytes;
    size_ = size;
    next_ = 0;
    offset_ = offset;
}

/// Adds bytes of the run to what is collected until there are `size`; false when the run has fewer.
bool ItemScanner::Collect(std::size_t size) {
    const std::size_t part = std::min(size - pending_.size(), GetRest());
    pending_.insert(pending_.end(), bytes_ + next_, bytes_ + next_ + part);
    next_ += part;
    return pending_.size() == size;
}

std::size_t ItemScanner::SizeWithin(const std::uint8_t* bytes, std::size_t size) noexcept {
    const std::size_t needed = size > 0 ? SizeOfItem(bytes, size) : 0;
    return needed > size || (needed == kTextHead && bytes[0] == ItemText && size < kTextHead) ? 0 : needed;
}

/// Hands out an item that lies in the run as a whole.
bool ItemScanner::TakeInRun(ScannedItem& item) {
    const std::size_t size = SizeWithin(bytes_ + next_, GetRest());
    if (size == 0) {
        return false;
    }
    Hand(item, bytes_ + next_, size, offset_ + next_);
    next_ += size;
    return true;
}

/// Collects an item that goes on in the next run; of a text first its number of units, then these.
ItemScanner::Step ItemScanner::Gather(ScannedItem& item) {
    if (pending_.empty()) {
        pendingOffset_ = offset_ + next_;
    }
    while (true) {
        const std::size_t wanted = pending_.empty() ? 1 : SizeOfItem(pending_.data(), pending_.size());
        if (wanted == 0) {
            return Step::Unknown;
        }
        if (wanted == pending_.size()) {
            break;
        }
        if (!Collect(wanted)) {
            return Step::RunEnds;
        }
    }
    handed_ = true;
    Hand(item, pending_.data(), pending_.size(), pendingOffset_);
    return Step::Item;
}

void ItemScanner::Hand(ScannedItem& item, const std::uint8_t* bytes, std::size_t size, std::uint64_t offset) noexcept {
    item.type = static_cast<ScannedItemType>(bytes[0]);
    item.offset = offset;
    item.position = position_;
    item.bytes = bytes;
    item.size = size;
    position_ += size;
}

ItemScanner::Step ItemScanner::Next(ScannedItem& item) {
    if (handed_) {
        pending_.clear();
        handed_ = false;
    }
    if (!pending_.empty()) {
        return Gather(item);
    }
    if (GetRest() == 0) {
        return Step::RunEnds;
    }
    if (TakeInRun(item)) {
        return Step::Item;
    }
    return SizeOfItem(bytes_ + next_, GetRest()) == 0 ? Step::Unknown : Gather(item);
}

}  // namespace KivStorage
