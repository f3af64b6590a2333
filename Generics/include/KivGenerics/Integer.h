#pragma once

#include <cstdint>

#include <KivGenerics/Node.h>

namespace KivGenerics {

/// A leaf that holds a signed 32-bit number; 0 when new.
///
/// Merging different numbers is a conflict, except at index 8 of a map tagged 100.
class KIV_GENERICS_EXPORT Integer final : public Node {
public:
    using Node::WriteToArchive;

    static constexpr NodeType StaticType = NodeTypeInteger;

    std::int32_t Get() const noexcept { return value_; }
    void Set(std::int32_t value) {
        CheckReadOnly();
        value_ = value;
    }

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override;
    void Clear() override;
    /// As Populate(Node*).
    void Populate(Integer* other) { Populate(static_cast<Node*>(other)); }
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

    explicit Integer(ChangeGuard* tree) noexcept : Node(tree, StaticType) {}
    Integer(ChangeGuard* tree, NodeOwner& owner, int index) noexcept : Node(tree, owner, index, StaticType) {}
    Integer(const Integer& like, NodeOwner& owner, int index) noexcept : Node(like, owner, index) {}

    std::int32_t value_ = 0;
};

}  // namespace KivGenerics
