// How maps are read.

#include <algorithm>
#include <cstddef>

#include "core/LeafKinds.h"
#include "core/LeafRun.h"
#include "core/MapChildren.h"
#include "persistence/ReadChild.h"
#include "persistence/ReadSlotKeys.h"

namespace KivGenerics {
namespace {

/// `expected` is the number of children that are still to come, this one included.
std::int32_t ReadNewChild(const MapChildren& children, ArchiveDecoder& decoder, int index, NodeType type,
                          EnumOrvGenericsTemporality temporality, bool longCount, std::size_t expected) {
    return ReadChild(decoder, type, temporality, longCount, [&](NodeType kind, SemanticTag tag) -> Node* {
        return kind == NodeTypeMap && children.HasRoom(index)
                   ? NodeAccess::NewMapInRoom(children.map, index, tag)
                   : NewNodeInMap(children, index, kind, false, tag, expected);
    });
}

/// The changes of NewNode, and of the temporality that was read.
constexpr std::uint32_t kChanges = 3;

/// Reads a leaf of a kind known when compiling into a free slot; false, with nothing done, where a node waits to be reused or
/// memory has to be asked for.
template <class T, class Reader>
bool ReadIntoSlot(TreeImpl& tree, Map& map, Node*& slot, int index, EnumOrvGenericsTemporality temporality,
                  Reader& reader, std::int32_t& result) {
    if (!tree.CanCreateNext<T>()) {
        return false;
    }
    T* const leaf = tree.CreateNext<T>(map, index, kChanges);
    NodeAccess::NoteChild(map);
    slot = leaf;
    NodeAccess::SetTemporalityOfNew(*leaf, temporality);
    result = ReadValue(*leaf, reader);
    return true;
}

/// The same for a leaf of any kind that a key names.
[[gnu::always_inline]] inline bool ReadAnyIntoSlot(TreeImpl& tree, Map& map, Node*& slot, int index,
                                                   const LeafKind& kind, ArchiveDecoder& decoder,
                                                   const ValueReader& values, std::int32_t& result) {
    return ForScalarKind(
        kind.type,
        [&](auto named) {
            using Leaf = typename decltype(named)::Leaf;
            if constexpr (TreeImpl::IsPlain<Leaf>) {
                return ReadIntoSlot<Leaf>(tree, map, slot, index, kind.temporality, values, result);
            } else {
                return ReadIntoSlot<Leaf>(tree, map, slot, index, kind.temporality, decoder, result);
            }
        },
        [] { return false; });
}

/// Reads leaves into the slots as long as the keys from `next` on name free ones. `next` is the key behind them then.
[[gnu::always_inline]] inline std::int32_t ReadRunIntoSlots(const MapChildren& children, ArchiveDecoder& decoder,
                                                            const ValueReader& values, const SlotKey*& next,
                                                            const SlotKey* end) {
    Map& map = children.map;
    TreeImpl& tree = *NodeAccess::GetTree(map);
    Node** const slots = children.slots;
    const int slotCount = children.slotCount;
    std::int32_t result = ResultSuccess;
    const SlotKey* key = next;
    for (; result >= 0 && key != end; ++key) {
        const int index = key->index;
        const bool isFree = index < slotCount && slots[index] == nullptr;
        if (!isFree || key->typeCode > 0xFF ||
            !ReadAnyIntoSlot(tree, map, slots[index], index, DecodeTypeCode(key->typeCode, 0), decoder, values,
                             result)) {
            break;
        }
    }
    next = key;
    return result;
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
    LeafRun<T> run(tree, children.map, most, temporality, kChanges);
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
    return ForPlainKind(
        DecodeTypeCode(next->typeCode <= 0xFF ? next->typeCode : 0, 0).type,
        [&](auto kind) { return ReadRun<typename decltype(kind)::Leaf>(children, decoder, next, end); },
        [] { return std::int32_t{ResultSuccess}; });
}

std::int32_t ReadLeafChild(const MapChildren& children, ArchiveDecoder& decoder, const SlotKey& key,
                           std::size_t expected) {
    const bool hasExtra = key.typeCode > 0xFF;
    const LeafKind kind =
        DecodeTypeCode(hasExtra ? key.typeCode >> 8 : key.typeCode, hasExtra ? key.typeCode & 0xFF : 0);
    if (!IsKnownType(kind.type)) {
        return SkipWords(decoder, kind.extraWords);
    }
    if (kind.type == NodeTypeString && children.HasRoom(key.index)) {
        return ReadNew(children.map.NewNode<String>(key.index), kind.temporality, decoder, false);
    }
    return ReadNewChild(children, decoder, key.index, kind.type, kind.temporality, false, expected);
}

/// Reads leaves as long as the keys from `next` on, of which there is one, name them; `next` is the key behind them then. No part
/// of ReadMap, of which there is one on the stack for each level.
[[gnu::noinline]] std::int32_t ReadLeafChildren(const MapChildren& children, ArchiveDecoder& decoder,
                                                const SlotKey*& next, const SlotKey* end) {
    const ValueReader values(decoder);
    std::int32_t result = ResultSuccess;
    do {
        const SlotKey* const first = next;
        result = children.IsSlot(first->index) ? ReadRunIntoSlots(children, decoder, values, next, end)
                                               : ReadRunBeyond(children, decoder, next, end);
        if (result >= 0 && next == first) {
            ++next;
            result = ReadLeafChild(children, decoder, *first, static_cast<std::size_t>(end - first));
        }
    } while (result >= 0 && next != end && next->typeCode != 0);
    return result < 0 ? result : ResultSuccess;
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
                ? ReadNew(children.map.NewNode<Vector>(key.index), kind.temporality, decoder, kind.longCount)
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
