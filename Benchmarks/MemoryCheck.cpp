#include <cstdio>

#include <KivGenerics/Integer.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>

#include "CostCheck.h"

using namespace KivGenerics;

namespace {

constexpr int kNodes = 100'000;

struct Limits {
    const char* what;
    double measured;
    double limit;
};

int Report(const Limits& row) {
    const bool broken = row.measured > row.limit;
    std::printf("%-44s %12.1f %12.1f%s\n", row.what, row.measured, row.limit, broken ? "  TOO HIGH" : "");
    return broken ? 1 : 0;
}

KivBase::ReturnPtrI<Tree> NewTree() {
    return CreateGenericTree(EnumOrvObjectType(0));
}

/// Bytes of the buffer per leaf of this kind, without its place in the vector.
double MeasureLeaf(NodeType type) {
    const auto tree = NewTree();
    auto* const vector = node_cast<Vector>(tree->NewRoot(NodeTypeVector));
    vector->Reserve(kNodes);
    const std::size_t before = tree->BufferQueryB();
    for (int i = 0; i < kNodes; ++i) {
        vector->Add(type);
    }
    return static_cast<double>(tree->BufferQueryB() - before) / kNodes;
}

double MeasureVectorPlace() {
    const auto tree = NewTree();
    auto* const vector = node_cast<Vector>(tree->NewRoot(NodeTypeVector));
    const std::size_t before = tree->BufferQueryB();
    vector->Reserve(kNodes);
    return static_cast<double>(tree->BufferQueryB() - before) / kNodes;
}

/// A map of 16 slots against one of 15: what a slot adds.
double MeasureMapSlot() {
    const auto measure = [](SemanticTag tag) {
        const auto tree = NewTree();
        auto* const vector = node_cast<Vector>(tree->NewRoot(NodeTypeVector));
        vector->Reserve(kNodes);
        const std::size_t before = tree->BufferQueryB();
        for (int i = 0; i < kNodes; ++i) {
            vector->Add(NodeTypeMap, tag);
        }
        return static_cast<double>(tree->BufferQueryB() - before) / kNodes;
    };
    return measure(SemanticTag(4107)) - measure(SemanticTag(4264));
}

/// Bytes by which one million replacements grow what the buffer has reserved, after a first round has settled it.
template <class Replace>
double MeasureGrowth(Replace replace) {
    const auto tree = NewTree();
    auto* const root = node_cast<Map>(tree->NewRoot(NodeTypeMap));
    replace(*root, 0);
    const std::size_t before = tree->BufferQueryA();
    for (int i = 1; i <= 1'000'000; ++i) {
        replace(*root, i);
    }
    const std::size_t after = tree->BufferQueryA();
    return after > before ? static_cast<double>(after - before) : 0.0;
}

void ReplaceNode(Map& root, int i) {
    node_cast<Integer>(root.NewNode(0, NodeTypeInteger))->Set(i);
}

void ReplaceText(Map& root, int i) {
    auto* text = node_cast<String>(root.Get(0));
    if (text == nullptr) {
        text = node_cast<String>(root.NewNode(0, NodeTypeString));
    }
    text->Set(KivBase::WString(static_cast<std::size_t>(1000 + i / 500), u'x'));
}

void ReplaceTextNode(Map& root, int i) {
    node_cast<String>(root.NewNode(0, NodeTypeString))
        ->Set(KivBase::WString(static_cast<std::size_t>(100 + i % 400), u'x'));
}

void ReplaceSet(Map& root, int i) {
    auto* set = node_cast<IntegerSet>(root.Get(0));
    if (set == nullptr) {
        set = node_cast<IntegerSet>(root.NewNode(0, NodeTypeIntegerSet));
    }
    set->Add(i);
    set->Remove(i - 100);
}

}  // namespace

int CheckMemory() {
    std::printf("\n%-44s %12s %12s\n", "Bytes of the forest's buffer", "measured", "at most");
    int broken = 0;
    for (const NodeType type :
         {NodeTypeBoolean, NodeTypeInteger, NodeTypeInteger64, NodeTypeDouble, NodeTypeGlobalID}) {
        broken += Report({ToText(type), MeasureLeaf(type), 48});
    }
    broken += Report({"String, without its text", MeasureLeaf(NodeTypeString), 80});
    for (const NodeType type : {NodeTypeIntegerSet, NodeTypeDoubleSet, NodeTypeIdSet}) {
        broken += Report({ToText(type), MeasureLeaf(type), 56});
    }
    broken += Report({"StringSet", MeasureLeaf(NodeTypeStringSet), 96});
    broken += Report({"a slot of a map", MeasureMapSlot(), 8});
    broken += Report({"an element's place in a vector", MeasureVectorPlace(), 8 * 1.25});
    constexpr double kGrowth = 64.0 * 1024;
    broken += Report({"growth by 10^6 replaced nodes", MeasureGrowth(ReplaceNode), kGrowth});
    broken += Report({"growth by 10^6 ever longer texts", MeasureGrowth(ReplaceText), kGrowth});
    broken += Report({"growth by 10^6 replaced nodes with text", MeasureGrowth(ReplaceTextNode), kGrowth});
    broken += Report({"growth by 10^6 elements added and removed", MeasureGrowth(ReplaceSet), kGrowth});
    return broken;
}
