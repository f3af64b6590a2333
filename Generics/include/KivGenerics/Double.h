#pragma once

#include <cstdint>

#include <KivGenerics/Node.h>

namespace KivGenerics {

/// A leaf that holds a 64-bit floating-point number; 0.0 when new.
///
/// Comparing is exact; with a NaN on either side it answers 0. Merging uses ==, so a NaN conflicts with itself.
class KIV_GENERICS_EXPORT Double final : public Node {
public:
    using Node::WriteToArchive;

    static constexpr NodeType StaticType = NodeTypeDouble;

    double Get() const noexcept { return value_; }
    void Set(double value) {
        CheckReadOnly();
        value_ = value;
    }

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override;
    void Clear() override;
    /// As Populate(Node*).
    void Populate(Double* other) { Populate(static_cast<Node*>(other)); }
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

    explicit Double(ChangeGuard* tree) noexcept : Node(tree, StaticType) {}
    Double(ChangeGuard* tree, NodeOwner& owner, int index) noexcept : Node(tree, owner, index, StaticType) {}
    Double(const Double& like, NodeOwner& owner, int index) noexcept : Node(like, owner, index) {}

    double value_ = 0.0;
};

}  // namespace KivGenerics
