#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include <KivGenerics/Composite.h>
#include <KivGenerics/NodeSource.h>
#include <KivGenerics/Tree.h>
#include <KivSynch/AtomicLong.h>

#include "core/ForestImpl.h"

namespace KivGenerics {

class ArchiveWriter;
class Map;

/// The one implementation of Tree.
class TreeImpl final : public Tree, public NodeSource {
public:
    ~TreeImpl() override;
    std::int32_t AddRef() override;
    std::int32_t Release() override;
    Node* GetRoot() const override;
    bool IsEmpty() const override;
    bool IsReadOnly() const override;
    int GetChangeCount() const override;
    void RemoveRoot() override;
    void ClearTemporaryNodes() override;
    void SetRoot(Node* node) override;
    Node* NewRoot(NodeType type, bool keepOld, SemanticTag tag) override;
    Node* CopyFromTree(Tree* other) override;
    Node* CopyFromNode(Node* source) override;
    void SetReadOnly() override;
    void ResetChangeCount() override;
    Node* FindNodeByKey(const KivBase::WString& key) const override;
    std::int32_t SaveToStream(KivCOMShared::BlockWriteStream* stream, bool withTransient) override;
    std::int32_t LoadFromStream(KivCOMShared::BlockReadStream* stream) override;
    std::int32_t SaveToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient, int slotFlags) override;
    std::int32_t LoadFromArchive(KivCOMShared::COrvReadArchive* archive) override;
    std::int32_t SizeArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) override;
    void UpdateDerivedTemporality() override;
    std::size_t BufferQueryA() const override;
    std::size_t BufferQueryB() const override;
    KivBase::ReturnPtrI<Tree> CreateTreeInForest() override;

    TreeImpl();
    /// On a forest of its own; where that cannot be made, the tree has none and must not be used.
    explicit TreeImpl(EnumOrvObjectType type);
    explicit TreeImpl(ForestImpl* forest);
    TreeImpl(const TreeImpl&) = delete;
    TreeImpl& operator=(const TreeImpl&) = delete;

    /// The node factory, the only place where nodes come from: a node of this kind for `owner` and `index`, reused or new.
    /// The caller places it. Null where a host's buffer answers null. Throws Exception for a kind outside 1 to 12.
    Node* CreateNode(NodeType type, NodeOwner& owner, int index, SemanticTag tag);
    /// Create, which counts one change, and `changes` - 1 more for what the caller does to the new node at once.
    template <class T>
    T* CreateChanged(NodeOwner& owner, int index, std::uint32_t changes) {
        if (CanCreateNext<T>()) {
            return CreateNext<T>(owner, index, changes);
        }
        T* const node = Create<T>(owner, index);
        if (node != nullptr) {
            CountMore(changes - 1);
        }
        return node;
    }
    /// CreateNode for a map of a tree that is not read-only; the change is not counted.
    Map* CreateMap(NodeOwner& owner, int index, SemanticTag tag);
    /// True when nodes of a plain kind come straight from the buffer: the tree is not read-only, and none waits to be reused.
    template <class T>
    bool MayTake() const noexcept {
        static_assert(IsPlain<T>);
        return !readOnly_ && waiting_[T::StaticType - 1] == nullptr;
    }
    /// The last step of CreateNode for one kind.
    template <class T>
    static Node* Make(TreeImpl& tree, NodeOwner& owner, int index);
    /// Hands a node that has left its place to the forest and resets it, with everything below it.
    void ReleaseNode(Node* node);
    /// The first half of ReleaseNode: the node waits in the forest, but is not reset.
    void Recycle(Node* node) noexcept {
        if (root_ == node) {
            root_ = nullptr;
        }
        forest_->RecycleNode(node);
    }
    /// Takes a node out of its parent, if it has one, and returns it.
    static Node* DetachFromParent(Node* node);

    /// True while every derived temporality below the root is what UpdateDerivedTemporality made it: all children of a vector
    /// have that of the vector.
    bool HasUpdatedTemporality() const noexcept { return temporalityUpdated_ && !IsTemporalityStale(); }
    /// True while every derived temporality below the root is TemporalityPersistent, and nothing else may stand there.
    bool IsAllPersistent() const noexcept { return isAllPersistent_ && !hasStrays_ && HasUpdatedTemporality(); }
    /// True while every own and every derived temporality below the root is one of TemporalityDefault to TemporalityTemporary,
    /// and nothing else may stand there.
    bool IsAllOnScale() const noexcept { return isAllOnScale_ && !hasStrays_ && HasUpdatedTemporality(); }
    ForestImpl* GetForest() const noexcept { return forest_; }

private:
    friend class NodeSource;
    class ClearTemporary;

    template <class T>
    T* Construct(NodeOwner& owner, int index);
    void Adopt(Node& node, NodeOwner& owner, int index) noexcept;
    void UseForest() noexcept;
    void CalculateAll();
    std::int32_t Save(const ArchiveWriter& out, bool withTransient, int slotFlags);
    std::int32_t Load(ArchiveDecoder& decoder);
    Map* ConstructMap(NodeOwner& owner, int index, SemanticTag tag);
    Map* CreateAnyMap(NodeOwner& owner, int index, SemanticTag tag);

    KivSynch::AtomicLong refCount_;
    Node* root_ = nullptr;
    ForestImpl* forest_ = nullptr;
};

// A host's buffer may answer null, which a new-expression must not see: the memory is asked for first.
template <class T>
T* TreeImpl::Construct(NodeOwner& owner, int index) {
    static_assert(noexcept(T(static_cast<TreeImpl*>(nullptr), owner, index)), "the memory would be lost");
    void* const memory = GetBuffer()->template Take<T>();
    return memory != nullptr ? ::new (memory) T(this, owner, index) : nullptr;
}

template <class T>
Node* TreeImpl::Make(TreeImpl& tree, NodeOwner& owner, int index) {
    return tree.Construct<T>(owner, index);
}

}  // namespace KivGenerics
