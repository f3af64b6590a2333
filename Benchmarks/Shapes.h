#pragma once

#include <cstddef>

#include <KivGenerics/Composite.h>
#include <KivGenerics/Tree.h>

/// The trees that the benchmarks work on. Each fills a new tree with about `nodes` nodes below a root map; the root is a map
/// because only that can be saved.
using Shape = void (*)(KivGenerics::Tree& tree, std::size_t nodes);

/// One vector of Integers.
void FillNumbers(KivGenerics::Tree& tree, std::size_t nodes);

/// A vector of records: each a map of 8 fields of different kinds, among them a map of 3 and a vector of 4.
void FillRecords(KivGenerics::Tree& tree, std::size_t nodes);

/// A vector of maps of 40 Integers at the indexes 0, 7, ... 273: most of them in overflow stores.
void FillSparse(KivGenerics::Tree& tree, std::size_t nodes);

/// Chains of 500 nested vectors, beside each a vector of 3 Integers; the temporalities of the chain alternate.
void FillNested(KivGenerics::Tree& tree, std::size_t nodes);

/// The same trees, made by the operations for kinds that are known when compiling.
void FillNumbersTyped(KivGenerics::Tree& tree, std::size_t nodes);
void FillRecordsTyped(KivGenerics::Tree& tree, std::size_t nodes);
void FillSparseTyped(KivGenerics::Tree& tree, std::size_t nodes);
void FillNestedTyped(KivGenerics::Tree& tree, std::size_t nodes);

/// The same, but numbers that come together are made together.
void FillNumbersInRuns(KivGenerics::Tree& tree, std::size_t nodes);
void FillRecordsInRuns(KivGenerics::Tree& tree, std::size_t nodes);
void FillSparseInRuns(KivGenerics::Tree& tree, std::size_t nodes);
void FillNestedInRuns(KivGenerics::Tree& tree, std::size_t nodes);

/// How many nodes the tree has.
std::size_t CountNodes(KivGenerics::Tree& tree);
