#pragma once

#include <KivGenerics/SemanticTag.h>

namespace KivGenerics {

/// The number of fixed slots that most maps have.
inline constexpr int DefaultMapSlotCount = 8;

/// The number of fixed slots that a tag asks for. A result outside 1 to 16 makes a map of DefaultMapSlotCount slots.
int GetSlotCountForSemanticTag(SemanticTag tag) noexcept;

/// True for the tags whose maps are expected to hold indexes beyond their slots: a released map that already has an
/// overflow store is preferred for them.
bool TagWantsOverflow(SemanticTag tag) noexcept;

}  // namespace KivGenerics
