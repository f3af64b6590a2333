// How maps are written and sized.

#include <algorithm>

#include <KivCOMShared/COrvSizeArchive.h>

#include "core/MapChildren.h"
#include "persistence/BytePacker.h"
#include "persistence/MapKeys.h"
#include "persistence/WriteNode.h"

namespace KivGenerics {
namespace {

using KivCOMShared::COrvWriteArchive;

// With transient nodes, a root's first three slots are written only if asked for.
// kept-on-purpose: slot-flags
bool IsSlotWanted(int slot, bool withTransient, int slotFlags) noexcept {
    constexpr int kGates[] = {0x11, 0x02, 0x08};
    return !withTransient || slot > 2 || (slotFlags & kGates[slot]) != 0;
}

constexpr int kMostSlots = 16;
static_assert(kMostSlots * kMostOfKey <= BytePacker::kRoom);

/// Writes a map: keys first, then values, and of both the leaves' before the composites', each in index order. What only the keys
/// and the leaves need is gone when the composites are written, so that deep trees do not need memory for it at every level.
class MapWriter {
public:
    MapWriter(const MapChildren& children, const ArchiveWriter& out, bool withTransient)
        : children_(children),
          out_(out),
          withTransient_(withTransient),
          written_{out.IsAllPersistent(), GetLimit(withTransient)} {}

    /// All children that are not too transient.
    std::int32_t Write() { return WriteCompositesAfter(WriteKeysAndLeaves()); }
    /// Only the composite children of the fixed slots are written; the count in the header counts all the same what is not.
    // kept-on-purpose: root-write-count
    std::int32_t WriteRoot(int slotFlags) { return WriteCompositesAfter(WriteKeysOfRoot(slotFlags)); }

private:
    // Not part of their callers, for the sake of the stack.
    [[gnu::noinline]] std::int32_t WriteKeysAndLeaves();
    [[gnu::noinline]] std::int32_t WriteKeysOfRoot(int slotFlags);

    template <class Written>
    Node** Gather(BytePacker& packer, Node** endOfLeaves, const Written& written);
    std::int32_t Begin(BytePacker& packer, int count) const;
    int CountBeyond(const MapOverflow& overflow) const;
    template <class Written>
    void PackLeafKeysBeyond(BytePacker& packer, const MapOverflow& overflow, const Written& written);
    void PackCompositeKeys(BytePacker& packer) const;
    std::int32_t WriteLeavesBeyond(const MapOverflow& overflow) const;
    std::int32_t WriteCompositesAfter(std::int32_t result) const;

    /// Calls `use(composite)` for those beyond the slots until it answers a failure, which is the answer then.
    template <class Use>
    std::int32_t ForEachCompositeBeyond(Use use) const {
        const MapOverflow& overflow = *children_.overflow;
        std::int32_t result = ResultSuccess;
        for (auto child = overflow.begin(); result >= 0 && child != overflow.end(); ++child) {
            Node& node = *child.Value();
            result = IsCompositeType(node.GetType()) && written_.Has(node) ? use(node) : ResultSuccess;
        }
        return result;
    }

