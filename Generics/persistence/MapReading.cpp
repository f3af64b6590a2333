// How maps are read.

#include <algorithm>
#include <cstddef>

#include "core/LeafRun.h"
#include "core/MapChildren.h"
#include "persistence/ReadChild.h"
#include "persistence/ReadSlotKeys.h"

namespace KivGenerics {
namespace {

/// `expected` is the number of children that are still to come, this one included.
std::int32_t ReadNewChild(const MapChildren& children, ArchiveDecoder& decoder, int index, NodeType type,
                          EnumOrvGenericsTemporality temporality, bool longCount, std::size_t expected) {
    return ReadChild(decoder, type, temporality, longCount, [&](NodeType kind, SemanticTag tag) {
        return NewNodeInMap(children, index, kind, false, tag, expected);
    });
}

/// The changes of NewNode, and of the temporality that was read.
constexpr std::uint32_t kChanges = 3;

/// Makes a child of a kind known when compiling where there is room, as NewNode would, gives it its temporality and reads it.
template <class T, class Reader>
std::int32_t ReadIntoRoom(const MapChildren& children, int index, EnumOrvGenericsTemporality temporality,
                          Reader& reader) {
    T* const node = NodeAccess::GetTree(children.map)->CreateChanged<T>(&children.map, index, kChanges);
    if (node == nullptr) {
        return ResultOutOfMemory;
    }
    if (children.IsSlot(index)) {
        NodeAccess::NoteChild(children.map);
        children.slots[index] = node;
    } else {
        children.Put(index, node);
    }
    NodeAccess::SetTemporalityOfNew(*node, temporality);
    return ReadValue(*node, reader);
}

std::int32_t ReadLeafIntoRoom(const MapChildren& children, ArchiveDecoder& decoder, const ValueReader& values,
                              int index, const LeafKind& kind) {
    const EnumOrvGenericsTemporality t = kind.temporality;
    switch (kind.type) {
        case NodeTypeInteger: return ReadIntoRoom<Integer>(children, index, t, values);
        case NodeTypeGlobalID: return ReadIntoRoom<GlobalID>(children, index, t, values);
        case NodeTypeString: return ReadIntoRoom<String>(children, index, t, decoder);
        case NodeTypeDouble: return ReadIntoRoom<Double>(children, index, t, values);
        case NodeTypeBoolean: return ReadIntoRoom<Boolean>(children, index, t, values);
        case NodeTypeInteger64: return ReadIntoRoom<Integer64>(children, index, t, values);
        case NodeTypeVector:
        case NodeTypeMap:
        case NodeTypeIntegerSet:
        case NodeTypeIdSet:
        case NodeTypeStringSet:
        case NodeTypeDoubleSet: break;
    }
    return ReadNewChild(children, decoder, index, kind.type, t, false, 0);
}

/// Reads leaves of one kind into the overflow store, one behind the other, as long as the keys from `next` on name them and
/// neither the store nor the tree needs memory for them. `next` is the key behind them then. A function of its own, so that the
/// loop has the processor's registers to itself.
template <class T>
[[gnu::noinline]] std::int32_t ReadRun(const MapChildren& children, ArchiveDecoder& decoder, const SlotKey*& next,
                                       const SlotKey* end) {
    TreeImpl& tree = *NodeAccess::GetTree(children.map);
    const std::size_t room = (std::min)(children.overflow->CountAppendable(), LeafRun<T>::Count(tree));
    const std::size_t most = (std::min)(room, static_cast<std::size_t>(end - next));
    if (most == 0) {
        return ResultSuccess;
    }
    const std::uint32_t code = next->typeCode;
    const EnumOrvGenericsTemporality temporality = DecodeTypeCode(code, 0).temporality;
    NodeAccess::NoteTemporalityOfNew(children.map, temporality);
    LeafRun<T> run(tree, &children.map, most, temporality, kChanges);
    MapOverflow::AppendRun store(*children.overflow);
    const ValueReader reader(decoder);
    const SlotKey* key = next;
    const SlotKey* const limit = key + most;
    do {
        const int index = key->index;
        T* const leaf = run.Make(index);
        store.Append(index, leaf);
        const std::int32_t result = ReadValue(*leaf, reader);
        if (result < 0) {
            return result;
        }
        ++key;
    } while (key != limit && key->typeCode == code && key->index > key[-1].index);
    next = key;
    return ResultSuccess;
}

/// The same for whatever `next` names; nothing is done where that is no plain leaf for the end of the store.
std::int32_t ReadRunBeyond(const MapChildren& children, ArchiveDecoder& decoder, const SlotKey*& next,
                           const SlotKey* end) {
    if (children.IsSlot(next->index) || !children.HasRoom(next->index)) {
        return ResultSuccess;
    }
    switch (DecodeTypeCode(next->typeCode <= 0xFF ? next->typeCode : 0, 0).type) {
        case NodeTypeInteger: return ReadRun<Integer>(children, decoder, next, end);
        case NodeTypeGlobalID: return ReadRun<GlobalID>(children, decoder, next, end);
        case NodeTypeDouble: return ReadRun<Double>(children, decoder, next, end);
        case NodeTypeBoolean: return ReadRun<Boolean>(children, decoder, next, end);
        case NodeTypeInteger64: return ReadRun<Integer64>(children, decoder, next, end);
        case NodeTypeString:
        case NodeTypeVector:
        case NodeTypeMap:
        case NodeTypeIntegerSet:
        case NodeTypeIdSet:
        case NodeTypeStringSet:
        case NodeTypeDoubleSet: break;
    }
    return ResultSuccess;
}

std::int32_t ReadLeafChild(const MapChildren& children, ArchiveDecoder& decoder, const ValueReader& values,
                           const SlotKey& key, std::size_t expected) {
    const bool hasExtra = key.typeCode > 0xFF;
    const LeafKind kind =
        DecodeTypeCode(hasExtra ? key.typeCode >> 8 : key.typeCode, hasExtra ? key.typeCode & 0xFF : 0);
    if (!IsKnownType(kind.type)) {
        return SkipWords(decoder, kind.extraWords);
    }
    return children.HasRoom(key.index)
               ? ReadLeafIntoRoom(children, decoder, values, key.index, kind)
               : ReadNewChild(children, decoder, key.index, kind.type, kind.temporality, false, expected);
}

/// Reads leaves as long as the keys from `next` on, of which there is one, name them; `next` is the key behind them then. No part
/// of ReadMap, of which there is one on the stack for each level.
[[gnu::noinline]] std::int32_t ReadLeafChildren(const MapChildren& children, ArchiveDecoder& decoder,
                                                const SlotKey*& next, const SlotKey* end) {
    const ValueReader values(decoder);
    do {
        const auto expected = static_cast<std::size_t>(end - next);
        const SlotKey& key = *next++;
        std::int32_t result = ReadLeafChild(children, decoder, values, key, expected);
        if (result >= 0 && !children.IsSlot(key.index) && next != end) {
            result = ReadRunBeyond(children, decoder, next, end);
        }
        if (result < 0) {
            return result;
        }
    } while (next != end && next->typeCode != 0);
    return ResultSuccess;
}

std::int32_t ReadVectorIntoRoom(const MapChildren& children, ArchiveDecoder& decoder, int index,
                                const ObjectKind& kind) {
    Vector* const vector = NodeAccess::GetTree(children.map)->CreateChanged<Vector>(&children.map, index, kChanges);
    if (vector == nullptr) {
        return ResultOutOfMemory;
    }
    children.Put(index, vector);
    NodeAccess::SetTemporalityOfNew(*vector, kind.temporality);
    return vector->ReadFromArchive(decoder, kind.longCount);
}

std::int32_t ReadObjectChild(const MapChildren& children, ArchiveDecoder& decoder, const SlotKey& key,
                             std::size_t expected) {
    std::uint16_t objectTag = 0;
    std::int32_t result = decoder.ReadObjectTag(&objectTag);
    if (result != ResultSuccess) {
        return result < 0 ? result : ResultSuccess;  // no object: nothing is made for this key
    }
    const ObjectKind kind = DecodeObjectTag(objectTag);
    if (IsKnownType(kind.type)) {
        result =
            kind.type == NodeTypeVector && children.HasRoom(key.index)
                ? ReadVectorIntoRoom(children, decoder, key.index, kind)
                : ReadNewChild(children, decoder, key.index, kind.type, kind.temporality, kind.longCount, expected);
    }
    return result < 0 ? result : decoder.EndReadObject();
}

}  // namespace

std::int32_t ReadMap(Map& map, ArchiveDecoder& decoder, bool longCount) {
    const ArchiveDecoder::Level level(decoder);
    if (level.IsTooDeep()) {
        return ArchiveNestingTooDeep;
    }
    SlotKeys keys(decoder.GetKeyRoom());
    std::int32_t result = ReadSlotKeys(decoder, longCount, keys);
    const MapChildren children(map);
    const SlotKey* const end = keys.end();
    for (const SlotKey* next = keys.begin(); result >= 0 && next != end;) {
        if (next->typeCode != 0) {
            result = ReadLeafChildren(children, decoder, next, end);
        } else {
            const auto expected = static_cast<std::size_t>(end - next);
            result = ReadObjectChild(children, decoder, *next++, expected);
        }
    }
    return result < 0 ? result : ResultSuccess;
}

}  // namespace KivGenerics
