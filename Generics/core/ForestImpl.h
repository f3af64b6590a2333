#pragma once

#include <cstddef>
#include <cstdint>

#include <KivBase/Buffer.h>
#include <KivBase/ReferenceCounted.h>
#include <KivGenerics/Node.h>
#include <KivGenerics/ObjectType.h>
#include <KivSynch/AtomicLong.h>

namespace KivGenerics {

/// The memory of one or more trees, and the released nodes that wait in it to be handed out again.
///
/// Lives in:   the heap; counted by its trees.
/// Dies with:  its last tree. All nodes go at once, with the buffer.
/// Threads:    the count from any thread; everything else one thread at a time.
class ForestImpl final : public KivBase::ReferenceCounted {
public:
    ~ForestImpl() override;
    std::int32_t AddRef() override;
    std::int32_t Release() override;
    virtual std::size_t BufferQueryA() const;
    virtual std::size_t BufferQueryB() const;

    /// Throws std::bad_alloc when there is no buffer to be had.
    explicit ForestImpl(EnumOrvObjectType type);

    /// False as long as no map has ever waited.
    bool MayHaveWaitingMaps() const noexcept { return mapsWait_; }
    /// A waiting map that can serve as a new one of this tag, which does not wait any more; null when there is none.
    Node* TakeReusableMap(SemanticTag tag) noexcept { return mapsWait_ ? FindReusableMap(tag) : nullptr; }
    /// The nodes that wait, by kind - 1; the place of maps stays empty.
    Node* const* GetWaiting() const noexcept { return freeByType_; }
    /// Takes the node of this kind, which is not the map's, that waits.
    Node* TakeWaiting(NodeType type) noexcept { return Take(freeByType_[type - 1]); }
    /// Lets a released node wait, instead of the one of its kind that does.
    void RecycleNode(Node* node) noexcept;

    KivBase::Buffer& GetBuffer() const noexcept { return *buffer_; }

private:
    static constexpr int kTypes = 12;
    static constexpr int kSlotCounts = 16;

    static Node* Take(Node*& waiting) noexcept;
    Node* FindReusableMap(SemanticTag tag) noexcept;

    KivSynch::AtomicLong refCount_;
    KivBase::Buffer* buffer_;
    // Of each kind the node released last, and no other.
    Node* freeByType_[kTypes] = {};  // by kind - 1; the place of maps stays empty
    Node* freeMaps_[kSlotCounts] = {};  // by slot count - 1; without an overflow store
    Node* freeMapsWithOverflow_[kSlotCounts] = {};  // by slot count - 1; with one
    bool mapsWait_ = false;  // a map waited once; not set back
    std::int32_t tag107Overflow_ = 0;  // 0 unknown, 1 maps of tag 107 come with an overflow store, 2 without
};

/// The block size of a forest's buffer, in bytes; see EnumOrvObjectType.
std::int32_t GetBlockSize(EnumOrvObjectType type) noexcept;

}  // namespace KivGenerics
