#pragma once

#include <cstdint>

#include "persistence/ArchiveDecoder.h"
#include "persistence/SlotKeys.h"

namespace KivGenerics {

/// Reads how many keys a map of this tag has, and all of them: they come before all values. Each costs at least a byte of what is
/// read, and the count reserves nothing. Returns the result of the last word, or the first failure. Throws std::bad_alloc.
std::int32_t ReadSlotKeys(ArchiveDecoder& decoder, SemanticTag tag, bool longCount, SlotKeys& keys);

}  // namespace KivGenerics
