// What the operations cost, one by one. With --check nothing is measured for reading: what must hold is asserted.

#include <cstdio>
#include <cstring>

#include <benchmark/benchmark.h>

#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/Vector.h>

#include "CostCheck.h"
#include "Shapes.h"

using namespace KivGenerics;

namespace {

void BuildNumbers(benchmark::State& state) {
    for (auto _ : state) {
        const auto tree = CreateGenericTree(EnumOrvObjectType(55));
        FillNumbers(*tree, static_cast<std::size_t>(state.range(0)));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BuildNumbers)->RangeMultiplier(10)->Range(10'000, 1'000'000);

void BuildRecords(benchmark::State& state) {
    for (auto _ : state) {
        const auto tree = CreateGenericTree(EnumOrvObjectType(55));
        FillRecords(*tree, static_cast<std::size_t>(state.range(0)));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BuildRecords)->RangeMultiplier(10)->Range(10'000, 1'000'000);

void GetLeaf(benchmark::State& state) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const leaf = node_cast<Integer>(tree->NewRoot(NodeTypeInteger));
    for (auto _ : state) {
        benchmark::DoNotOptimize(leaf->Get());
    }
}
BENCHMARK(GetLeaf);

void SetLeaf(benchmark::State& state) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const leaf = node_cast<Integer>(tree->NewRoot(NodeTypeInteger));
    std::int32_t value = 0;
    for (auto _ : state) {
        leaf->Set(++value);
    }
}
BENCHMARK(SetLeaf);

void GetMapSlot(benchmark::State& state) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const map = node_cast<Map>(tree->NewRoot(NodeTypeMap));
    map->NewNode(5, NodeTypeInteger);
    for (auto _ : state) {
        benchmark::DoNotOptimize(map->Get(5));
    }
}
BENCHMARK(GetMapSlot);

void GetNextInMap(benchmark::State& state) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const map = node_cast<Map>(tree->NewRoot(NodeTypeMap));
    map->NewNode(5, NodeTypeInteger);
    for (auto _ : state) {
        benchmark::DoNotOptimize(map->GetNext(4));
    }
}
BENCHMARK(GetNextInMap);

void GetVectorElement(benchmark::State& state) {
    const auto tree = CreateGenericTree(EnumOrvObjectType(0));
    auto* const vector = node_cast<Vector>(tree->NewRoot(NodeTypeVector));
    vector->Add(NodeTypeInteger);
    for (auto _ : state) {
        benchmark::DoNotOptimize(vector->GetNV(0));
    }
}
BENCHMARK(GetVectorElement);

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--check") == 0) {
        const int broken = CheckCosts() + CheckMemory() + CheckSets();
        std::printf("%d limits broken\n", broken);
        return broken == 0 ? 0 : 1;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
