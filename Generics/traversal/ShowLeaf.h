#pragma once

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/RowVisitor.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Visitor.h>

#include "core/LeafKinds.h"

namespace KivGenerics {

// Shows a leaf to a visitor, by the operation for its kind.
inline VisitCode ShowLeaf(Visitor& visitor, Boolean& leaf) {
    return visitor.VisitBoolean(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, Double& leaf) {
    return visitor.VisitDouble(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, GlobalID& leaf) {
    return visitor.VisitGlobalID(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, Integer& leaf) {
    return visitor.VisitInteger(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, Integer64& leaf) {
    return visitor.VisitInteger64(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, String& leaf) {
    return visitor.VisitString(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, DoubleSet& leaf) {
    return visitor.VisitDoubleSet(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, IdSet& leaf) {
    return visitor.VisitIdSet(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, IntegerSet& leaf) {
    return visitor.VisitIntegerSet(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, StringSet& leaf) {
    return visitor.VisitStringSet(&leaf);
}

// The same for a row of leaves.
inline VisitCode ShowRow(RowVisitor& visitor, LeafRow<Boolean> row) {
    return visitor.VisitBooleans(row);
}
inline VisitCode ShowRow(RowVisitor& visitor, LeafRow<Double> row) {
    return visitor.VisitDoubles(row);
}
inline VisitCode ShowRow(RowVisitor& visitor, LeafRow<GlobalID> row) {
    return visitor.VisitGlobalIDs(row);
}
inline VisitCode ShowRow(RowVisitor& visitor, LeafRow<Integer> row) {
    return visitor.VisitIntegers(row);
}
inline VisitCode ShowRow(RowVisitor& visitor, LeafRow<Integer64> row) {
    return visitor.VisitInteger64s(row);
}
inline VisitCode ShowRow(RowVisitor& visitor, LeafRow<String> row) {
    return visitor.VisitStrings(row);
}

/// The same for leaves of a kind that the visitor takes rows of.
[[gnu::always_inline]] inline VisitCode ShowRow(RowVisitor& visitor, NodeType type, Node* const* first,
                                                Node* const* end) {
    return ForScalarKind(
        type, [&](auto kind) { return ShowRow(visitor, LeafRow<typename decltype(kind)::Leaf>(first, end)); },
        [] { return VisitContinue; });
}

/// Whether the leaves of a kind are shown in rows.
constexpr bool TakesRows(const Visitor&, NodeType) noexcept {
    return false;
}
inline bool TakesRows(const RowVisitor& visitor, NodeType type) noexcept {
    return visitor.TakesRows(type);
}

}  // namespace KivGenerics
