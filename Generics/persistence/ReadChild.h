#pragma once

#include <cstdint>

#include <KivGenerics/Node.h>
#include <KivGenerics/ResultCode.h>

#include "core/LeafKinds.h"
#include "core/MapChildren.h"
#include "persistence/ArchiveDecoder.h"
#include "persistence/Encoding.h"
#include "persistence/LeafArchive.h"

namespace KivGenerics {

/// Splits a leaf's type code.
inline LeafKind DecodeTypeCode(std::uint32_t code) noexcept {
    return {static_cast<NodeType>(code & kTypeMask),
            static_cast<EnumOrvGenericsTemporality>((code & 0xFF) >> kTypeByteTemporalityShift),
            static_cast<int>(code >> 8)};
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
        const std::int32_t result = decoder.ReadLong(&ignored);
        if (result < 0) {
            return result;
        }
    }
    return ResultSuccess;
}

/// Reads a new node of any kind: scalars right here, the others through their own operation.
inline std::int32_t ReadNode(Node& node, ArchiveDecoder& decoder, bool longCount) {
    return ForScalarKind(
        node.GetType(),
        [&](auto kind) { return ReadValue(static_cast<typename decltype(kind)::Leaf&>(node), decoder); },
        [&] { return node.ReadFromArchive(decoder, longCount); });
}

/// Reads the content of a scalar or vector, of a kind known when compiling.
template <class T>
std::int32_t ReadValue(T& node, ArchiveDecoder& decoder, bool longCount) {
    if constexpr (IsCompositeType(T::StaticType)) {
        return node.ReadFromArchive(decoder, longCount);
    } else {
        return ReadValue(node, decoder);
    }
}

/// Reads a new scalar or vector, of a kind known when compiling; null where there was no memory for it.
template <class T>
std::int32_t ReadNew(T* node, EnumOrvGenericsTemporality temporality, ArchiveDecoder& decoder, bool longCount) {
    if (node == nullptr) {
        return ResultOutOfMemory;
    }
    NodeAccess::GetTree(*node)->CheckReadOnly();
    NodeAccess::SetTemporalityOfNew(*node, temporality);
    return ReadValue(*node, decoder, longCount);
}

/// Reads a new map, which `make(tag)` makes; null where there was no memory for it.
template <class Make>
std::int32_t ReadNewMap(ArchiveDecoder& decoder, EnumOrvGenericsTemporality temporality, bool longCount, Make make) {
    const SemanticTag tag = decoder.GetSemanticTag();
    if (decoder.HasFailed()) {
        return decoder.GetStatus();
    }
    Map* const map = make(tag);
    if (map == nullptr) {
        return ResultOutOfMemory;
    }
    NodeAccess::GetTree(*map)->CheckReadOnly();
    NodeAccess::SetTemporalityOfNew(*map, temporality);
    return ReadMap(*map, decoder, longCount);
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
    NodeAccess::GetTree(*child)->CheckReadOnly();
    NodeAccess::SetTemporalityOfNew(*child, temporality);
    return ReadNode(*child, decoder, longCount);
}

}  // namespace KivGenerics
