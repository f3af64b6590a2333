#pragma once

#include <cstdint>

namespace KivGenerics {

/// What a map stands for, as a number of the host's. Any 32-bit value may be stored: `SemanticTag(4100)`.
///
/// The tag that a map is made with fixes how many of its children sit in fixed slots.
enum SemanticTag : std::int32_t {
    SemanticTagNone = 0,     ///< when a node is made: no tag asked for, so a map keeps SemanticTagDefault
    SemanticTagDefault = 1,  ///< what every node reports that is not a map, and a map made without a tag
};

}  // namespace KivGenerics
