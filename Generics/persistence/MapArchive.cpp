// How maps are written, read and sized.

#include <KivCOMShared/COrvSizeArchive.h>

#include "core/MapChildren.h"
#include "persistence/BytePacker.h"
#include "persistence/ReadChild.h"
#include "persistence/WriteNode.h"

namespace KivGenerics {
namespace {

using KivCOMShared::COrvWriteArchive;

// A tag of 0x80000000 or more has no form and is left out: what is written then cannot be read back.
// kept-on-purpose: tag-not-written
void PackSemanticTag(BytePacker& packer, SemanticTag tag) {
    const auto number = static_cast<std::uint32_t>(tag);
    if (number < 0x8000) {
        packer.Put(number, 2);
    } else if (number < 0x80000000) {
        packer.Put(number | 0x80000000, 4);
    }
}

void PackCount(BytePacker& packer, std::uint32_t count) {
    if (count < 128) {
        packer.Put(count, 1);
    } else if (count < kLongCount) {
        packer.Put(count | 0x8000, 2);
    } else {
        packer.Put(count, 4);
    }
}

/// A key of `width` bytes and, of a leaf, its type byte.
void PackKey(BytePacker& packer, std::uint32_t key, int width, std::uint32_t typeByte) {
    if (typeByte == 0) {
        packer.Put(key, width);
    } else if (width < 4) {
        packer.Put(key << 8 | typeByte, width + 1);
    } else {
        packer.Put(key, width);
        packer.Put(typeByte, 1);
    }
}

// A child's index and, of a leaf, its type byte:
//     T0ii iiii                                     0 to 63
//     T10i iiii  iiii iiii                          64 to 8191
//     T11i iiii  iiii iiii  iiii iiii  iiii iiii    8192 to 0x1FFFFFFF
// T: a type byte follows. A greater index has no form and is left out.
// kept-on-purpose: index-not-written
void PackSlotKey(BytePacker& packer, const Node& child) {
    const auto index = static_cast<std::uint32_t>(child.GetIndex());
    const std::uint32_t typeByte = GetTypeByte(child);
    const std::uint32_t hasType = typeByte != 0 ? 1 : 0;
    if (index < 64) {
        PackKey(packer, hasType << 7 | index, 1, typeByte);
    } else if (index < 8192) {
        PackKey(packer, hasType << 15 | 0x4000 | index, 2, typeByte);
    } else if (index <= 0x1FFFFFFF) {
        PackKey(packer, hasType << 31 | 0x60000000 | index, 4, typeByte);
    } else if (hasType != 0) {
        packer.Put(typeByte, 1);
    }
}

/// The children of a map that are written: leaves first, then composites, each in index order.
class WrittenChildren {
public:
    WrittenChildren(const MapChildren& children, EnumOrvGenericsTemporality limit)
        : children_(children), limit_(limit) {
        for (int slot = 0; slot < children.slotCount; ++slot) {
            Node* const child = children.slots[slot];
            if (child != nullptr && NodeAccess::GetDerived(*child) <= limit) {
                const bool isComposite = IsCompositeType(child->GetType());
                slots_[isComposite ? --composites_ : leaves_++] = child;
            }
        }
        children.ForEachInOverflow([&](Node* child) {
            if (NodeAccess::GetDerived(*child) <= limit) {
                ++(IsCompositeType(child->GetType()) ? compositesBeyond_ : leavesBeyond_);
            }
            return true;
        });
    }

    int GetCount() const noexcept { return leaves_ + leavesBeyond_ + kMaxSlots - composites_ + compositesBeyond_; }

    /// Calls `use(child)` for each. Returns 0 or the first failure.
    template <class Use>
    std::int32_t ForEach(Use use) const {
        std::int32_t result = ResultSuccess;
        for (int i = 0; result >= 0 && i < leaves_; ++i) {
            result = use(*slots_[i]);
        }
        if (result >= 0 && leavesBeyond_ > 0) {
            result = ForEachBeyond(false, use);
        }
        for (int i = kMaxSlots; result >= 0 && i-- > composites_;) {
            result = use(*slots_[i]);
        }
        return result >= 0 && compositesBeyond_ > 0 ? ForEachBeyond(true, use) : result;
    }

private:
    static constexpr int kMaxSlots = 16;

    template <class Use>
    std::int32_t ForEachBeyond(bool composites, Use use) const {
        std::int32_t result = ResultSuccess;
        children_.ForEachInOverflow([&](Node* child) {
            if (IsCompositeType(child->GetType()) == composites && NodeAccess::GetDerived(*child) <= limit_) {
                result = use(*child);
            }
            return result >= 0;
        });
        return result;
    }

