#pragma once

#include <cstdint>
#include <set>

#include <KivBase/Allocator.h>
#include <KivBase/Guid.h>
#include <KivGenerics/Node.h>
#include <KivGenerics/SortedChunks.h>

namespace KivGenerics {

/// Orders GUIDs as four unsigned 32-bit words: Data1; Data3 and Data2 as one word, Data3 in the high half; the bytes of
/// Data4 as two little-endian words. A host's KivBase::CompareGUID has no say in it.
struct GuidOrder {
    bool operator()(const GUID& left, const GUID& right) const noexcept {
        const std::uint64_t mine = GetFirst(left);
        const std::uint64_t theirs = GetFirst(right);
        // Both halves are always compared, so that a search has no branch to guess.
        const bool isBefore = mine < theirs;
        const bool isLevel = mine == theirs;
        const bool isBeforeInSecond = GetSecond(left) < GetSecond(right);
        return (static_cast<int>(isBefore) | (static_cast<int>(isLevel) & static_cast<int>(isBeforeInSecond))) != 0;
    }

private:
    /// The first two words as one number, and the last two.
    static std::uint64_t GetFirst(const GUID& id) noexcept {
        return static_cast<std::uint64_t>(id.Data1) << 32 | static_cast<std::uint64_t>(id.Data3) << 16 | id.Data2;
    }
    static std::uint64_t GetSecond(const GUID& id) noexcept {
        return static_cast<std::uint64_t>(GetWord(id.Data4)) << 32 | GetWord(id.Data4 + 4);
    }
    static std::uint32_t GetWord(const unsigned char* bytes) noexcept {
        return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 | static_cast<std::uint32_t>(bytes[2]) << 16 |
               static_cast<std::uint32_t>(bytes[3]) << 24;
    }
};

/// A leaf that holds a sorted set of distinct GUIDs; empty when new. The elements live in the forest's memory.
///
/// Set, Add and Remove change the set even in a read-only tree; Clear, Populate and MergeWith do not.
class KIV_GENERICS_EXPORT IdSet final : public Node {
public:
    using Node::Remove;
    using Node::WriteToArchive;

    static constexpr NodeType StaticType = NodeTypeIdSet;

    /// What Get and Set exchange with the caller.
    using Elements = std::set<GUID, GuidOrder, KivBase::Allocator<GUID>>;
    /// What the node keeps its elements in.
    using Chunks = SortedChunks<GUID, GuidOrder>;

    /// Replaces what the caller's set holds by a copy of every element. Throws std::bad_alloc.
    void Get(Elements& elements) const;
    /// The node's own elements, to walk in ascending order without a copy; a change of the node makes iterators invalid.
    const Chunks& GetElements() const noexcept { return elements_; }
    /// Replaces all elements. Throws std::bad_alloc and keeps the old elements then.
    void Set(const Elements& elements);
    int Count() const noexcept { return static_cast<int>(elements_.size()); }
    /// An element already present changes nothing. Throws std::bad_alloc.
    void Add(const GUID& element);
    /// An absent element changes nothing.
    void Remove(const GUID& element);
    bool Exists(const GUID& element) const;
    /// Copies the element at a zero-based position in ascending order; O(index). Throws Exception when there is none.
    void Item(int index, GUID& element) const;

    int Compare(Node* other, EnumOrvGenericsTemporality t, bool recalc) override;
    void Clear() override;
    /// As Populate(Node*).
    void Populate(IdSet* other) { Populate(static_cast<Node*>(other)); }
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

    explicit IdSet(TreeImpl* tree) noexcept;
    IdSet(TreeImpl* tree, NodeOwner& owner, int index) noexcept;

    static void hSwap(Elements& destination, const Chunks& source);
    static void hSwap(Chunks& destination, const Elements& source);

    Chunks elements_;
};

}  // namespace KivGenerics
