#pragma once

#include <cstddef>
#include <cstdint>

#include <KivBase/WString.h>
#include <KivGenerics/Node.h>

namespace KivGenerics {

/// A leaf that holds UTF-16 text; empty when new. The text lives in the forest's memory.
///
/// A text may hold NUL units, but Populate, and Compare on the other side, see only what stands before the first one.
class KIV_GENERICS_EXPORT String final : public Node {
public:
    using Node::WriteToArchive;

    static constexpr NodeType StaticType = NodeTypeString;

    /// The text, terminated by 0; valid until the next change of this node.
    const char16_t* Get() const noexcept { return value_.c_str(); }
    /// The number of 16-bit units, embedded NUL units included.
    std::size_t GetLength() const noexcept { return value_.size(); }
    /// The whole text, embedded NUL units included; the node's own text may be passed. Throws std::bad_alloc.
    void Set(const KivBase::WString& value);
    /// The text up to its first NUL unit, which may lie in the node's own text; null empties. Throws std::bad_alloc.
    void Set(const char16_t* value);

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override;
    void Clear() override;
    /// As Populate(Node*).
    void Populate(String* other) { Populate(static_cast<Node*>(other)); }
    void Populate(Node* other) override;
    bool MergeWith(Node* other, bool flag) override;
    std::int32_t WriteToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient) override;
    std::int32_t ReadFromArchive(ArchiveDecoder& decoder, bool longCount) override;
    std::int32_t SizeDefnArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) override;
    VisitCode Visit(Visitor* visitor, bool postOrder) override;

protected:
    VisitCode IterateInner(Visitor* visitor, SemanticTag tag, int flags) override;

private:
    friend class NodeSource;
    friend class TreeImpl;
    friend struct NodeAccess;

    explicit String(NodeSource* tree) noexcept : String(tree, *tree, -1) {}
    String(NodeSource* tree, NodeOwner& owner, int index) noexcept
        : Node(tree, owner, index, StaticType), value_(KivBase::Allocator<char16_t>(tree->GetBuffer())) {}

    KivBase::WString value_;
};

}  // namespace KivGenerics
