#include "salvage/SalvagedTree.h"

#include <new>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>

#include "scan/ItemValue.h"

namespace KivInspect {

using namespace KivGenerics;
using KivStorage::ScannedItem;

SalvagedTree::SalvagedTree() : tree_(CreateGenericTree(static_cast<EnumOrvObjectType>(0))) {
    if (!tree_) {
        throw std::bad_alloc();
    }
}

Node* SalvagedTree::Make(const NodeFacts& node, Node* parent) {
    const auto type = static_cast<NodeType>(node.kind);
    const auto tag = static_cast<SemanticTag>(node.tag);
    Node* made = nullptr;
    if (node.index < 0) {
        made = tree_->NewRoot(type, false, tag);
    } else if (parent != nullptr && parent->GetType() == NodeTypeVector) {
        made = static_cast<Vector*>(parent)->Add(type, tag);
    } else if (parent != nullptr) {
        made = static_cast<Composite*>(parent)->NewNode(node.index, type, false, tag);
    }
    if (made != nullptr) {
        made->SetTemporality(static_cast<EnumOrvGenericsTemporality>(node.temporality));
        nodes_ += 1;
    }
    return made;
}

void SalvagedTree::Open(std::size_t depth, Node* node) {
    open_.resize(depth, nullptr);
    open_.back() = node;
}

void SalvagedTree::CloseTo(std::size_t depth) {
    open_.resize(depth, nullptr);
}

void SalvagedTree::Take(const ScannedItem& item, const Meaning& meaning, const StructureReader& structure) {
    const std::size_t depth = structure.GetDepth();
    const auto openAt = [this](std::size_t level) { return level < open_.size() ? open_[level] : nullptr; };
    const bool isSet = meaning.node.kind != NodeTypeMap && meaning.node.kind != NodeTypeVector;
    switch (meaning.role) {
        case Role::NodeOpens: Open(depth, isSet ? Make(meaning.node, openAt(depth - 2)) : nullptr); break;
        case Role::HeaderWord:
            if (meaning.headerEnds) {
                Open(depth, Make(meaning.node, depth > 2 ? openAt(depth - 2) : nullptr));
            }
            break;
        case Role::FirstHalf: firstHalf_ = item.GetLong(); break;
        case Role::Value: TakeValue(item, meaning.node, openAt(depth - 1)); break;
        case Role::SetElement: TakeElement(item, openAt(depth - 1)); break;
        default: break;
    }
}

void SalvagedTree::TakeValue(const ScannedItem& item, const NodeFacts& node, Node* parent) {
    Node* const made = Make(node, parent);
    if (made == nullptr) {
        return;
    }
    switch (made->GetType()) {
        case NodeTypeInteger: static_cast<Integer*>(made)->Set(item.GetLong()); break;
        case NodeTypeGlobalID: static_cast<GlobalID*>(made)->Set(GetGuid(item)); break;
        case NodeTypeString: static_cast<String*>(made)->Set(GetText(item)); break;
        case NodeTypeDouble: static_cast<Double*>(made)->Set(GetDouble(item)); break;
        case NodeTypeBoolean: static_cast<Boolean*>(made)->Set(item.GetLong() != 0); break;
        case NodeTypeInteger64: static_cast<Integer64*>(made)->Set(JoinHalves(firstHalf_, item.GetLong())); break;
        case NodeTypeVector:
        case NodeTypeMap:
        case NodeTypeIntegerSet:
        case NodeTypeIdSet:
        case NodeTypeStringSet:
        case NodeTypeDoubleSet: break;
    }
}

void SalvagedTree::TakeElement(const ScannedItem& item, Node* set) {
    if (set == nullptr) {
        return;
    }
    switch (set->GetType()) {
        case NodeTypeIntegerSet: static_cast<IntegerSet*>(set)->Add(item.GetLong()); break;
        case NodeTypeIdSet: static_cast<IdSet*>(set)->Add(GetGuid(item)); break;
        case NodeTypeStringSet: static_cast<StringSet*>(set)->Add(GetText(item)); break;
        case NodeTypeDoubleSet: static_cast<DoubleSet*>(set)->Add(GetDouble(item)); break;
        default: break;
    }
}

void SalvagedTree::FillVector(std::size_t depth, const StructureReader::Level& level, std::uint32_t size) {
    auto* const vector = depth <= open_.size() ? static_cast<Vector*>(open_[depth - 1]) : nullptr;
    if (vector == nullptr || vector->GetType() != NodeTypeVector) {
        return;
    }
    const TypeCode code = level.header.GetRuns().front().type;
    // Composites say their kind themselves; those that are there tell that of the others.
    const NodeType type = !code.IsObject()            ? static_cast<NodeType>(code.GetKind())
                          : vector->Get(0) != nullptr ? vector->Get(0)->GetType()
                                                      : NodeTypeMap;
    while (vector->GetSize(TemporalityTemporary) < static_cast<int>(size)) {
        Node* const filler = vector->Add(type);
        // An empty composite of default temporality would not be saved.
        filler->SetTemporality(code.IsObject() ? TemporalityPersistent
                                               : static_cast<EnumOrvGenericsTemporality>(code.GetTemporality()));
    }
}

}  // namespace KivInspect
