// How maps are written, read and sized.

#include <vector>

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
    if (index < 64 && hasType != 0) {
        packer.Put((0x80 | index) << 8 | typeByte, 2);
        return;
    }
    if (index < 64) {
        packer.Put(index, 1);
    } else if (index < 8192) {
        packer.Put(hasType << 15 | 0x4000 | index, 2);
    } else if (index <= 0x1FFFFFFF) {
        packer.Put(hasType << 31 | 0x60000000 | index, 4);
    }
    if (hasType != 0) {
        packer.Put(typeByte, 1);
    }
}

/// The children of a map that are written: leaves first, then composites, each in index order.
class WrittenChildren {
public:
    WrittenChildren(const MapChildren& children, EnumOrvGenericsTemporality limit)
        : children_(children), limit_(limit) {
        children.ForEach([this](Node* child) {
            if (NodeAccess::GetDerived(*child) <= limit_) {
                ++(IsCompositeType(child->GetType()) ? composites_ : leaves_);
            }
            return true;
        });
    }

    int GetCount() const noexcept { return leaves_ + composites_; }

    /// Calls `use(child)` for each. Returns 0 or the first failure.
    template <class Use>
    std::int32_t ForEach(Use use) const {
        const std::int32_t result = leaves_ > 0 ? ForEachOf(false, use) : ResultSuccess;
        return result >= 0 && composites_ > 0 ? ForEachOf(true, use) : result;
    }

private:
    template <class Use>
    std::int32_t ForEachOf(bool composites, Use use) const {
        std::int32_t result = ResultSuccess;
        children_.ForEach([&](Node* child) {
            if (IsCompositeType(child->GetType()) == composites && NodeAccess::GetDerived(*child) <= limit_) {
                result = use(*child);
            }
            return result >= 0;
        });
        return result;
    }

    const MapChildren& children_;
    const EnumOrvGenericsTemporality limit_;
    int leaves_ = 0;
    int composites_ = 0;
};

/// Opens a map's object and packs its semantic tag and child count.
std::int32_t BeginMap(const MapChildren& children, ArchiveWriter out, BytePacker& packer, int count) {
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
std::int32_t WriteMapWith(const MapChildren& children, ArchiveWriter out, bool withTransient, int count,
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
        result = forEach([=](Node& child) { return WriteNode(child, out, withTransient); });
    }
    return result < 0 ? result : out.EndObject();
}

// With transient nodes, a root's first three slots are written only if asked for.
// kept-on-purpose: slot-flags
bool IsSlotWanted(int slot, bool withTransient, int slotFlags) noexcept {
    constexpr int kGates[] = {0x11, 0x02, 0x08};
    return !withTransient || slot > 2 || (slotFlags & kGates[slot]) != 0;
}

struct SlotKey {
    std::int32_t index;
    std::uint32_t typeCode;  // type byte, or type byte and extra words; 0 for an object
};

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

std::int32_t ReadSlotKey(ArchiveDecoder& decoder, SlotKey& key) {
    const std::uint32_t first = decoder.PeekByte();
    if (decoder.HasFailed()) {
        return decoder.GetStatus();
    }
    std::uint32_t index = 0;
    if ((first & 0x40) == 0) {
        index = decoder.GetBytes(1) & 0x7F;
    } else if ((first & 0x20) != 0) {
        index = decoder.GetBytes(4) & 0x1FFFFFFF;
    } else {
        index = decoder.GetBytes(2) & 0x1FFF;
    }
    key = {static_cast<std::int32_t>(index), 0};
    if (decoder.HasFailed() || (first & 0x80) == 0) {
        return decoder.GetStatus();
    }
    const std::uint32_t type = decoder.PeekByte();
    if (!decoder.HasFailed()) {
        key.typeCode = decoder.GetBytes((type & kTypeMask) < kFirstTypeWithExtraWords ? 1 : 2);
    }
    return decoder.GetStatus();
}

std::int32_t ReadLeafChild(Map& map, ArchiveDecoder& decoder, const SlotKey& key) {
    const bool hasExtra = key.typeCode > 0xFF;
    const LeafKind kind =
        DecodeTypeCode(hasExtra ? key.typeCode >> 8 : key.typeCode, hasExtra ? key.typeCode & 0xFF : 0);
    if (!IsKnownType(kind.type)) {
        return SkipWords(decoder, kind.extraWords);
    }
    return ReadChild(decoder, kind.type, kind.temporality, false,
                     [&](NodeType type, SemanticTag tag) { return map.NewNode(key.index, type, false, tag); });
}

std::int32_t ReadObjectChild(Map& map, ArchiveDecoder& decoder, const SlotKey& key) {
    std::uint16_t objectTag = 0;
    std::int32_t result = decoder.ReadObjectTag(&objectTag);
    if (result != ResultSuccess) {
        return result < 0 ? result : ResultSuccess;  // no object: nothing is made for this key
    }
    const ObjectKind kind = DecodeObjectTag(objectTag);
    if (IsKnownType(kind.type)) {
        result = ReadChild(decoder, kind.type, kind.temporality, kind.longCount,
                           [&](NodeType type, SemanticTag tag) { return map.NewNode(key.index, type, false, tag); });
    }
    return result < 0 ? result : decoder.EndReadObject();
}

}  // namespace

std::int32_t WriteMap(const MapChildren& children, COrvWriteArchive* archive, bool withTransient) {
    return WriteMap(children, ArchiveWriter(archive), withTransient);
}

std::int32_t WriteMap(const MapChildren& children, ArchiveWriter out, bool withTransient) {
    const WrittenChildren written(children, GetLimit(withTransient));
    return WriteMapWith(children, out, withTransient, written.GetCount(),
                        [&](auto use) { return written.ForEach(use); });
}

// Only the composite children of the fixed slots are written; the count in the header counts all the same what is not.
// kept-on-purpose: root-write-count
std::int32_t WriteRootMap(const MapChildren& children, ArchiveWriter out, bool withTransient, int slotFlags) {
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

std::int32_t WriteRoot(Node& root, ArchiveWriter out, bool withTransient, int slotFlags) {
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
    std::vector<SlotKey> keys;
    for (std::uint32_t i = 0; result >= 0 && i < count; ++i) {
        SlotKey key{};
        result = ReadSlotKey(decoder, key);
        if (result >= 0) {
            keys.push_back(key);
        }
    }
    decoder.Realign();
    for (auto key = keys.begin(); result >= 0 && key != keys.end(); ++key) {
        result = key->typeCode != 0 ? ReadLeafChild(map, decoder, *key) : ReadObjectChild(map, decoder, *key);
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
