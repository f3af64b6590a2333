// How maps are read.

#include <algorithm>
#include <cstddef>

#include "core/LeafRun.h"
#include "core/MapChildren.h"
#include "persistence/ReadChild.h"

namespace KivGenerics {
namespace {

std::int32_t ReadCount(ArchiveDecoder& decoder, bool longCount, std::uint32_t& count) {
    if (longCount) {
        count = decoder.GetBytes(4);
    } else {
        const std::uint32_t first = decoder.PeekByte();
        if (!decoder.HasFailed()) {
            count = (first & 0x80) != 0 ? decoder.GetBytes(2) & 0x7FFF : decoder.GetBytes(1);
        }
    }
    return decoder.GetStatus();
}

/// A leaf's key: its index in `IndexBytes` bytes, then its type byte, which may be followed by one that counts extra words.
template <int IndexBytes>
SlotKey ReadLeafKey(ArchiveDecoder& decoder, std::uint32_t indexMask) {
    std::uint32_t index = 0;
    std::uint32_t type = 0;
    if constexpr (IndexBytes < 4) {
        const std::uint32_t both = decoder.GetBytes(IndexBytes + 1);
        index = both >> 8 & indexMask;
        type = both & 0xFF;
    } else {
        index = decoder.GetBytes(IndexBytes) & indexMask;
        type = decoder.HasFailed() ? 0 : decoder.GetByte();
    }
    if ((type & kTypeMask) >= kFirstTypeWithExtraWords && !decoder.HasFailed()) {
        type = type << 8 | decoder.GetByte();
    }
    return {static_cast<std::int32_t>(index), type};
}

template <int IndexBytes>
SlotKey ReadCompositeKey(ArchiveDecoder& decoder, std::uint32_t indexMask) {
    return {static_cast<std::int32_t>(decoder.GetBytes(IndexBytes) & indexMask), 0};
}

/// The next key. It means nothing when the decoder has failed afterwards.
SlotKey ReadSlotKey(ArchiveDecoder& decoder) {
    const std::uint32_t first = decoder.PeekByte();
    if (decoder.HasFailed()) {
        return {0, 0};
    }
    // The upper three bits say whether a type byte follows, and how many bytes the index has: 0x one, 10 two, 11 four.
    const bool isLeaf = (first & 0x80) != 0;
    if ((first & 0x40) == 0) {
        return isLeaf ? ReadLeafKey<1>(decoder, 0x3F) : ReadCompositeKey<1>(decoder, 0x3F);
    }
    if ((first & 0x20) == 0) {
        return isLeaf ? ReadLeafKey<2>(decoder, 0x1FFF) : ReadCompositeKey<2>(decoder, 0x1FFF);
    }
    return isLeaf ? ReadLeafKey<4>(decoder, 0x1FFFFFFF) : ReadCompositeKey<4>(decoder, 0x1FFFFFFF);
}

/// `expected` is the number of children that are still to come, this one included.
std::int32_t ReadNewChild(const MapChildren& children, ArchiveDecoder& decoder, int index, NodeType type,
                          EnumOrvGenericsTemporality temporality, bool longCount, std::size_t expected) {
    return ReadChild(decoder, type, temporality, longCount, [&](NodeType kind, SemanticTag tag) {
        return NewNodeInMap(children, index, kind, false, tag, expected);
    });
}

/// Makes a child of a kind known when compiling where there is room, as NewNode would, gives it its temporality and reads it.
template <class T>
std::int32_t ReadIntoRoom(const MapChildren& children, ArchiveDecoder& decoder, int index,
                          EnumOrvGenericsTemporality temporality, bool longCount) {
    TreeImpl& tree = *NodeAccess::GetTree(children.map);
    T* const node = tree.Create<T>(&children.map, index);
    if (node == nullptr) {
        return ResultOutOfMemory;
    }
    if (children.IsSlot(index)) {
        NodeAccess::NoteChild(children.map);
        children.slots[index] = node;
    } else {
        children.Put(index, node);
    }
    constexpr std::uint32_t kTemporalities = 2;  // the one that NewNode sets, and the one that was read
    tree.CountMore(kTemporalities);
    NodeAccess::SetTemporalityOfNew(*node, temporality);
    return ReadValue(*node, decoder, longCount);
}

std::int32_t ReadLeafIntoRoom(const MapChildren& children, ArchiveDecoder& decoder, int index, const LeafKind& kind) {
    switch (kind.type) {
        case NodeTypeInteger: return ReadIntoRoom<Integer>(children, decoder, index, kind.temporality, false);
        case NodeTypeGlobalID: return ReadIntoRoom<GlobalID>(children, decoder, index, kind.temporality, false);
        case NodeTypeString: return ReadIntoRoom<String>(children, decoder, index, kind.temporality, false);
        case NodeTypeDouble: return ReadIntoRoom<Double>(children, decoder, index, kind.temporality, false);
        case NodeTypeBoolean: return ReadIntoRoom<Boolean>(children, decoder, index, kind.temporality, false);
        case NodeTypeInteger64: return ReadIntoRoom<Integer64>(children, decoder, index, kind.temporality, false);
        case NodeTypeVector:
        case NodeTypeMap:
        case NodeTypeIntegerSet:
        case NodeTypeIdSet:
        case NodeTypeStringSet:
        case NodeTypeDoubleSet: break;
    }
    return ReadNewChild(children, decoder, index, kind.type, kind.temporality, false, 0);
}

/// Reads leaves of one kind into the overflow store, one behind the other, as long as the keys from `first` on name them and
/// neither the store nor the tree needs memory for them. `done` says how many there were, of at most `left` keys.
template <class T>
std::int32_t ReadRun(const MapChildren& children, ArchiveDecoder& decoder, const ArchiveDecoder::Keys& keys,
                     std::size_t first, std::size_t left, std::size_t& done) {
    TreeImpl& tree = *NodeAccess::GetTree(children.map);
    const std::size_t room = (std::min)(children.overflow->CountAppendable(), LeafRun<T>::Count(tree));
    const std::size_t most = (std::min)(room, left);
    done = 0;
    if (most == 0) {
        return ResultSuccess;
    }
    const std::uint32_t code = keys.Get(first).typeCode;
    const EnumOrvGenericsTemporality temporality = DecodeTypeCode(code, 0).temporality;
    constexpr std::uint32_t kChanges = 3;  // being made, and two temporalities
    NodeAccess::NoteTemporalityOfNew(children.map, temporality);
    LeafRun<T> run(tree, &children.map, most, temporality, kChanges);
    MapOverflow::AppendRun store(*children.overflow);
    const ValueReader reader(decoder);
    std::int32_t result = ResultSuccess;
    int last = -1;
    for (; result >= 0 && done < most; ++done) {
        const SlotKey key = keys.Get(first + done);
        if (key.typeCode != code || key.index <= last) {
            break;
        }
        last = key.index;
        T* const leaf = run.Make(last);
        store.Append(last, leaf);
        result = ReadValue(*leaf, reader);
    }
    return result;
}

/// The same for whatever the key `first` names; nothing is done where that is no plain leaf for the end of the store.
std::int32_t ReadRunBeyond(const MapChildren& children, ArchiveDecoder& decoder, const ArchiveDecoder::Keys& keys,
                           std::size_t first, std::size_t left, std::size_t& done) {
    const SlotKey key = keys.Get(first);
    done = 0;
    if (children.IsSlot(key.index) || !children.HasRoom(key.index)) {
        return ResultSuccess;
    }
    switch (DecodeTypeCode(key.typeCode <= 0xFF ? key.typeCode : 0, 0).type) {
        case NodeTypeInteger: return ReadRun<Integer>(children, decoder, keys, first, left, done);
        case NodeTypeGlobalID: return ReadRun<GlobalID>(children, decoder, keys, first, left, done);
        case NodeTypeDouble: return ReadRun<Double>(children, decoder, keys, first, left, done);
        case NodeTypeBoolean: return ReadRun<Boolean>(children, decoder, keys, first, left, done);
        case NodeTypeInteger64: return ReadRun<Integer64>(children, decoder, keys, first, left, done);
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

std::int32_t ReadLeafChild(const MapChildren& children, ArchiveDecoder& decoder, const SlotKey& key,
                           std::size_t expected) {
    const bool hasExtra = key.typeCode > 0xFF;
    const LeafKind kind =
        DecodeTypeCode(hasExtra ? key.typeCode >> 8 : key.typeCode, hasExtra ? key.typeCode & 0xFF : 0);
    if (!IsKnownType(kind.type)) {
        return SkipWords(decoder, kind.extraWords);
    }
    return children.HasRoom(key.index)
               ? ReadLeafIntoRoom(children, decoder, key.index, kind)
               : ReadNewChild(children, decoder, key.index, kind.type, kind.temporality, false, expected);
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
                ? ReadIntoRoom<Vector>(children, decoder, key.index, kind.temporality, kind.longCount)
                : ReadNewChild(children, decoder, key.index, kind.type, kind.temporality, kind.longCount, expected);
    }
    return result < 0 ? result : decoder.EndReadObject();
}

}  // namespace

// All keys come before all values, so they are kept. Each costs at least a byte of what is read: the count in the header
// reserves nothing.
std::int32_t ReadMap(Map& map, ArchiveDecoder& decoder, bool longCount) {
    const ArchiveDecoder::Level level(decoder);
    if (level.IsTooDeep()) {
        return ArchiveNestingTooDeep;
    }
    std::uint32_t count = 0;
    std::int32_t result = ReadCount(decoder, longCount, count);
    ArchiveDecoder::Keys keys(decoder);
    for (std::uint32_t i = 0; result >= 0 && i < count; ++i) {
        keys.Add(ReadSlotKey(decoder));
        result = decoder.GetStatus();
    }
    decoder.Realign();
    const MapChildren children(map);
    for (std::uint32_t i = 0; result >= 0 && i < count; ++i) {
        const SlotKey key = keys.Get(i);
        if (key.typeCode == 0) {
            result = ReadObjectChild(children, decoder, key, count - i);
            continue;
        }
        result = ReadLeafChild(children, decoder, key, count - i);
        if (result >= 0 && i + 1 < count && !children.IsSlot(key.index)) {
            std::size_t done = 0;
            result = ReadRunBeyond(children, decoder, keys, i + 1, count - i - 1, done);
            i += static_cast<std::uint32_t>(done);
        }
    }
    return result < 0 ? result : ResultSuccess;
}

}  // namespace KivGenerics
