// How maps are written, read and sized.

#include <algorithm>
#include <cstddef>

#include <KivCOMShared/COrvSizeArchive.h>

#include "core/LeafRun.h"
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
constexpr std::uint32_t kOneByteIndexes = 64;
constexpr std::uint32_t kTwoByteIndexes = 8192;
constexpr std::uint32_t kFourByteIndexes = 0x20000000;

void PackLeafKey(BytePacker& packer, const Node& leaf) {
    const auto index = static_cast<std::uint32_t>(leaf.GetIndex());
    const std::uint32_t typeByte = GetTypeByteOfLeaf(leaf);
    if (index < kOneByteIndexes) {
        packer.Put((0x80 | index) << 8 | typeByte, 2);
    } else if (index < kTwoByteIndexes) {
        packer.Put((0xC000 | index) << 8 | typeByte, 3);
    } else {
        if (index < kFourByteIndexes) {
            packer.Put(0xE0000000 | index, 4);
        }
        packer.Put(typeByte, 1);
    }
}

void PackCompositeKey(BytePacker& packer, const Node& composite) {
    const auto index = static_cast<std::uint32_t>(composite.GetIndex());
    if (index < kOneByteIndexes) {
        packer.Put(index, 1);
    } else if (index < kTwoByteIndexes) {
        packer.Put(0x4000 | index, 2);
    } else if (index < kFourByteIndexes) {
        packer.Put(0x60000000 | index, 4);
    }
}

// With transient nodes, a root's first three slots are written only if asked for.
// kept-on-purpose: slot-flags
bool IsSlotWanted(int slot, bool withTransient, int slotFlags) noexcept {
    constexpr int kGates[] = {0x11, 0x02, 0x08};
    return !withTransient || slot > 2 || (slotFlags & kGates[slot]) != 0;
}

/// Writes a map: keys first, then values, and of both the leaves' before the composites', each in index order.
class MapWriter {
public:
    MapWriter(const MapChildren& children, const ArchiveWriter& out, bool withTransient)
        : map_(children.map),
          overflow_(children.overflow),
          out_(out),
          withTransient_(withTransient),
          isAllWritten_(out.IsAllPersistent()) {}

    /// All children that are not too transient.
    void Gather(const MapChildren& children) {
        for (int slot = 0; slot < children.slotCount; ++slot) {
            Node* const child = children.slots[slot];
            if (child != nullptr && IsWritten(*child)) {
                (IsCompositeType(child->GetType()) ? slots_[--composites_] : slots_[leaves_++]) = child;
            }
        }
        if (overflow_ != nullptr) {
            CountBeyond();
        }
        count_ = leaves_ + leavesBeyond_ + kMostSlots - composites_ + compositesBeyond_;
    }

    // Only the composite children of the fixed slots are written; the count in the header counts all the same what is not.
    // kept-on-purpose: root-write-count
    void GatherOfRoot(const MapChildren& children, int slotFlags) {
        for (int slot = 0; slot < children.slotCount; ++slot) {
            Node* const child = children.slots[slot];
            if (child != nullptr && IsCompositeType(child->GetType()) && IsWritten(*child) &&
                IsSlotWanted(slot, withTransient_, slotFlags)) {
                slots_[--composites_] = child;
            }
        }
        count_ = GetMapSize(children, GetLimit(withTransient_));
    }

    std::int32_t Write() const {
        std::int32_t result = out_.BeginObject(GetObjectTag(map_, count_ < kLongCount ? NodeTypeMap : kLongMap));
        if (result >= 0) {
            result = WriteHeader();
        }
        if (result >= 0) {
            result = ForEach(false, [this](Node& leaf) { return WriteLeaf(leaf, out_, withTransient_); });
        }
        if (result >= 0) {
            result = ForEach(true, [this](Node& child) { return WriteComposite(child, out_, withTransient_); });
        }
        return result < 0 ? result : out_.EndObject();
    }

private:
    static constexpr int kMostSlots = 16;

    /// Children side by side.
    struct Run {
        Node* const* next;
        Node* const* end;
        std::ptrdiff_t step;
    };

    bool IsWritten(Node& child) const {
        return isAllWritten_ || NodeAccess::GetDerived(child) <= GetLimit(withTransient_);
    }

    void CountBeyond() {
        for (auto run = overflow_->begin(); run.GetRunLength() > 0; run.SkipRun()) {
            Node* const* const values = run.GetRunValues();
            for (int i = 0; i < run.GetRunLength(); ++i) {
                const bool isComposite = IsCompositeType(values[i]->GetType());
                (isComposite ? compositesBeyond_ : leavesBeyond_) += IsWritten(*values[i]) ? 1 : 0;
            }
        }
    }

    std::int32_t WriteHeader() const {
        BytePacker packer(out_);
        PackSemanticTag(packer, map_.GetSemanticTagNV());
        PackCount(packer, static_cast<std::uint32_t>(count_));
        ForEach(false, [&packer](const Node& leaf) {
            PackLeafKey(packer, leaf);
            return ResultSuccess;
        });
        ForEach(true, [&packer](const Node& composite) {
            PackCompositeKey(packer, composite);
            return ResultSuccess;
        });
        return packer.Flush();
    }

