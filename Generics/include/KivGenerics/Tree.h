#pragma once

#include <cstddef>
#include <cstdint>

#include <KivBase/ReferenceCounted.h>
#include <KivBase/ReturnPtrI.h>
#include <KivBase/WString.h>
#include <KivGenerics/Export.h>
#include <KivGenerics/Forward.h>
#include <KivGenerics/NodeType.h>
#include <KivGenerics/ObjectType.h>
#include <KivGenerics/SemanticTag.h>

namespace KivGenerics {

/// One tree of nodes, held by counted handles.
///
/// Lives in:   the heap; its nodes live in its forest, which several trees may share.
/// Dies with:  its last handle. The nodes go, all at once, with the last tree of the forest.
/// Threads:    handles may be taken and dropped on any thread; everything else by one thread at a time for all trees of a
///             forest.
/// On failure: misuse throws Exception before anything is changed; a change of a read-only tree throws
///             ReadOnlyException; std::bad_alloc leaves the tree usable.
class KIV_GENERICS_EXPORT Tree : public KivBase::ReferenceCounted {
protected:
    ~Tree() override;

public:
    Tree() = default;
    Tree(const Tree& other);
    Tree& operator=(const Tree& other);

    std::int32_t AddRef() override = 0;
    std::int32_t Release() override = 0;
    /// Null when the tree is empty.
    virtual Node* GetRoot() const = 0;
    virtual bool IsEmpty() const = 0;
    virtual bool IsReadOnly() const = 0;
    /// How many changes there were since the tree was made or the count reset, at the 32-bit wrap around negative.
    virtual int GetChangeCount() const = 0;
    /// Empties the tree.
    virtual void RemoveRoot() = 0;
    /// Removes every node whose effective temporality is not TemporalityPersistent, with everything below it.
    virtual void ClearTemporaryNodes() = 0;
    /// Makes `node`, of this tree, its root, taking it out of its parent; the old root is cleared. Throws Exception for null
    /// or a node of another tree.
    virtual void SetRoot(Node* node) = 0;
    /// Makes a new root; the old one is cleared, or, with keepOld, becomes child 0 of the new one, which must be a
    /// composite then.
    virtual Node* NewRoot(NodeType type, bool keepOld = false, SemanticTag tag = SemanticTagNone) = 0;
    /// Replaces the content by a copy of another tree's; returns the new root. Throws Exception for null or this tree.
    virtual Node* CopyFromTree(Tree* other) = 0;
    /// Replaces the content by a copy of a node of another tree; returns the new root. Throws Exception for null or a node
    /// of this tree.
    virtual Node* CopyFromNode(Node* source) = 0;
    /// From now on every change throws. There is no way back but a successful save, which leaves the tree writable.
    virtual void SetReadOnly() = 0;
    virtual void ResetChangeCount() = 0;
    /// The node whose Node::GetKey is `key`, or null. Every index must be closed by ':'; digits after the last one are read
    /// and not used. The empty key is the root's.
    virtual Node* FindNodeByKey(const KivBase::WString& key) const = 0;
    /// Saves what is persistent, or also what is transient. The root must be a map. Returns 0, ResultNotImplemented for
    /// another root, or the stream's first failure; while the root is being written the tree is read-only, and stays so
    /// when writing it fails. Throws Exception for null.
    virtual std::int32_t SaveToStream(KivCOMShared::BlockWriteStream* stream, bool withTransient) = 0;
    /// Discards the content and loads another. Returns 0, a result of ResultCode.h or the stream's first failure; what was
    /// read up to then stays. Throws Exception for null.
    virtual std::int32_t LoadFromStream(KivCOMShared::BlockReadStream* stream) = 0;
    /// As SaveToStream. With `withTransient`, fixed slot 0 of the root is written only if `slotFlags` has one of the bits
    /// 0x11, slot 1 only with 0x02, slot 2 only with 0x08.
    virtual std::int32_t SaveToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient, int slotFlags) = 0;
    /// As LoadFromStream.
    virtual std::int32_t LoadFromArchive(KivCOMShared::COrvReadArchive* archive) = 0;
    /// Adds what a save might write to the sizer's totals; returns 0. Throws Exception for null.
    virtual std::int32_t SizeArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) = 0;
    /// Recalculates the derived temporalities if anything has changed since the last time.
    virtual void UpdateDerivedTemporality() = 0;
    /// What the buffer of the forest answers to its first query: with the default platform the bytes it has reserved from the
    /// system.
    virtual std::size_t BufferQueryA() const = 0;
    /// The same for its second query: the bytes in use.
    virtual std::size_t BufferQueryB() const = 0;
    /// A new, empty tree on the same forest.
    virtual KivBase::ReturnPtrI<Tree> CreateTreeInForest() = 0;
};

/// A new, empty tree on a forest of its own; an empty handle when there is no memory for it.
KIV_GENERICS_EXPORT KivBase::ReturnPtrI<Tree> CreateGenericTree(EnumOrvObjectType type);

}  // namespace KivGenerics
