#pragma once

#include <cstdint>

#include <KivGenerics/Node.h>

namespace KivGenerics {

/// A leaf that holds true or false; false when new.
class KIV_GENERICS_EXPORT Boolean final : public Node {
public:
    using Node::WriteToArchive;

    static constexpr NodeType StaticType = NodeTypeBoolean;

    bool Get() const noexcept { return value_; }
    void Set(bool value) {
        CheckReadOnly();
        value_ = value;
    }

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override;
    void Clear() override;
    /// As Populate(Node*).
    void Populate(Boolean* other) { Populate(static_cast<Node*>(other)); }
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

    explicit Boolean(ChangeGuard* tree) noexcept : Node(tree, StaticType) {}
    Boolean(ChangeGuard* tree, NodeOwner& owner, int index) noexcept : Node(tree, owner, index, StaticType) {}
    Boolean(const Boolean& like, NodeOwner& owner, int index) noexcept : Node(like, owner, index) {}

    bool value_ = false;
};

}  // namespace KivGenerics
