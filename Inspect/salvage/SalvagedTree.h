#pragma once

#include <cstdint>
#include <vector>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Node.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/ItemScanner.h>

#include "scan/StructureReader.h"

namespace KivInspect {

/// Makes the nodes that a StructureReader tells of.
class SalvagedTree {
public:
    SalvagedTree();

    /// `structure` has just taken the item. Throws what the tree throws at what no tree holds.
    void Take(const KivStorage::ScannedItem& item, const Meaning& meaning, const StructureReader& structure);
    /// Nodes below so many objects are no longer open.
    void CloseTo(std::size_t depth);
    /// Fills a vector up to `size` with empty elements of the kind that it holds.
    void FillVector(std::size_t depth, const StructureReader::Level& level, std::uint32_t size);

    std::uint64_t GetNodes() const noexcept { return nodes_; }
    KivBase::ReturnPtrI<KivGenerics::Tree> TakeTree() { return std::move(tree_); }

private:
    KivGenerics::Node* Make(const NodeFacts& node, KivGenerics::Node* parent);
    void Open(std::size_t depth, KivGenerics::Node* node);
    void TakeValue(const KivStorage::ScannedItem& item, const NodeFacts& node, KivGenerics::Node* parent);
    void TakeElement(const KivStorage::ScannedItem& item, KivGenerics::Node* set);

    KivBase::ReturnPtrI<KivGenerics::Tree> tree_;
    std::vector<KivGenerics::Node*> open_;  // by level; null where a header is not complete
    std::int32_t firstHalf_ = 0;
    std::uint64_t nodes_ = 0;
};

}  // namespace KivInspect
