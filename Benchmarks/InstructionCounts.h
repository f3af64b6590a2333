#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/SavedBytes.h>

using TreeHandle = KivBase::ReturnPtrI<KivGenerics::Tree>;

/// What one repetition of an operation works on, and where it leaves what it makes.
struct Input {
    TreeHandle tree;
    TreeHandle other;
    KivStorage::SavedBytes bytes;
};

/// One operation on one shape, to be counted.
struct Count {
    std::string operation;
    std::string shape;
    /// How many nodes one repetition comes to; for sets, elements; for what is looked up, lookups.
    std::function<std::size_t()> getUnits;
    /// Makes one input ready; not counted.
    std::function<void(Input&)> prepare;
    /// One repetition. Ends the program when the operation fails: what failed must not be taken for fast.
    std::function<void(Input&)> run;
};

std::vector<Count> ListTreeCounts();
std::vector<Count> ListSetCounts();

/// What the shapes are asked for; the nested shape makes more, since its smallest is one chain.
inline constexpr std::size_t kNodesOfTree = 2'000;

TreeHandle NewTree();
/// What is counted of lookups in a tree of a shape that ListTreeCounts knows, made by `fill`.
void ListLookupCounts(std::vector<Count>& counts, const std::string& shape, const std::function<void(Input&)>& fill);
/// What is counted both of trees and of sets, each for a tree that `fill` makes.
void ListCommonCounts(std::vector<Count>& counts, const std::string& shape, const std::function<void(Input&)>& fill,
                      const std::function<std::size_t()>& getUnits);
/// Ends the program with a failure unless `holds`.
void Require(bool holds);
/// Keeps the compiler from leaving out what computes the value.
void Keep(std::int64_t value);
