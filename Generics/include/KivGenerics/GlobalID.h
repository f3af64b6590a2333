#pragma once

#include <cstdint>

#include <KivBase/Guid.h>
#include <KivGenerics/Node.h>

namespace KivGenerics {

/// A leaf that holds a GUID; all zero when new.
class KIV_GENERICS_EXPORT GlobalID final : public Node {
public:
    using Node::WriteToArchive;

    static constexpr NodeType StaticType = NodeTypeGlobalID;

    const GUID& Get() const noexcept { return value_; }
    void Set(const GUID& value) {
        CheckReadOnly();
        value_ = value;
    }
    /// True when all 16 bytes are zero.
    bool IsNull() const noexcept;

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override;
    void Clear() override;
    /// As Populate(Node*).
    void Populate(GlobalID* other) { Populate(static_cast<Node*>(other)); }
    void Populate(Node* other) override;
    bool MergeWith(Node* other, bool flag) override;
    std::int32_t WriteToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient) override;
    std::int32_t ReadFromArchive(ArchiveDecoder& decoder, bool longCount) override;
    std::int32_t SizeDefnArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) override;
    VisitCode Visit(Visitor* visitor, bool postOrder) override;

protected:
    VisitCode IterateInner(Visitor* visitor, SemanticTag tag, int flags) override;

private:
    friend class LeafSetter;
    friend class NodeSource;
    friend class TreeImpl;
    friend struct NodeAccess;

    explicit GlobalID(ChangeGuard* tree) noexcept : Node(tree, StaticType) {}
    GlobalID(ChangeGuard* tree, NodeOwner& owner, int index) noexcept : Node(tree, owner, index, StaticType) {}
    GlobalID(const GlobalID& like, NodeOwner& owner, int index) noexcept : Node(like, owner, index) {}

    GUID value_{};
};

}  // namespace KivGenerics
