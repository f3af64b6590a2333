#pragma once

#include <cstdint>
#include <type_traits>

#include <KivBase/Guid.h>
#include <KivGenerics/Composite.h>
#include <KivGenerics/SortedChunks.h>

namespace KivGenerics {

/// Children at integer indexes from 0 to 0x1FFFFFFF, with a semantic tag.
///
/// The tag a map is made with fixes the number of its fixed slots, 1 to 16; children at higher indexes live in an ordered
/// overflow store that is made on first need and stays.
///
/// Lives in:   the forest of its tree; so do its children and its overflow store.
/// Dies with:  the forest.
/// Threads:    one thread at a time for all trees of a forest.
/// On failure: throws Exception before anything is changed, unless an operation says otherwise.
/// Cost:       a slot index O(1); any other O(log children in the overflow store).
class KIV_GENERICS_EXPORT Map : public Composite {
public:
    using Composite::Detach;
    using Composite::Remove;

    static constexpr NodeType StaticType = NodeTypeMap;

    // Copies take the node's own fields and the tag, and no child: deep copies go through Populate.
    Map(const Map&) = default;
    Map(Map&&) = default;
    Map& operator=(const Map& other) {
        Composite::operator=(other);
        tag_ = other.tag_;
        return *this;
    }
    Map& operator=(Map&& other) noexcept { return *this = static_cast<const Map&>(other); }

    SemanticTag GetSemanticTag() const override { return tag_; }
    void Populate(Node* other) override;
    VisitCode Visit(Visitor* visitor, bool postOrder) override;

    /// Stores the tag; the number of fixed slots stays.
    // kept-on-purpose: tag-kept-slots
    void SetSemanticTag(SemanticTag tag) {
        CheckReadOnly();
        tag_ = tag;
    }
    /// GetSemanticTag without the virtual call.
    SemanticTag GetSemanticTagNV() const noexcept { return tag_; }
    using Composite::NewNode;
    /// NewNode for a kind known when compiling: `NewNode<Integer>(3)`.
    template <class T>
    T* NewNode(int index, SemanticTag tag = SemanticTagNone) {
        if constexpr (NodeSource::IsMadeInline<T>) {
            NodeSource& source = GetSource();
            if ((HasRoom(index) || MakeRoom(index)) && source.CanCreateNext<T>()) {
                T* const node = source.CreateNext<T>(*this, index, 2);  // being made, and its temporality
                Put(index, node);
                MakePersistent(*node);
                return node;
            }
        } else if constexpr (std::is_same_v<T, Map>) {
            if (HasRoom(index)) {
                return NewMapInRoom(index, tag);
            }
        } else if (HasRoom(index)) {
            return static_cast<T*>(NewInRoom(index, T::StaticType, tag));
        }
        return static_cast<T*>(NewNode(index, T::StaticType, false, tag));
    }
    // Many leaves of one kind at once: NewNode for each of `count` indexes, with Set to the value of the same number, in order
    // and counted as these changes; the kind is that which holds such values. Quickest where the indexes ascend. Throws what
    // NewNode throws, and std::bad_alloc where a host's buffer answers null: the leaves made until then stay.
    void NewLeaves(const int* indexes, const bool* values, int count);
    void NewLeaves(const int* indexes, const double* values, int count);
    void NewLeaves(const int* indexes, const GUID* values, int count);
    void NewLeaves(const int* indexes, const std::int32_t* values, int count);
    void NewLeaves(const int* indexes, const std::int64_t* values, int count);
    /// Get without the virtual call.
    Node* GetNV(int index) const noexcept {
        return static_cast<unsigned>(index) < slotCount_ ? GetSlots()[index] : GetFromOverflow(index);
    }
    /// Always 0.
    int GetHash(bool flag) const noexcept;

protected:
    void Reset() override;

    Map(ChangeGuard* tree, int slotCount) noexcept
        : Composite(tree, StaticType), slotCount_(static_cast<std::uint8_t>(slotCount)) {}
    Map(ChangeGuard* tree, NodeOwner& owner, int index, int slotCount) noexcept
        : Composite(tree, owner, index, StaticType), slotCount_(static_cast<std::uint8_t>(slotCount)) {}
    ~Map() = default;

    /// Throws Exception for an index outside 0 to 0x1FFFFFFF.
    static void CheckIndex(int index);

    // Continues the order of the virtual operations after Composite's.
    virtual void hInsertNode(int index, Node* node) = 0;
    virtual void hPopulateChildren(Node* other, bool keepExisting) = 0;

public:
    /// The number of fixed slots.
    virtual int GetSlotCount() const = 0;
    /// True when the overflow store exists, empty or not.
    virtual bool HasOverflow() const = 0;

private:
    friend class ChildRuns;
    friend class Composite;
    friend class TreeImpl;
    friend struct NodeAccess;
    template <int N>
    friend class MapImpl;

    static constexpr int kGreatestIndex = 0x1FFFFFFF;
    static bool IsIndex(int index) noexcept { return 0 <= index && index <= kGreatestIndex; }

    // Children at indexes beyond the fixed slots, in ascending order, in the forest's memory.
    struct IndexOrder {
        bool operator()(int left, int right) const noexcept { return left < right; }
    };
    using Overflow = SortedChunks<int, IndexOrder, Node*>;

    // The fixed slots stand right behind this class, in every class that derives from it, and behind them the pointer to the
    // overflow store.
    Node* const* GetSlots() const noexcept {
        return reinterpret_cast<Node* const*>(reinterpret_cast<const char*>(this) + sizeof(Map));
    }
    Overflow* GetOverflow() const noexcept { return *reinterpret_cast<Overflow* const*>(GetSlots() + slotCount_); }
    // True when Put will do for a child at `index`: nothing stands there, and its place needs no memory.
    bool HasRoom(int index) const noexcept {
        if (static_cast<unsigned>(index) < slotCount_) {
            return GetSlots()[index] == nullptr;
        }
        const Overflow* const overflow = GetOverflow();
        return overflow != nullptr && index <= kGreatestIndex && overflow->CanAppend(index);
    }
    // Brings it about for an index behind all others, as a rule. False where that cannot be.
    bool MakeRoom(int index) noexcept;
    [[gnu::always_inline]] void Put(int index, Node* child) noexcept {
        NoteChild();
        if (static_cast<unsigned>(index) < slotCount_) {
            const_cast<Node**>(GetSlots())[index] = child;
        } else {
            GetOverflow()->Append(index, child);
        }
    }
    // NewNode where HasRoom.
    Node* NewInRoom(int index, NodeType type, SemanticTag tag);
    Map* NewMapInRoom(int index, SemanticTag tag);
    // The temporality of a child that NewNode has just made.
    template <class T>
    static void MakePersistent(T& child) noexcept {
        child.state_.temporality = TemporalityPersistent;
        if constexpr (std::is_base_of_v<Composite, T>) {
            child.ForgetEmptyOfNew();
        }
    }
    Node* GetFromOverflow(int index) const noexcept;

    SemanticTag tag_ = SemanticTagDefault;
    std::uint8_t slotCount_;  // fixed at construction
};

}  // namespace KivGenerics
