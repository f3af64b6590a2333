#pragma once

#include <cstdint>

#include <KivCOMShared/COrvReadArchive.h>
#include <KivGenerics/Node.h>
#include <KivGenerics/ResultCode.h>

#include "persistence/ArchiveDecoder.h"
#include "persistence/Encoding.h"

namespace KivGenerics {

/// Splits a leaf's type code: the type byte, which may be followed by a byte that counts extra words.
inline LeafKind DecodeTypeCode(std::uint32_t typeByte, std::uint32_t extraWords) noexcept {
    return {static_cast<NodeType>(typeByte & kTypeMask),
            static_cast<EnumOrvGenericsTemporality>(typeByte >> kTypeByteTemporalityShift),
            static_cast<int>(extraWords)};
}

/// True for the kinds that can be made; 0 and what later versions may add are skipped.
constexpr bool IsKnownType(NodeType type) noexcept {
    return NodeTypeInteger <= type && type <= NodeTypeInteger64;
}

/// Skips the words of a leaf of unknown kind. Returns 0 or the first failure.
// kept-on-purpose: unknown-kinds-skipped
inline std::int32_t SkipWords(ArchiveDecoder& decoder, int words) {
    for (int i = 0; i < words; ++i) {
        std::int32_t ignored = 0;
        const std::int32_t result = decoder.GetArchive()->ReadLong(&ignored);
        if (result < 0) {
            return result;
        }
    }
    return ResultSuccess;
}

/// Reads the semantic tag of a map, makes the child with `make(type, tag)`, gives it its temporality and reads it.
template <class Make>
std::int32_t ReadChild(ArchiveDecoder& decoder, NodeType type, EnumOrvGenericsTemporality temporality, bool longCount,
                       Make make) {
    SemanticTag tag = SemanticTagNone;
    if (type == NodeTypeMap) {
        tag = decoder.GetSemanticTag();
        if (decoder.HasFailed()) {
            return decoder.GetStatus();
        }
    }
    Node* const child = make(type, tag);
    if (child == nullptr) {
        return ResultOutOfMemory;
    }
    child->SetTemporality(temporality);
    return child->ReadFromArchive(decoder, longCount);
}

}  // namespace KivGenerics
