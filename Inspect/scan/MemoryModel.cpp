#include "scan/MemoryModel.h"

#include <new>

#include <KivBase/Guid.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>

namespace KivInspect {
namespace {

using namespace KivGenerics;

constexpr int Samples = 1000;
// Texts of fewer units lie in their node; so does the standard string keep them.
constexpr std::uint32_t InlineUnits = 7;
// More tags than a tree has in practice; beyond, all are taken for the last one.
constexpr std::size_t MaxTags = 1000;

KivBase::ReturnPtrI<Tree> NewTree() {
    auto tree = CreateGenericTree(static_cast<EnumOrvObjectType>(8));
    if (!tree) {
        throw std::bad_alloc();
    }
    return tree;
}

/// How much the memory in use grows for each of `count` steps.
template <class Step>
double BytesEach(const Tree& tree, int count, Step step) {
    const std::size_t before = tree.BufferQueryB();
    for (int i = 0; i < count; ++i) {
        step(i);
    }
    return static_cast<double>(tree.BufferQueryB() - before) / count;
}

template <class Set, class Element>
double BytesOfElement(Element element) {
    const auto tree = NewTree();
    auto* const set = static_cast<Set*>(tree->NewRoot(Set::StaticType));
    return BytesEach(*tree, Samples, [&](int i) { set->Add(element(i)); });
}

}  // namespace

MemoryModel::MemoryModel() {
    MeasureNodes();
    MeasureElements();
    MeasureText();
}

void MemoryModel::MeasureNodes() {
    for (int kind = NodeTypeInteger; kind <= NodeTypeInteger64; ++kind) {
        const auto tree = NewTree();
        auto* const vector = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
        vector->Reserve(Samples);
        nodes_[static_cast<std::size_t>(kind)] =
            BytesEach(*tree, Samples, [&](int) { vector->Add(static_cast<NodeType>(kind)); });
    }
    // An array of pointers that grows is between one and two times as large as it need be.
    vectorChild_ = 1.5 * sizeof(Node*);
    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    overflowChild_ = BytesEach(*tree, Samples, [&](int i) { map->NewNode(1000 + 10 * i, NodeTypeInteger); }) -
                     nodes_[NodeTypeInteger];
}

void MemoryModel::MeasureElements() {
    elements_[NodeTypeIntegerSet] = BytesOfElement<IntegerSet>([](int i) { return i; });
    elements_[NodeTypeDoubleSet] = BytesOfElement<DoubleSet>([](int i) { return i * 1.0; });
    elements_[NodeTypeIdSet] = BytesOfElement<IdSet>([](int i) {
        GUID id{};
        id.Data1 = static_cast<decltype(id.Data1)>(i);
        return id;
    });
    elements_[NodeTypeStringSet] =
        BytesOfElement<StringSet>([](int i) { return KivBase::WString(1, static_cast<char16_t>(i + 1)); });
}

void MemoryModel::MeasureText() {
    constexpr int units = 100;
    const auto tree = NewTree();
    auto* const vector = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
    vector->Reserve(Samples);
    const double whole = BytesEach(*tree, Samples, [&](int) {
        static_cast<String*>(vector->Add(NodeTypeString))->Set(KivBase::WString(units, u'x'));
    });
    textExtra_ = whole - nodes_[NodeTypeString] - 2.0 * units;
}

double MemoryModel::OfText(std::uint32_t units) const noexcept {
    return units <= InlineUnits ? 0.0 : 2.0 * units + textExtra_;
}

MemoryModel::OfTag MemoryModel::MeasureMap(std::uint32_t tag) const {
    constexpr int samples = 32;
    const auto tree = NewTree();
    auto* const vector = static_cast<Vector*>(tree->NewRoot(NodeTypeVector));
    vector->Reserve(samples);
    OfTag measured;
    measured.bytes = BytesEach(*tree, samples, [&](int) {
        Node* const map = vector->Add(NodeTypeMap, static_cast<SemanticTag>(tag));
        measured.slots = static_cast<Map*>(map)->GetSlotCount();
    });
    return measured;
}

const MemoryModel::OfTag& MemoryModel::FindMap(std::uint32_t tag) {
    const auto found = maps_.find(tag);
    if (found != maps_.end()) {
        return found->second;
    }
    if (maps_.size() >= MaxTags) {
        return maps_.rbegin()->second;
    }
    return maps_.emplace(tag, MeasureMap(tag)).first->second;
}

}  // namespace KivInspect
