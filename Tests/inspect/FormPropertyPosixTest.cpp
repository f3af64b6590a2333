#include <algorithm>
#include <cstdint>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivInspect/Diff.h>

#include "inspect/Corpus.h"

namespace InspectTest {
namespace {

using namespace KivGenerics;

/// One node: how deep, of which kind, with which bits in its value and its temporality, and a text.
using Seed = std::tuple<std::uint8_t, std::uint8_t, std::uint64_t, std::uint8_t, std::vector<std::uint16_t>>;

/// Without NUL, at which Compare takes the other text to end.
KivBase::WString ToUnits(const std::vector<std::uint16_t>& units) {
    KivBase::WString text(units.begin(), units.end());
    std::replace(text.begin(), text.end(), u'\0', u'0');
    return text;
}

GUID ToGuid(std::uint64_t bits) {
    GUID id = {};
    std::memcpy(&id, &bits, sizeof bits);
    return id;
}

void SetValue(Node* node, std::uint64_t bits, const std::vector<std::uint16_t>& units) {
    switch (node->GetType()) {
        case NodeTypeInteger: static_cast<Integer*>(node)->Set(static_cast<std::int32_t>(bits)); break;
        case NodeTypeGlobalID: static_cast<GlobalID*>(node)->Set(ToGuid(bits)); break;
        case NodeTypeString: static_cast<String*>(node)->Set(ToUnits(units)); break;
        case NodeTypeDouble: static_cast<Double*>(node)->Set(FromBits(bits)); break;
        case NodeTypeBoolean: static_cast<Boolean*>(node)->Set((bits & 1U) != 0); break;
        case NodeTypeVector: break;
        case NodeTypeMap: static_cast<Map*>(node)->SetSemanticTag(static_cast<SemanticTag>(bits)); break;
        case NodeTypeIntegerSet:
            static_cast<IntegerSet*>(node)->Add(static_cast<std::int32_t>(bits));
            static_cast<IntegerSet*>(node)->Add(static_cast<std::int32_t>(bits >> 32U));
            break;
        case NodeTypeIdSet: static_cast<IdSet*>(node)->Add(ToGuid(bits)); break;
        case NodeTypeStringSet:
            static_cast<StringSet*>(node)->Add(ToUnits(units));
            static_cast<StringSet*>(node)->Add(KivBase::WString());
            break;
        case NodeTypeDoubleSet:
            static_cast<DoubleSet*>(node)->Add(FromBits(bits));
            static_cast<DoubleSet*>(node)->Add(FromBits(~bits));
            break;
        case NodeTypeInteger64: static_cast<Integer64*>(node)->Set(static_cast<std::int64_t>(bits)); break;
    }
}

/// A tree of these nodes, none of them hidden from walks, as Compare does not see what is; each below the last one that it can stand below.
KivBase::ReturnPtrI<Tree> Build(const std::vector<Seed>& seeds) {
    auto tree = NewTree();
    std::vector<Composite*> open = {NewRootMap(tree.Get())};
    for (const auto& [depth, kindSeed, bits, temporality, units] : seeds) {
        open.resize(std::min<std::size_t>(open.size(), depth % 8U + 1U));
        const auto kind = static_cast<NodeType>(kindSeed % 12U + 1U);
        Node* node = nullptr;
        if (auto* const vector = node_cast<Vector>(open.back())) {
            node = vector->Insert(vector->GetSize(TemporalityTemporary), kind);
        } else {
            node = open.back()->NewNode(static_cast<int>((bits >> 13U) & 0x1FU), kind);
        }
        SetValue(node, bits, units);
        node->SetTemporality(static_cast<EnumOrvGenericsTemporality>(temporality % 4U + 1U));
        if (auto* const composite = node_cast<Composite>(node)) {
            open.push_back(composite);
        }
    }
    return tree;
}

RC_GTEST_PROP(FormPropertyTest, AnyTreeReadsBackFromText, (const std::vector<Seed>& seeds)) {
    const auto tree = Build(seeds);
    const std::string text = ToText(tree.Get());
    const KivStorage::LoadResult loaded = FromText(text);
    RC_ASSERT(loaded.result.sentence == std::string());
    RC_ASSERT(KivInspect::AreSame(tree.Get(), loaded.tree.Get()));
    RC_ASSERT(tree->GetRoot()->Compare(loaded.tree->GetRoot(), TemporalityTemporary, true) == 0);
    RC_ASSERT(ToText(loaded.tree.Get()) == text);
}

RC_GTEST_PROP(FormPropertyTest, AnyTreeReadsBackFromJson, (const std::vector<Seed>& seeds)) {
    const auto tree = Build(seeds);
    const std::string json = ToJson(tree.Get());
    const KivStorage::LoadResult loaded = FromJson(json);
    RC_ASSERT(loaded.result.sentence == std::string());
    RC_ASSERT(KivInspect::AreSame(tree.Get(), loaded.tree.Get()));
    RC_ASSERT(tree->GetRoot()->Compare(loaded.tree->GetRoot(), TemporalityTemporary, true) == 0);
    RC_ASSERT(ToJson(loaded.tree.Get()) == json);
}

}  // namespace
}  // namespace InspectTest
