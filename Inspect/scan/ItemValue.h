#pragma once

#include <cstdint>
#include <string>

#include <KivBase/Guid.h>
#include <KivBase/WString.h>
#include <KivStorage/ItemScanner.h>

namespace KivInspect {

// What the items of saved data hold.

double GetDouble(const KivStorage::ScannedItem& item) noexcept;
GUID GetGuid(const KivStorage::ScannedItem& item) noexcept;
KivBase::WString GetText(const KivStorage::ScannedItem& item);
/// A 64-bit number of its two halves, as loading puts it together: both count with their sign.
std::int64_t JoinHalves(std::int32_t low, std::int32_t high) noexcept;

/// Appends an item's value: the exact text of a number or a GUID, a text in quotes.
void AppendItem(std::string& text, const KivStorage::ScannedItem& item);

}  // namespace KivInspect
