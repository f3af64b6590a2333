#pragma once

#include <cstdint>

#include <KivGenerics/Node.h>

namespace KivGenerics {

/// A leaf that holds a signed 64-bit number; 0 when new.
///
/// Merging never compares the numbers; Visit never calls the visitor, Iterate does; a number with bit 31 set loads as
/// 2^32 less than was saved.
class KIV_GENERICS_EXPORT Integer64 final : public Node {
public:
    using Node::WriteToArchive;

    static constexpr NodeType StaticType = NodeTypeInteger64;

    std::int64_t Get() const noexcept { return value_; }
    void Set(std::int64_t value) {
        CheckReadOnly();
        value_ = value;
    }

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override;
    void Clear() override;
    /// As Populate(Node*).
    void Populate(Integer64* other) { Populate(static_cast<Node*>(other)); }
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

    explicit Integer64(ChangeGuard* tree) noexcept : Node(tree, StaticType) {}
    Integer64(ChangeGuard* tree, NodeOwner& owner, int index) noexcept : Node(tree, owner, index, StaticType) {}
    Integer64(const Integer64& like, NodeOwner& owner, int index) noexcept : Node(like, owner, index) {}

    std::int64_t value_ = 0;
};

}  // namespace KivGenerics
