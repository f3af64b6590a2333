#include "Shapes.h"

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/VisitorNode.h>

using namespace KivGenerics;

namespace {

Vector& NewList(Tree& tree) {
    auto* const root = node_cast<Map>(tree.NewRoot(NodeTypeMap));
    return *node_cast<Vector>(root->NewNode(0, NodeTypeVector));
}

void AddNumbers(Vector& vector, int count) {
    for (int i = 0; i < count; ++i) {
        node_cast<Integer>(vector.Add(NodeTypeInteger))->Set(i);
    }
}

void AddRecord(Vector& list, int number) {
    auto* const record = node_cast<Map>(list.Add(NodeTypeMap));
    node_cast<Integer>(record->NewNode(0, NodeTypeInteger))->Set(number);
    node_cast<String>(record->NewNode(1, NodeTypeString))->Set(u"a name of some length");
    node_cast<Double>(record->NewNode(2, NodeTypeDouble))->Set(number * 0.5);
    node_cast<Boolean>(record->NewNode(3, NodeTypeBoolean))->Set(number % 2 == 0);
    node_cast<Integer64>(record->NewNode(4, NodeTypeInteger64))->Set(number);
    node_cast<GlobalID>(record->NewNode(5, NodeTypeGlobalID))->Set(GUID{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}});
    auto* const nested = node_cast<Map>(record->NewNode(6, NodeTypeMap, false, SemanticTag(24576)));
    for (int i = 0; i < 3; ++i) {
        node_cast<Integer>(nested->NewNode(i, NodeTypeInteger))->Set(i);
    }
    AddNumbers(*node_cast<Vector>(record->NewNode(7, NodeTypeVector)), 4);
}

class Counter final : public VisitorNode {
public:
    VisitCode VisitNode(Node*, bool, NodeType) override {
        ++count;
        return VisitContinue;
    }
    std::size_t count = 0;
};

}  // namespace

void FillNumbers(Tree& tree, std::size_t nodes) {
    AddNumbers(NewList(tree), static_cast<int>(nodes));
}

void FillRecords(Tree& tree, std::size_t nodes) {
    constexpr std::size_t kNodesOfRecord = 16;
    Vector& list = NewList(tree);
    for (std::size_t i = 0; i < nodes / kNodesOfRecord; ++i) {
        AddRecord(list, static_cast<int>(i));
    }
}

void FillSparse(Tree& tree, std::size_t nodes) {
    constexpr int kFields = 40;
    Vector& list = NewList(tree);
    for (std::size_t i = 0; i < nodes / (kFields + 1); ++i) {
        auto* const map = node_cast<Map>(list.Add(NodeTypeMap));
        for (int field = 0; field < kFields; ++field) {
            node_cast<Integer>(map->NewNode(field * 7, NodeTypeInteger))->Set(field);
        }
    }
}

// Vectors are copied only when their children are of one kind, so the numbers of a level stand in a vector of their own.
void FillNested(Tree& tree, std::size_t nodes) {
    constexpr std::size_t kLevels = 500;
    constexpr std::size_t kNodesOfLevel = 5;
    Vector& list = NewList(tree);
    for (std::size_t i = 0; i < nodes / (kLevels * kNodesOfLevel); ++i) {
        auto* vector = node_cast<Vector>(list.Add(NodeTypeVector));
        for (std::size_t level = 1; level < kLevels; ++level) {
            auto* const inner = node_cast<Vector>(vector->Add(NodeTypeVector));
            inner->SetTemporality(level % 2 == 0 ? TemporalityPersistent : TemporalityTransient);
            AddNumbers(*node_cast<Vector>(vector->Add(NodeTypeVector)), 3);
            vector = inner;
        }
    }
}

std::size_t CountNodes(Tree& tree) {
    Counter counter;
    if (Node* const root = tree.GetRoot()) {
        root->Iterate(&counter, SemanticTagNone, IterateSelf | IterateChildren | IterateDeeper);
    }
    return counter.count;
}
