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
    return ReadChild(decoder, type, temporality, longCount, [&](NodeType kind, SemanticTag tag) {
        return NewNodeInMap(children, index, kind, false, tag, expected);
    });
}

/// The same for a map.
std::int32_t ReadMapChild(const MapChildren& children, ArchiveDecoder& decoder, int index,
                          EnumOrvGenericsTemporality temporality, bool longCount, std::size_t expected) {
    return ReadNewMap(decoder, temporality, longCount, [&](SemanticTag tag) {
        return children.HasRoom(index)
                   ? NodeAccess::NewMapInRoom(children.map, index, tag)
                   : static_cast<Map*>(NewNodeInMap(children, index, NodeTypeMap, false, tag, expected));
    });
}

/// The changes of NewNode, and of the temporality that was read.
constexpr std::uint32_t kChanges = 3;

/// Reads a leaf of a kind known when compiling into a free slot; false, with nothing done, where a node waits to be reused or
/// memory has to be asked for.
template <class T, class Reader>
bool ReadIntoSlot(TreeImpl& tree, Map& map, const SlotKey& key, Reader& reader, std::int32_t& result) {
    if (!tree.CanCreateNext<T>()) {
        return false;
    }
    T* const leaf = tree.CreateNext<T>(map, key.index, kChanges);
    NodeAccess::NoteChild(map);
    NodeAccess::GetSlots(map)[key.index] = leaf;
    NodeAccess::SetTemporalityOfNew(*leaf, DecodeTypeCode(key.typeCode).temporality);
    result = ReadValue(*leaf, reader);
    return true;
}

/// How far a run of leaves has come: the key behind them, and the last result.
struct Progress {
    const SlotKey* next;
    std::int32_t result;
};

/// Reads leaves into the slots as long as the keys from `next` on name free ones. Part of its caller: maps have few slots, and a
/// call costs as much as a leaf.
template <class Values>
[[gnu::always_inline]] inline Progress ReadRunIntoSlots(Map& map, ArchiveDecoder& decoder, Values values,
                                                        const SlotKey* next, const SlotKey* end) {
    TreeImpl& tree = *NodeAccess::GetTree(map);
    const auto slotCount = static_cast<unsigned>(NodeAccess::GetSlotCount(map));
    std::int32_t result = ResultSuccess;
    for (; result >= 0 && next != end; ++next) {
        const auto index = static_cast<unsigned>(next->index);
        if (index >= slotCount || NodeAccess::GetSlots(map)[index] != nullptr) {
            break;
        }
        const bool isRead = ForScalarKind(
            DecodeTypeCode(next->typeCode).type,
            [&](auto kind) {
                using Leaf = typename decltype(kind)::Leaf;
                if constexpr (TreeImpl::IsPlain<Leaf>) {
                    return ReadIntoSlot<Leaf>(tree, map, *next, values, result);
                } else {
                    return ReadIntoSlot<Leaf>(tree, map, *next, decoder, result);
                }
            },
            [] { return false; });
        if (!isRead) {
            break;
        }
    }
    return {next, result};
}

/// Reads leaves of one kind into the overflow store, one behind the other, as long as the keys from `next` on name them and
/// neither the store nor the tree needs memory for them. A function of its own, so that the loop has the processor's registers to
/// itself.
template <class T, class Values>
[[gnu::noinline]] Progress ReadRun(const MapChildren& children, Values values, const SlotKey* next,
                                   const SlotKey* end) {
    TreeImpl& tree = *NodeAccess::GetTree(children.map);
    const std::size_t room = (std::min)(children.overflow->CountAppendable(), static_cast<std::size_t>(end - next));
    const std::size_t most = LeafRun<T>::Count(tree, room);
    if (most == 0) {
        return {next, ResultSuccess};
    }
    const std::uint32_t code = next->typeCode;
    const EnumOrvGenericsTemporality temporality = DecodeTypeCode(code).temporality;
    NodeAccess::NoteTemporalityOfNew(children.map, temporality);
    LeafRun<T> run(tree, children.map, most, temporality, kChanges);
    MapOverflow::AppendRun store(*children.overflow);
    const SlotKey* const limit = next + most;
    int before = 0;
    do {
        before = next->index;
        T* const leaf = run.Make(before);
        store.Append(before, leaf);
        const std::int32_t result = ReadValue(*leaf, values);
        if (result < 0) {
            return {next, result};
        }
        ++next;
    } while (next != limit && next->typeCode == code && next->index > before);
    return {next, ResultSuccess};
}

