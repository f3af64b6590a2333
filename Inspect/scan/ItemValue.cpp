#include "scan/ItemValue.h"

#include <cstring>

#include <KivInspect/ValueText.h>

namespace KivInspect {

using KivStorage::ScannedItem;
using KivStorage::ScannedItemType;

namespace {

std::uint16_t Word16(const std::uint8_t* bytes) noexcept {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

}  // namespace

double GetDouble(const ScannedItem& item) noexcept {
    const std::uint64_t bits = item.GetBits();
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

GUID GetGuid(const ScannedItem& item) noexcept {
    GUID id{};
    const std::uint8_t* const bytes = item.bytes + 1;
    id.Data1 = static_cast<decltype(id.Data1)>(Word16(bytes) | static_cast<std::uint32_t>(Word16(bytes + 2)) << 16);
    id.Data2 = Word16(bytes + 4);
    id.Data3 = Word16(bytes + 6);
    std::memcpy(id.Data4, bytes + 8, 8);
    return id;
}

KivBase::WString GetText(const ScannedItem& item) {
    KivBase::WString text(item.GetUnits(), u'\0');
    for (std::uint32_t i = 0; i < item.GetUnits(); ++i) {
        text[i] = item.GetUnit(i);
    }
    return text;
}

std::int64_t JoinHalves(std::int32_t low, std::int32_t high) noexcept {
    constexpr std::uint64_t ones = 0xFFFFFFFF;
    // A negative lower half takes one from the upper one.
    const std::uint64_t upper = (static_cast<std::uint32_t>(high) + (low < 0 ? ones : 0)) & ones;
    return static_cast<std::int64_t>(upper << 32 | static_cast<std::uint32_t>(low));
}

void AppendItem(std::string& text, const ScannedItem& item) {
    switch (item.type) {
        case ScannedItemType::Long: AppendValue(text, item.GetLong()); break;
        case ScannedItemType::Double: AppendValue(text, GetDouble(item)); break;
        case ScannedItemType::Short: AppendValue(text, static_cast<std::int32_t>(item.GetTag())); break;
        case ScannedItemType::Text: {
            const KivBase::WString units = GetText(item);
            AppendQuoted(text, units.data(), units.size());
            break;
        }
        case ScannedItemType::Guid: AppendValue(text, GetGuid(item)); break;
        case ScannedItemType::Variant: text += "of type " + std::to_string(item.GetTag()); break;
        case ScannedItemType::ObjectOpens: text += "tag " + std::to_string(item.GetTag()); break;
        case ScannedItemType::ObjectEnds: break;
    }
}

}  // namespace KivInspect
