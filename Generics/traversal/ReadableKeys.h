#pragma once

#include <cstdint>

#include <KivGenerics/SemanticTag.h>

namespace KivGenerics {

/// The number of the message that names a semantic tag in the host's resource bundle; 0 for a tag that has none.
std::uint32_t GetMessageNumber(SemanticTag tag) noexcept;

}  // namespace KivGenerics
