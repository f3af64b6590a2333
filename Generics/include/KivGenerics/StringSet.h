#pragma once

#include <cstdint>
#include <set>

#include <KivBase/Allocator.h>
#include <KivBase/WString.h>
#include <KivGenerics/Node.h>

namespace KivGenerics {

/// A leaf that holds a sorted set of distinct UTF-16 texts; empty when new. The elements live in the forest's memory.
///
/// Set, Add and Remove change the set even in a read-only tree; Clear, Populate and MergeWith do not.
///
/// Texts are stored up to their first NUL unit and ordered by code units.
class KIV_GENERICS_EXPORT StringSet final : public Node {
public:
    using Node::Remove;
    using Node::WriteToArchive;

    static constexpr NodeType StaticType = NodeTypeStringSet;

    using Elements = std::set<KivBase::WString, std::less<KivBase::WString>, KivBase::Allocator<KivBase::WString>>;

    // The elements hold memory of their own, so an assignment makes them anew where this node keeps its own.
    StringSet(const StringSet&) = default;
    StringSet(StringSet&&) = default;
    StringSet& operator=(const StringSet& other);
    StringSet& operator=(StringSet&& other);
    ~StringSet() = default;

    /// The node's own set, valid until the next change.
    const Elements& Get() const noexcept { return elements_; }
    /// Replaces all elements; the node's own set may be passed. Throws std::bad_alloc and keeps the old elements then.
    void Set(const Elements& elements);
    int Count() const noexcept { return static_cast<int>(elements_.size()); }
    /// An element already present changes nothing. Throws std::bad_alloc.
    void Add(const KivBase::WString& element);
    /// An absent element changes nothing.
    void Remove(const KivBase::WString& element);
    bool Exists(const KivBase::WString& element) const;
    /// Copies the element at a zero-based position in ascending order; O(index). Throws Exception when there is none.
    void Item(int index, KivBase::WString& element) const;

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override;
    void Clear() override;
    /// As Populate(Node*).
    void Populate(StringSet* other) { Populate(static_cast<Node*>(other)); }
    void Populate(Node* other) override;
    bool MergeWith(Node* other, bool flag) override;
    std::int32_t WriteToArchive(KivCOMShared::COrvWriteArchive* archive, bool withTransient) override;
    std::int32_t ReadFromArchive(ArchiveDecoder& decoder, bool longCount) override;
    std::int32_t SizeDefnArchive(KivCOMShared::COrvSizeArchive* sizer, bool withTransient) override;
    VisitCode Visit(Visitor* visitor, bool postOrder) override;

protected:
    VisitCode IterateInner(Visitor* visitor, SemanticTag tag, int flags) override;

private:
    friend class TreeImpl;
    friend struct NodeAccess;

    explicit StringSet(TreeImpl* tree) noexcept;
    StringSet(TreeImpl* tree, NodeOwner& owner, int index) noexcept;

    void hCopy(const Elements& source);

    Elements elements_;
};

}  // namespace KivGenerics