    const MapChildren& children_;
    const EnumOrvGenericsTemporality limit_;
    Node* slots_[kMaxSlots];      // from the front the leaves in the fixed slots, from the back the composites
    int leaves_ = 0;              // the end of the leaves in it
    int composites_ = kMaxSlots;  // the last of the composites in it
    int leavesBeyond_ = 0;        // in the overflow store
    int compositesBeyond_ = 0;
};

/// Opens a map's object and packs its semantic tag and child count.
std::int32_t BeginMap(const MapChildren& children, const ArchiveWriter& out, BytePacker& packer, int count) {
    const std::int32_t result =
        out.BeginObject(GetObjectTag(children.map, count < kLongCount ? NodeTypeMap : kLongMap));
    if (result >= 0) {
        PackSemanticTag(packer, children.map.GetSemanticTagNV());
        PackCount(packer, static_cast<std::uint32_t>(count));
    }
    return result;
}

/// Writes a map with the children that `forEach` names, keys first, then values.
template <class ForEach>
std::int32_t WriteMapWith(const MapChildren& children, const ArchiveWriter& out, bool withTransient, int count,
                          ForEach forEach) {
    BytePacker packer(out);
    std::int32_t result = BeginMap(children, out, packer, count);
    if (result < 0) {
        return result;
    }
    forEach([&](Node& child) {
        PackSlotKey(packer, child);
        return ResultSuccess;
    });
    result = packer.Flush();
    if (result >= 0) {
        result = forEach([&out, withTransient](Node& child) { return WriteNode(child, out, withTransient); });
    }
    return result < 0 ? result : out.EndObject();
}

// With transient nodes, a root's first three slots are written only if asked for.
// kept-on-purpose: slot-flags
bool IsSlotWanted(int slot, bool withTransient, int slotFlags) noexcept {
    constexpr int kGates[] = {0x11, 0x02, 0x08};
    return !withTransient || slot > 2 || (slotFlags & kGates[slot]) != 0;
}

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

std::uint32_t ReadTypeCode(ArchiveDecoder& decoder) {
    const std::uint32_t type = decoder.GetBytes(1);
    const bool hasExtra = (type & kTypeMask) >= kFirstTypeWithExtraWords;
    return hasExtra ? type << 8 | decoder.GetBytes(1) : type;
}

/// Adds the next key. What it adds means nothing when the decoder has failed afterwards.
void ReadSlotKey(ArchiveDecoder& decoder, ArchiveDecoder::Keys& keys) {
    const std::uint32_t first = decoder.PeekByte();
    std::uint32_t index = 0;
    if (decoder.HasFailed()) {
        return;
    }
    if ((first & 0x40) == 0) {
        index = decoder.GetBytes(1) & 0x7F;
    } else if ((first & 0x20) != 0) {
        index = decoder.GetBytes(4) & 0x1FFFFFFF;
    } else {
        index = decoder.GetBytes(2) & 0x1FFF;
    }
    const bool hasType = (first & 0x80) != 0 && !decoder.HasFailed();
    keys.Add(static_cast<std::int32_t>(index), hasType ? ReadTypeCode(decoder) : 0);
}

std::int32_t ReadNewChild(Map& map, ArchiveDecoder& decoder, int index, NodeType type,
                          EnumOrvGenericsTemporality temporality, bool longCount) {
    return ReadChild(decoder, type, temporality, longCount,
                     [&](NodeType kind, SemanticTag tag) { return map.NewNode(index, kind, false, tag); });
}

bool IsFreeSlot(const MapChildren& children, int index) noexcept {
    return children.IsSlot(index) && children.slots[index] == nullptr;
}

/// As NewNode would make it in a slot that is free, of a kind known when compiling.
template <class T>
T* NewInSlot(const MapChildren& children, int index) {
    T* const node = NodeAccess::GetTree(children.map)->Create<T>(&children.map, index);
    if (node != nullptr) {
        children.slots[index] = node;
        node->SetTemporality(TemporalityPersistent);
    }
    return node;
}

std::int32_t ReadLeafIntoSlot(const MapChildren& children, ArchiveDecoder& decoder, int index, const LeafKind& kind) {
    const auto read = [&](auto* leaf) { return ReadNew(leaf, kind.temporality, decoder, false); };
    switch (kind.type) {
        case NodeTypeInteger: return read(NewInSlot<Integer>(children, index));
        case NodeTypeGlobalID: return read(NewInSlot<GlobalID>(children, index));
        case NodeTypeString: return read(NewInSlot<String>(children, index));
        case NodeTypeDouble: return read(NewInSlot<Double>(children, index));
        case NodeTypeBoolean: return read(NewInSlot<Boolean>(children, index));
        case NodeTypeInteger64: return read(NewInSlot<Integer64>(children, index));
        case NodeTypeVector:
        case NodeTypeMap:
        case NodeTypeIntegerSet:
        case NodeTypeIdSet:
        case NodeTypeStringSet:
        case NodeTypeDoubleSet: break;
    }
    return ReadNewChild(children.map, decoder, index, kind.type, kind.temporality, false);
}

std::int32_t ReadLeafChild(Map& map, ArchiveDecoder& decoder, const SlotKey& key) {
    const bool hasExtra = key.typeCode > 0xFF;
    const LeafKind kind =
        DecodeTypeCode(hasExtra ? key.typeCode >> 8 : key.typeCode, hasExtra ? key.typeCode & 0xFF : 0);
    if (!IsKnownType(kind.type)) {
        return SkipWords(decoder, kind.extraWords);
    }
    const MapChildren children(map);
    return IsFreeSlot(children, key.index) ? ReadLeafIntoSlot(children, decoder, key.index, kind)
                                           : ReadNewChild(map, decoder, key.index, kind.type, kind.temporality, false);
}

std::int32_t ReadObjectChild(Map& map, ArchiveDecoder& decoder, const SlotKey& key) {
    std::uint16_t objectTag = 0;
    std::int32_t result = decoder.ReadObjectTag(&objectTag);
    if (result != ResultSuccess) {
        return result < 0 ? result : ResultSuccess;  // no object: nothing is made for this key
    }
    const ObjectKind kind = DecodeObjectTag(objectTag);
    if (IsKnownType(kind.type)) {
        const MapChildren children(map);
        result = kind.type == NodeTypeVector && IsFreeSlot(children, key.index)
                     ? ReadNew(NewInSlot<Vector>(children, key.index), kind.temporality, decoder, kind.longCount)
                     : ReadNewChild(map, decoder, key.index, kind.type, kind.temporality, kind.longCount);
    }
    return result < 0 ? result : decoder.EndReadObject();
}

}  // namespace

std::int32_t WriteMap(const MapChildren& children, COrvWriteArchive* archive, bool withTransient) {
    return WriteMap(children, ArchiveWriter(archive), withTransient);
}

std::int32_t WriteMap(const MapChildren& children, const ArchiveWriter& out, bool withTransient) {
    const WrittenChildren written(children, GetLimit(withTransient));
    return WriteMapWith(children, out, withTransient, written.GetCount(),
                        [&](auto use) { return written.ForEach(use); });
}

// Only the composite children of the fixed slots are written; the count in the header counts all the same what is not.
// kept-on-purpose: root-write-count
std::int32_t WriteRootMap(const MapChildren& children, const ArchiveWriter& out, bool withTransient, int slotFlags) {
    const EnumOrvGenericsTemporality limit = GetLimit(withTransient);
    return WriteMapWith(children, out, withTransient, GetMapSize(children, limit), [&](auto use) {
        std::int32_t result = ResultSuccess;
        for (int slot = 0; result >= 0 && slot < children.slotCount; ++slot) {
            Node* const child = children.slots[slot];
            if (child != nullptr && IsCompositeType(child->GetType()) && NodeAccess::GetDerived(*child) <= limit &&
                IsSlotWanted(slot, withTransient, slotFlags)) {
                result = use(*child);
            }
        }
        return result;
    });
}

std::int32_t WriteRootMap(const MapChildren& children, COrvWriteArchive* archive, bool withTransient, int slotFlags) {
    return WriteRootMap(children, ArchiveWriter(archive), withTransient, slotFlags);
}

std::int32_t WriteRoot(Node& root, const ArchiveWriter& out, bool withTransient, int slotFlags) {
    return root.GetType() == NodeTypeMap
               ? WriteRootMap(MapChildren(static_cast<Map&>(root)), out, withTransient, slotFlags)
               : root.WriteToArchive(out.GetArchive(), withTransient, slotFlags);
}

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
        ReadSlotKey(decoder, keys);
        result = decoder.GetStatus();
    }
    decoder.Realign();
    for (std::uint32_t i = 0; result >= 0 && i < count; ++i) {
        const SlotKey key = keys.Get(i);
        result = key.typeCode != 0 ? ReadLeafChild(map, decoder, key) : ReadObjectChild(map, decoder, key);
    }
    return result < 0 ? result : ResultSuccess;
}

// kept-on-purpose: map-size-estimate
std::int32_t SizeMap(const MapChildren& children, KivCOMShared::COrvSizeArchive* sizer, bool withTransient) {
    const EnumOrvGenericsTemporality limit = GetLimit(withTransient);
    sizer->AddSizes(0, 0, 0, 1, 1);
    sizer->AddSizes(0, 0, 0, 2 * GetMapSize(children, limit), 0);
    std::int32_t result = ResultSuccess;
    children.ForEach([&](Node* child) {
        if (NodeAccess::GetDerived(*child) <= limit) {
            result = child->SizeDefnArchive(sizer, withTransient);
        }
        return result >= 0;
    });
    return result < 0 ? result : ResultSuccess;
}

}  // namespace KivGenerics
