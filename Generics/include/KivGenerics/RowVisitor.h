#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>

#include <KivGenerics/NodeType.h>
#include <KivGenerics/Visitor.h>

namespace KivGenerics {

/// Leaves of the kind T that a walk comes to one right after the other, in one composite. At least one; where there are
/// many they come in several rows.
///
/// Valid until the composite they stand in is changed.
template <class T>
class LeafRow {
public:
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = T*;
        using difference_type = std::ptrdiff_t;
        using pointer = T* const*;
        using reference = T*;

        explicit Iterator(Node* const* place) noexcept : place_(place) {}
        T* operator*() const noexcept { return static_cast<T*>(*place_); }
        Iterator& operator++() noexcept {
            ++place_;
            return *this;
        }
        Iterator operator++(int) noexcept { return Iterator(place_++); }
        friend bool operator==(const Iterator& left, const Iterator& right) noexcept {
            return left.place_ == right.place_;
        }
        friend bool operator!=(const Iterator& left, const Iterator& right) noexcept { return !(left == right); }

    private:
        Node* const* place_;
    };

    LeafRow(Node* const* first, Node* const* end) noexcept : first_(first), end_(end) {}

    Iterator begin() const noexcept { return Iterator(first_); }
    Iterator end() const noexcept { return Iterator(end_); }
    int GetSize() const noexcept { return static_cast<int>(end_ - first_); }

private:
    Node* const* first_;
    Node* const* end_;
};

/// How the leaves in the fixed slots of a map are shown, which are rarely of one kind.
enum class SlotRows {
    OfOneKind,  ///< like all others
    OfAnyKinds,  ///< by VisitSlots
};

/// Is shown leaves that stand side by side and are alike in one call; for Node::IterateRows.
///
/// Which kinds come in rows it says when it is made; all others are shown one by one, by the operations of Visitor. A walk shows
/// the same nodes in the same order as to any visitor. The answer holds for every leaf of the row: with VisitRemove all of them
/// are removed. While it is shown a row, the visitor must not change the composite that the row stands in.
class KIV_GENERICS_EXPORT RowVisitor : public Visitor {
public:
    virtual VisitCode VisitBooleans(LeafRow<Boolean> row);
    virtual VisitCode VisitDoubles(LeafRow<Double> row);
    virtual VisitCode VisitGlobalIDs(LeafRow<GlobalID> row);
    virtual VisitCode VisitIntegers(LeafRow<Integer> row);
    virtual VisitCode VisitInteger64s(LeafRow<Integer64> row);
    virtual VisitCode VisitStrings(LeafRow<String> row);
    /// Leaves in the fixed slots of a map, each of any of the kinds that come in rows.
    virtual VisitCode VisitSlots(LeafRow<Node> row);

    /// True when leaves of this kind come in rows.
    bool TakesRows(NodeType type) const noexcept { return (kinds_ >> type & 1U) != 0; }
    /// How the leaves of these kinds come that stand in the fixed slots of a map.
    SlotRows GetSlotRows() const noexcept { return slotRows_; }

protected:
    /// `kinds`: those that come in rows; one that there is no operation for stays one by one.
    explicit RowVisitor(std::initializer_list<NodeType> kinds, SlotRows slotRows = SlotRows::OfOneKind) noexcept;
    ~RowVisitor() = default;

private:
    std::uint32_t kinds_ = 0;  // as bits by their numbers
    SlotRows slotRows_;
};

}  // namespace KivGenerics
