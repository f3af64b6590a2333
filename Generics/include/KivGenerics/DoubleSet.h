#pragma once

#include <cstdint>
#include <set>

#include <KivBase/Allocator.h>
#include <KivGenerics/Node.h>
#include <KivGenerics/SortedChunks.h>

namespace KivGenerics {

/// Ascending; NaN is one element after every number, -0.0 and 0.0 are one element.
struct DoubleOrder {
    bool operator()(double left, double right) const noexcept {
        // All is always compared, so that a search has no branch to guess.
        const auto isSmaller = static_cast<int>(left < right);
        const auto isNumber = static_cast<int>(left == left);
        return (isSmaller | (isNumber & static_cast<int>(right != right))) != 0;
    }
};

/// A leaf that holds a sorted set of distinct 64-bit floating-point numbers; empty when new. The elements live in the forest's memory.
///
/// Set, Add and Remove change the set even in a read-only tree; Clear, Populate and MergeWith do not.
class KIV_GENERICS_EXPORT DoubleSet final : public Node {
public:
    using Node::Remove;
    using Node::WriteToArchive;

    static constexpr NodeType StaticType = NodeTypeDoubleSet;

    /// What Get and Set exchange with the caller.
    using Elements = std::set<double, DoubleOrder, KivBase::Allocator<double>>;
    /// What the node keeps its elements in.
    using Chunks = SortedChunks<double, DoubleOrder>;

    /// Replaces what the caller's set holds by a copy of every element. Throws std::bad_alloc.
    void Get(Elements& elements) const;
    /// The node's own elements, to walk in ascending order without a copy; a change of the node makes iterators invalid.
    const Chunks& GetElements() const noexcept { return elements_; }
    /// Replaces all elements. Throws std::bad_alloc and keeps the old elements then.
    void Set(const Elements& elements);
    int Count() const noexcept { return static_cast<int>(elements_.size()); }
    /// An element already present changes nothing. Throws std::bad_alloc.
    void Add(const double& element);
    /// An absent element changes nothing.
    void Remove(const double& element);
    bool Exists(const double& element) const;
    /// Copies the element at a zero-based position in ascending order; O(index). Throws Exception when there is none.
    void Item(int index, double& element) const;

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override;
    void Clear() override;
    /// As Populate(Node*).
    void Populate(DoubleSet* other) { Populate(static_cast<Node*>(other)); }
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

    explicit DoubleSet(TreeImpl* tree) noexcept;
    DoubleSet(TreeImpl* tree, NodeOwner& owner, int index) noexcept;

    static void hSwap(Elements& destination, const Chunks& source);
    static void hSwap(Chunks& destination, const Elements& source);

    Chunks elements_;
};

}  // namespace KivGenerics