    const MapChildren& children_;
    const ArchiveWriter& out_;
    const bool withTransient_;
    const WrittenChildren written_;
    bool hasCompositesBeyond_ = false;  // beyond the slots; known when the leaves' keys have been packed
    int compositeCount_ = 0;
    Node* composites_[kMostSlots];  // those in the slots that are written
};

/// Sorts out what is written of the slots, and packs the leaves' keys. Returns the end of the leaves.
template <class Written>
[[gnu::always_inline]] inline Node** MapWriter::Gather(BytePacker& packer, Node** endOfLeaves, const Written& written) {
    Node** endOfComposites = composites_;
    std::uint8_t* endOfKeys = packer.GetEnd();
    Node* const* const end = children_.slots + children_.slotCount;
    for (Node* const* slot = children_.slots; slot != end; ++slot) {
        Node* const child = *slot;
        PrefetchBehind(child);
        if (child == nullptr || !written.Has(*child)) {
            continue;
        }
        if (IsCompositeType(child->GetType())) {
            *endOfComposites++ = child;
        } else {
            *endOfLeaves++ = child;
            endOfKeys = StoreLeafKey(endOfKeys, *child);
        }
    }
    packer.SetEnd(endOfKeys);
    compositeCount_ = static_cast<int>(endOfComposites - composites_);
    return endOfLeaves;
}

std::int32_t MapWriter::WriteKeysAndLeaves() {
    BytePacker packer(out_);
    Node* leaves[kMostSlots];
    Node** const endOfLeaves =
        written_.areAll ? Gather(packer, leaves, AllChildren()) : Gather(packer, leaves, written_);
    const MapOverflow* const overflow = children_.overflow;
    const auto count = static_cast<int>(endOfLeaves - leaves) + compositeCount_;
    std::int32_t result = Begin(packer, overflow != nullptr ? count + CountBeyond(*overflow) : count);
    if (result < 0) {
        return result;
    }
    if (overflow != nullptr) {
        if (written_.areAll) {
            PackLeafKeysBeyond(packer, *overflow, AllChildren());
        } else {
            PackLeafKeysBeyond(packer, *overflow, written_);
        }
    }
    PackCompositeKeys(packer);
    result = packer.Flush();
    if (result >= 0) {
        const ArchiveWriter out = out_;
        Node* const* next = leaves;
        result = WriteLeaves<Touch::Again>(next, endOfLeaves, AllChildren(), out, withTransient_);
    }
    return result >= 0 && overflow != nullptr ? WriteLeavesBeyond(*overflow) : result;
}

std::int32_t MapWriter::WriteKeysOfRoot(int slotFlags) {
    for (int slot = 0; slot < children_.slotCount; ++slot) {
        Node* const child = children_.slots[slot];
        if (child != nullptr && IsCompositeType(child->GetType()) && written_.Has(*child) &&
            IsSlotWanted(slot, withTransient_, slotFlags)) {
            composites_[compositeCount_++] = child;
        }
    }
    BytePacker packer(out_);
    const std::int32_t result = Begin(packer, GetMapSize(children_, GetLimit(withTransient_)));
    if (result < 0) {
        return result;
    }
    PackCompositeKeys(packer);
    return packer.Flush();
}

/// Begins the object. The count and the tag come in front of the keys that have been packed.
[[gnu::always_inline]] inline std::int32_t MapWriter::Begin(BytePacker& packer, int count) const {
    const std::int32_t result =
        out_.BeginObject(GetObjectTag(children_.map, count < kLongCount ? NodeTypeMap : kLongMap));
    if (result >= 0) {
        PutCountInFront(packer, static_cast<std::uint32_t>(count));
        PutTagInFront(packer, children_.map.GetSemanticTagNV());
    }
    return result;
}

int MapWriter::CountBeyond(const MapOverflow& overflow) const {
    if (written_.areAll) {
        return static_cast<int>(overflow.size());
    }
    int count = 0;
    for (auto run = overflow.begin(); run.GetRunLength() > 0; run.SkipRun()) {
        count += static_cast<int>(std::count_if(run.GetRunValues(), run.GetRunValues() + run.GetRunLength(),
                                                [this](Node* child) { return written_.Has(*child); }));
    }
    return count;
}

template <class Written>
void MapWriter::PackLeafKeysBeyond(BytePacker& packer, const MapOverflow& overflow, const Written& written) {
    bool hasComposites = false;
    std::uint8_t* endOfKeys = packer.GetEnd();
    for (auto run = overflow.begin(); run.GetRunLength() > 0; run.SkipRun()) {
        Node* const* const end = run.GetRunValues() + run.GetRunLength();
        PrefetchBehind(run.GetRunValues(), end);
        for (Node* const* next = run.GetRunValues(); next != end; ++next) {
            Node& child = **next;
            PrefetchBehind(child);
            if (IsCompositeType(child.GetType())) {
                hasComposites = true;
            } else if (written.Has(child)) {
                endOfKeys = StoreLeafKey(packer.NeedRoom(endOfKeys), child);
            }
        }
    }
    packer.SetEnd(endOfKeys);
    hasCompositesBeyond_ = hasComposites;
}

[[gnu::always_inline]] inline void MapWriter::PackCompositeKeys(BytePacker& packer) const {
    std::uint8_t* endOfKeys = packer.GetEnd();
    const auto pack = [&](const Node& composite) {
        endOfKeys = StoreCompositeKey(packer.NeedRoom(endOfKeys), composite);
        return ResultSuccess;
    };
    for (int i = 0; i < compositeCount_; ++i) {
        pack(*composites_[i]);
    }
    if (hasCompositesBeyond_) {
        ForEachCompositeBeyond(pack);
    }
    packer.SetEnd(endOfKeys);
}

std::int32_t MapWriter::WriteLeavesBeyond(const MapOverflow& overflow) const {
    const ArchiveWriter out = out_;
    const WrittenChildren written = written_;
    for (auto run = overflow.begin(); run.GetRunLength() > 0; run.SkipRun()) {
        Node* const* next = run.GetRunValues();
        Node* const* const end = next + run.GetRunLength();
        for (;; ++next) {
            const std::int32_t result = WriteLeaves<Touch::Again>(next, end, written, out, withTransient_);
            if (result < 0) {
                return result;
            }
            if (next == end) {
                break;
            }
        }
    }
    return ResultSuccess;
}

[[gnu::always_inline]] inline std::int32_t MapWriter::WriteCompositesAfter(std::int32_t result) const {
    const auto write = [this](Node& composite) { return WriteComposite(composite, out_, withTransient_); };
    for (int i = 0; result >= 0 && i < compositeCount_; ++i) {
        result = write(*composites_[i]);
    }
    if (result >= 0 && hasCompositesBeyond_) {
        result = ForEachCompositeBeyond(write);
    }
    return result < 0 ? result : out_.EndObject();
}

}  // namespace

std::int32_t WriteMap(const MapChildren& children, COrvWriteArchive* archive, bool withTransient) {
    return WriteMap(children, ArchiveWriter(archive), withTransient);
}

// Not part of itself, for the sake of the stack.
[[gnu::noinline]] std::int32_t WriteMap(const MapChildren& children, const ArchiveWriter& out, bool withTransient) {
    return MapWriter(children, out, withTransient).Write();
}

std::int32_t WriteRootMap(const MapChildren& children, const ArchiveWriter& out, bool withTransient, int slotFlags) {
    return MapWriter(children, out, withTransient).WriteRoot(slotFlags);
}

std::int32_t WriteRootMap(const MapChildren& children, COrvWriteArchive* archive, bool withTransient, int slotFlags) {
    return WriteRootMap(children, ArchiveWriter(archive), withTransient, slotFlags);
}

std::int32_t WriteRoot(Node& root, const ArchiveWriter& out, bool withTransient, int slotFlags) {
    return root.GetType() == NodeTypeMap
               ? WriteRootMap(MapChildren(static_cast<Map&>(root)), out, withTransient, slotFlags)
               : root.WriteToArchive(out.GetArchive(), withTransient, slotFlags);
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
