// How maps are written and sized.

#include <algorithm>

#include <KivCOMShared/COrvSizeArchive.h>

#include "core/MapChildren.h"
#include "persistence/BytePacker.h"
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
          out_(out),
          withTransient_(withTransient),
          written_{out.IsAllPersistent(), GetLimit(withTransient)} {}

    /// All children that are not too transient.
    void Gather(const MapChildren& children) {
        for (int slot = 0; slot < children.slotCount; ++slot) {
            Node* const child = children.slots[slot];
            PrefetchBehind(child);
            if (child != nullptr && written_.Has(*child)) {
                (IsCompositeType(child->GetType()) ? *--firstComposite_ : *endOfLeaves_++) = child;
            }
        }
        overflow_ = children.overflow;
        count_ = static_cast<int>(endOfLeaves_ - slots_ + (slots_ + kMostSlots - firstComposite_)) + CountBeyond();
    }

    // Only the composite children of the fixed slots are written; the count in the header counts all the same what is not.
    // kept-on-purpose: root-write-count
    void GatherOfRoot(const MapChildren& children, int slotFlags) {
        for (int slot = 0; slot < children.slotCount; ++slot) {
            Node* const child = children.slots[slot];
            if (child != nullptr && IsCompositeType(child->GetType()) && written_.Has(*child) &&
                IsSlotWanted(slot, withTransient_, slotFlags)) {
                *--firstComposite_ = child;
            }
        }
        count_ = GetMapSize(children, GetLimit(withTransient_));
    }

    std::int32_t Write() {
        std::int32_t result = out_.BeginObject(GetObjectTag(map_, count_ < kLongCount ? NodeTypeMap : kLongMap));
        if (result >= 0) {
            result = WriteHeader();
        }
        if (result >= 0) {
            result = WriteAllLeaves();
        }
        if (result >= 0) {
            result = ForEachComposite([this](Node& child) { return WriteComposite(child, out_, withTransient_); });
        }
        return result < 0 ? result : out_.EndObject();
    }

private:
    static constexpr int kMostSlots = 16;

    int CountBeyond() const {
        if (overflow_ == nullptr || written_.areAll) {
            return overflow_ != nullptr ? static_cast<int>(overflow_->size()) : 0;
        }
        int count = 0;
        for (auto run = overflow_->begin(); run.GetRunLength() > 0; run.SkipRun()) {
            count += static_cast<int>(std::count_if(run.GetRunValues(), run.GetRunValues() + run.GetRunLength(),
                                                    [this](Node* child) { return written_.Has(*child); }));
        }
        return count;
    }

    std::int32_t WriteHeader() {
        BytePacker packer(out_);
        PackSemanticTag(packer, map_.GetSemanticTagNV());
        PackCount(packer, static_cast<std::uint32_t>(count_));
        PackLeafKeys(packer, slots_, endOfLeaves_);
        if (overflow_ != nullptr) {
            for (auto run = overflow_->begin(); run.GetRunLength() > 0; run.SkipRun()) {
                PackLeafKeys(packer, run.GetRunValues(), run.GetRunValues() + run.GetRunLength());
            }
        }
        ForEachComposite([&packer](const Node& composite) {
            PackCompositeKey(packer, composite);
            return ResultSuccess;
        });
        return packer.Flush();
    }

    void PackLeafKeys(BytePacker& packer, Node* const* next, Node* const* end) {
        for (; next != end; ++next) {
            PrefetchBehind(*next);
            if (IsCompositeType((*next)->GetType())) {
                hasCompositesBeyond_ = true;
            } else if (written_.Has(**next)) {
                PackLeafKey(packer, **next);
            }
        }
    }

    std::int32_t WriteAllLeaves() const {
        std::int32_t result = WriteLeavesAmong(slots_, endOfLeaves_);
        if (overflow_ != nullptr) {
            for (auto run = overflow_->begin(); result >= 0 && run.GetRunLength() > 0; run.SkipRun()) {
                result = WriteLeavesAmong(run.GetRunValues(), run.GetRunValues() + run.GetRunLength());
            }
        }
        return result;
    }

    std::int32_t WriteLeavesAmong(Node* const* next, Node* const* end) const {
        std::int32_t result = WriteLeaves<Touch::Again>(next, end, written_, out_, withTransient_);
        while (result >= 0 && next != end) {
            ++next;  // a composite
            result = WriteLeaves<Touch::Again>(next, end, written_, out_, withTransient_);
        }
        return result;
    }

    /// Calls `use(composite)` until it answers a failure, which is the answer then.
    template <class Use>
    std::int32_t ForEachComposite(Use use) const {
        std::int32_t result = ResultSuccess;
        for (Node* const* place = slots_ + kMostSlots; result >= 0 && place != firstComposite_;) {
            result = use(**--place);
        }
        if (hasCompositesBeyond_) {
            for (auto child = overflow_->begin(); result >= 0 && child != overflow_->end(); ++child) {
                Node& node = *child.Value();
                result = IsCompositeType(node.GetType()) && written_.Has(node) ? use(node) : ResultSuccess;
            }
        }
        return result;
    }

    const Map& map_;
    const ArchiveWriter& out_;
    const bool withTransient_;
    const WrittenChildren written_;
    int count_ = 0;  // as the header says
    const MapOverflow* overflow_ = nullptr;  // null where nothing of it is written
    bool hasCompositesBeyond_ = false;  // in it; known when the leaves' keys have been written
    Node* slots_[kMostSlots];  // from the front the leaves in the fixed slots, from the back the composites
    Node** endOfLeaves_ = slots_;
    Node** firstComposite_ = slots_ + kMostSlots;
};

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
