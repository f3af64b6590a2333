#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Composite.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <KivStorage/LoadTree.h>

namespace InspectTest {

using KivGenerics::Tree;

KivBase::ReturnPtrI<Tree> NewTree();
KivGenerics::Map* NewRootMap(Tree* tree, int tag = 0);

template <class T>
T* New(KivGenerics::Composite* parent, int index, int tag = 0) {
    return static_cast<T*>(parent->NewNode(index, T::StaticType, false, static_cast<KivGenerics::SemanticTag>(tag)));
}

template <class T>
T* Append(KivGenerics::Vector* vector) {
    return static_cast<T*>(vector->Insert(vector->GetSize(KivGenerics::TemporalityTemporary), T::StaticType));
}

/// The double with these bits.
inline double FromBits(std::uint64_t bits) {
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

inline std::uint64_t ToBits(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// Doubles at the ends of what there is: zeros, the smallest, the largest, infinities, NaN of several bits, and hard ones between.
const std::vector<double>& BoundaryDoubles();

/// A tree with every kind, every temporality, boundary values of each, mixed vectors, empty composites and odd tags: also what
/// no saved file can hold.
KivBase::ReturnPtrI<Tree> TreeOfEverything();

/// A tree that a save takes whole, with every kind.
KivBase::ReturnPtrI<Tree> SavableTree();

std::string ToText(const Tree* tree);
std::string ToJson(const Tree* tree);
KivStorage::LoadResult FromText(std::string_view text, const KivStorage::LoadOptions& options = {});
KivStorage::LoadResult FromJson(std::string_view json, const KivStorage::LoadOptions& options = {});

}  // namespace InspectTest
