#pragma once

#include <cstddef>
#include <cstdint>

#include <KivGenerics/Composite.h>
#include <KivGenerics/Tree.h>
#include <KivSynch/AtomicLong.h>

#include "core/ForestImpl.h"
#include "core/Raise.h"

namespace KivGenerics {

/// The one implementation of Tree.
class TreeImpl final : public Tree {
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

    /// The modification guard: throws ReadOnlyException on a read-only tree, else counts the change.
    void CheckReadOnly() {
        TestWritable();
        changeCount_ = static_cast<std::int32_t>(static_cast<std::uint32_t>(changeCount_) + 1U);
        temporalityStale_ = true;
    }
    /// The first half of the guard: nothing is counted.
    void TestWritable() const {
        if (readOnly_) {
            RaiseReadOnly();
        }
    }

    /// The node factory, the only place where nodes come from: a node of this kind for `parent` and `index`, reused or new.
    /// The caller places it. Null where a host's buffer answers null. Throws Exception for a kind outside 1 to 12.
    Node* CreateNode(NodeType type, Composite* parent, int index, SemanticTag tag);
    /// Hands a node that has left its place to the forest and resets it, with everything below it.
    void ReleaseNode(Node* node);
    /// Takes a node out of its parent, if it has one, and returns it.
    static Node* DetachFromParent(Node* node);

    ForestImpl* GetForest() const noexcept { return forest_; }
    KivBase::Buffer* GetBuffer() const noexcept { return &forest_->GetBuffer(); }

private:
    class ClearTemporary;

    template <class T>
    Node* Construct(Composite* parent, int index);
    Node* ConstructMap(Composite* parent, int index, SemanticTag tag);

    KivSynch::AtomicLong refCount_;
    Node* root_ = nullptr;
    std::int32_t changeCount_ = 0;
    bool readOnly_ = false;
    bool temporalityStale_ = true;
    ForestImpl* forest_ = nullptr;
};

}  // namespace KivGenerics