/// The same for whatever `next` names; nothing is done where that is no plain leaf for the end of the store.
template <class Values>
Progress ReadRunBeyond(const MapChildren& children, Values values, const SlotKey* next, const SlotKey* end) {
    if (!children.HasRoom(next->index)) {
        return {next, ResultSuccess};
    }
    return ForPlainKind(
        DecodeTypeCode(next->typeCode).type,
        [&](auto kind) { return ReadRun<typename decltype(kind)::Leaf, Values>(children, values, next, end); },
        [&] { return Progress{next, ResultSuccess}; });
}

std::int32_t ReadLeafChild(const MapChildren& children, ArchiveDecoder& decoder, const SlotKey& key,
                           std::size_t expected) {
    const LeafKind kind = DecodeTypeCode(key.typeCode);
    if (!IsKnownType(kind.type)) {
        return SkipWords(decoder, kind.extraWords);
    }
    if (kind.type == NodeTypeString && children.HasRoom(key.index)) {
        return ReadNew(children.map.NewNode<String>(key.index), kind.temporality, decoder, false);
    }
    return ReadNewChild(children, decoder, key.index, kind.type, kind.temporality, false, expected);
}

/// Reads leaves as long as the keys from `next` on, of which there is one, name them. No part of ReadMap, of which there is one on
/// the stack for each level.
template <class Values>
[[gnu::noinline]] Progress ReadLeafChildren(const MapChildren& children, ArchiveDecoder& decoder, Values values,
                                            const SlotKey* next, const SlotKey* end) {
    Progress progress{next, ResultSuccess};
    do {
        next = progress.next;
        progress = children.IsSlot(next->index) ? ReadRunIntoSlots<Values>(children.map, decoder, values, next, end)
                                                : ReadRunBeyond<Values>(children, values, next, end);
        if (progress.result >= 0 && progress.next == next) {
            progress = {next + 1, ReadLeafChild(children, decoder, *next, static_cast<std::size_t>(end - next))};
        }
    } while (progress.result >= 0 && progress.next != end && progress.next->typeCode != 0);
    return progress;
}

std::int32_t ReadObjectChild(const MapChildren& children, ArchiveDecoder& decoder, const SlotKey& key,
                             std::size_t expected) {
    std::uint16_t objectTag = 0;
    std::int32_t result = decoder.ReadObjectTag(&objectTag);
    if (result != ResultSuccess) {
        return result < 0 ? result : ResultSuccess;  // no object: nothing is made for this key
    }
    const ObjectKind kind = DecodeObjectTag(objectTag);
    if (kind.type == NodeTypeMap) {
        result = ReadMapChild(children, decoder, key.index, kind.temporality, kind.longCount, expected);
    } else if (kind.type == NodeTypeVector && children.HasRoom(key.index)) {
        result = ReadNew(children.map.NewNode<Vector>(key.index), kind.temporality, decoder, kind.longCount);
    } else if (IsKnownType(kind.type)) {
        result = ReadNewChild(children, decoder, key.index, kind.type, kind.temporality, kind.longCount, expected);
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
    std::int32_t result = ReadSlotKeys(decoder, map.GetSemanticTagNV(), longCount, keys);
    const MapChildren children(map);
    const SlotKey* const end = keys.end();
    for (const SlotKey* next = keys.begin(); result >= 0 && next != end;) {
        if (next->typeCode != 0) {
            const Progress progress = WithValues(decoder, [&](auto values) {
                return ReadLeafChildren(children, decoder, values, next, end);
            });
            next = progress.next;
            result = progress.result;
        } else {
            const auto expected = static_cast<std::size_t>(end - next);
            result = ReadObjectChild(children, decoder, *next++, expected);
        }
    }
    return result < 0 ? result : ResultSuccess;
}

}  // namespace KivGenerics
