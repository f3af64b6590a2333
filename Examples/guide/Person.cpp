#include "Person.h"

#include <cstdint>

#include <KivGenerics/Double.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/LeafSetter.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Vector.h>

using namespace KivGenerics;

namespace Guide {

// [first-tree]
KivBase::ReturnPtrI<Tree> MakePerson() {
    KivBase::ReturnPtrI<Tree> tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const person = static_cast<Map*>(root->NewNode(0, NodeTypeMap));
    static_cast<String*>(person->NewNode(0, NodeTypeString))->Set(u"Ada Lovelace");
    static_cast<Integer*>(person->NewNode(1, NodeTypeInteger))->Set(1815);
    auto* const notes = static_cast<Vector*>(person->NewNode(2, NodeTypeVector));
    static_cast<String*>(notes->Add(NodeTypeString))->Set(u"first program");
    static_cast<String*>(notes->Add(NodeTypeString))->Set(u"Bernoulli numbers");
    return tree;
}
// [/first-tree]

// [leaves-at-once]
Map* AddMeasurement(Map* map, int index, const std::vector<double>& samples) {
    static constexpr int kIndexes[] = {0, 1, 5000};
    static constexpr std::int32_t kHead[] = {2026, 11, 3};
    Map* const measurement = map->NewNode<Map>(index);
    measurement->NewLeaves(kIndexes, kHead, 3);
    measurement->NewNode<Vector>(2)->AddLeaves(samples.data(), static_cast<int>(samples.size()));
    return measurement;
}
// [/leaves-at-once]

// [many-sets]
void CorrectSamples(Map* measurement, const std::map<int, double>& values) {
    const Vector& samples = *static_cast<Vector*>(measurement->GetNV(2));
    LeafSetter setter(samples);
    for (const auto& [number, value] : values) {
        setter.Set<Double>(samples, number, value);
    }
}
// [/many-sets]

Map* GetPerson(Tree* tree) {
    return node_cast<Map>(tree->FindNodeByKey(u"0:"));
}

}  // namespace Guide
