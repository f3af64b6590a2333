#pragma once

#include <string>

#include <KivStorage/ItemScanner.h>

#include "scan/StructureReader.h"

namespace KivInspect {

/// What an item means, in words. `structure` has just taken it; `firstHalf` is the long before the last half of a 64-bit
/// integer.
std::string Describe(const KivStorage::ScannedItem& item, const Meaning& meaning, const StructureReader& structure,
                     std::int32_t firstHalf);

/// What an item is, whatever it means: "a long, 42".
std::string DescribeAlone(const KivStorage::ScannedItem& item);

}  // namespace KivInspect