    /// Calls `use(child)` for the leaves, or the composites, until it answers a failure, which is the answer then, else 0.
    template <class Use>
    std::int32_t ForEach(bool composites, Use use) const {
        Run run =
            composites ? Run{slots_ + kMostSlots - 1, slots_ + composites_ - 1, -1} : Run{slots_, slots_ + leaves_, 1};
        MapOverflow::Iterator beyond;
        if ((composites ? compositesBeyond_ : leavesBeyond_) > 0) {
            beyond = overflow_->begin();
        }
        for (;;) {
            for (; run.next != run.end; run.next += run.step) {
                Node& child = **run.next;
                const bool isMeant = IsCompositeType(child.GetType()) == composites && IsWritten(child);
                const std::int32_t result = isMeant ? use(child) : ResultSuccess;
                if (result < 0) {
                    return result;
                }
            }
            if (beyond.GetRunLength() == 0) {
                return ResultSuccess;
            }
            run = Run{beyond.GetRunValues(), beyond.GetRunValues() + beyond.GetRunLength(), 1};
            beyond.SkipRun();
        }
    }

    const Map& map_;
    const MapOverflow* const overflow_;
    const ArchiveWriter& out_;
    const bool withTransient_;
    const bool isAllWritten_;
    int count_ = 0;  // as the header says
    int leaves_ = 0;  // the end of the leaves in slots_
    int composites_ = kMostSlots;  // the last of the composites in it
    int leavesBeyond_ = 0;  // in the overflow store
    int compositesBeyond_ = 0;
    Node* slots_[kMostSlots];  // from the front the leaves in the fixed slots, from the back the composites
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

std::uint32_t ReadTypeCode(ArchiveDecoder& decoder) {
    const std::uint32_t type = decoder.GetByte();
    const bool hasExtra = (type & kTypeMask) >= kFirstTypeWithExtraWords;
    return hasExtra ? type << 8 | decoder.GetByte() : type;
}

/// Adds the next key. What it adds means nothing when the decoder has failed afterwards.
void ReadSlotKey(ArchiveDecoder& decoder, ArchiveDecoder::Keys& keys) {
    const std::uint32_t first = decoder.PeekByte();
    std::uint32_t index = 0;
    if (decoder.HasFailed()) {
        return;
    }
    if ((first & 0x40) == 0) {
        index = decoder.GetByte() & 0x7F;
    } else if ((first & 0x20) != 0) {
        index = decoder.GetBytes(4) & 0x1FFFFFFF;
    } else {
        index = decoder.GetBytes(2) & 0x1FFF;
    }
    const bool hasType = (first & 0x80) != 0 && !decoder.HasFailed();
    keys.Add(static_cast<std::int32_t>(index), hasType ? ReadTypeCode(decoder) : 0);
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
/// neither the store nor the tree needs memory for them. `done` says how many there were.
template <class T>
std::int32_t ReadRun(const MapChildren& children, ArchiveDecoder& decoder, const ArchiveDecoder::Keys& keys,
                     std::size_t first, std::size_t& done) {
    TreeImpl& tree = *NodeAccess::GetTree(children.map);
    const std::size_t room = (std::min)(children.overflow->CountAppendable(), LeafRun<T>::Count(tree));
    const std::size_t most = (std::min)(room, keys.CountAlike(first));
    const EnumOrvGenericsTemporality temporality = DecodeTypeCode(keys.Get(first).typeCode, 0).temporality;
    constexpr std::uint32_t kChanges = 3;  // being made, and two temporalities
    LeafRun<T> run(tree, &children.map, most, kChanges);
    std::int32_t result = ResultSuccess;
    for (done = 0; result >= 0 && done < most; ++done) {
        const int index = keys.Get(first + done).index;
        T* const leaf = run.Make(index);
        children.overflow->Append(index, leaf);
        NodeAccess::SetTemporalityOfNew(*leaf, temporality);
        result = ReadValue(*leaf, decoder);
    }
    return result;
}

/// The same for whatever the key `first` names; nothing is done where that is no plain leaf for the end of the store.
std::int32_t ReadRunBeyond(const MapChildren& children, ArchiveDecoder& decoder, const ArchiveDecoder::Keys& keys,
                           std::size_t first, std::size_t& done) {
    const SlotKey key = keys.Get(first);
    done = 0;
    if (children.IsSlot(key.index) || !children.HasRoom(key.index)) {
        return ResultSuccess;
    }
    switch (DecodeTypeCode(key.typeCode <= 0xFF ? key.typeCode : 0, 0).type) {
        case NodeTypeInteger: return ReadRun<Integer>(children, decoder, keys, first, done);
        case NodeTypeGlobalID: return ReadRun<GlobalID>(children, decoder, keys, first, done);
        case NodeTypeDouble: return ReadRun<Double>(children, decoder, keys, first, done);
        case NodeTypeBoolean: return ReadRun<Boolean>(children, decoder, keys, first, done);
        case NodeTypeInteger64: return ReadRun<Integer64>(children, decoder, keys, first, done);
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

std::int32_t WriteMap(const MapChildren& children, COrvWriteArchive* archive, bool withTransient) {
    return WriteMap(children, ArchiveWriter(archive), withTransient);
}

std::int32_t WriteMap(const MapChildren& children, const ArchiveWriter& out, bool withTransient) {
    MapWriter writer(children, out, withTransient);
    writer.Gather(children);
    return writer.Write();
}

std::int32_t WriteRootMap(const MapChildren& children, const ArchiveWriter& out, bool withTransient, int slotFlags) {
    MapWriter writer(children, out, withTransient);
    writer.GatherOfRoot(children, slotFlags);
    return writer.Write();
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
            result = ReadRunBeyond(children, decoder, keys, i + 1, done);
            i += static_cast<std::uint32_t>(done);
        }
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
