#include <KivInspect/Diff.h>
#include <KivInspect/Key.h>
#include <KivInspect/Merge.h>

#include <algorithm>
#include <climits>
#include <stdexcept>

#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/Vector.h>

#include "compare/CopyNode.h"

namespace KivInspect {

using namespace KivGenerics;

namespace {

constexpr int MaxLevels = 4000;

/// One place in the three trees; null where a tree has nothing.
struct Triple {
    Node* base = nullptr;
    Node* ours = nullptr;
    Node* theirs = nullptr;
};

bool IsSame(Node* left, Node* right) {
    return left == nullptr || right == nullptr ? left == right : AreSame(left, right);
}

bool AreCompositesOfOneKind(const Node* left, const Node* right) {
    return left != nullptr && right != nullptr && left->GetType() == right->GetType() &&
           IsCompositeType(left->GetType());
}

Node* ChildOf(Node* node, int index) {
    Composite* const composite = node_cast<Composite>(node);
    return composite != nullptr ? composite->Get(index) : nullptr;
}

/// The index of the next child that any of them has; INT_MAX when there is none.
int NextIndex(const Triple& triple, int index) {
    int next = INT_MAX;
    for (Node* const node : {triple.base, triple.ours, triple.theirs}) {
        const Composite* const composite = node_cast<Composite>(node);
        if (const Node* const child = composite != nullptr ? composite->GetNext(index) : nullptr) {
            next = (std::min)(next, child->GetIndex());
        }
    }
    return next;
}

/// The elements of a vector that differ from another one's: between what is the same at the beginning and at the end.
struct Changed {
    int begin;
    int end;       // in the changed vector
    int otherEnd;  // in the other one

    bool IsNothing() const noexcept { return begin == end && begin == otherEnd; }
};

Changed FindChanged(const Vector* vector, int size, const Vector* other, int otherSize) {
    Changed changed = {0, size, otherSize};
    while (changed.begin < size && changed.begin < otherSize &&
           AreSame(vector->GetNV(changed.begin), other->GetNV(changed.begin))) {
        ++changed.begin;
    }
    while (changed.end > changed.begin && changed.otherEnd > changed.begin &&
           AreSame(vector->GetNV(changed.end - 1), other->GetNV(changed.otherEnd - 1))) {
        --changed.end;
        --changed.otherEnd;
    }
    return changed;
}

class Merger3 {
public:
    Merger3(Tree* tree, const MergeOptions& options, const OnConflict& onConflict)
        : tree_(tree), options_(options), onConflict_(onConflict) {}

    void Step(const Triple& triple, Composite* parent, int index);
    std::uint64_t GetConflicts() const noexcept { return conflicts_; }

private:
    bool MergeComposites(const Triple& triple);
    void MergeOwn(const Triple& triple);
    void MergeMaps(const Triple& triple);
    bool MergeVectors(const Triple& triple);
    void Put(const Triple& triple, Composite* parent, int index);
    void Report(const Triple& triple, const char* what);

    Tree* tree_;
    const MergeOptions& options_;
    const OnConflict& onConflict_;
    std::uint64_t conflicts_ = 0;
    std::string key_;
    int level_ = 0;
};

void Merger3::Report(const Triple& triple, const char* what) {
    onConflict_({triple.ours, triple.theirs, what, key_});
    ++conflicts_;
}

/// Makes ours what theirs is.
void Merger3::Put(const Triple& triple, Composite* parent, int index) {
    if (parent == nullptr) {
        CopyTo(tree_, triple.theirs);
    } else if (triple.theirs != nullptr) {
        CopyTo(parent, index, triple.theirs);
    } else if (triple.ours != nullptr) {
        parent->Remove(index);
    }
}

/// Merges one place; `index` is its index in ours.
void Merger3::Step(const Triple& triple, Composite* parent, int index) {
    if (AreCompositesOfOneKind(triple.ours, triple.theirs) && MergeComposites(triple)) {
        return;
    }
    if (IsSame(triple.ours, triple.theirs) || IsSame(triple.theirs, triple.base)) {
        return;
    }
    if (IsSame(triple.ours, triple.base)) {
        Put(triple, parent, index);
        return;
    }
    Report(triple, triple.ours == nullptr     ? "removed by ours, changed by theirs"
                   : triple.theirs == nullptr ? "changed by ours, removed by theirs"
                                              : "changed by both");
    if (options_.favor == Favor::Theirs) {
        Put(triple, parent, index);
    }
}

/// Merges two composites part by part; false when they can only be taken as a whole.
bool Merger3::MergeComposites(const Triple& triple) {
    Triple inside = triple;
    inside.base = AreCompositesOfOneKind(triple.base, triple.ours) ? triple.base : nullptr;
    if (inside.base == nullptr && triple.ours->GetSemanticTag() != triple.theirs->GetSemanticTag()) {
        return false;
    }
    if (++level_ > MaxLevels) {
        throw std::length_error("The trees are nested too deep to be merged. Make them flatter.");
    }
    const bool isMap = triple.ours->GetType() == NodeTypeMap;
    const bool merged = isMap || MergeVectors(inside);
    if (merged) {
        MergeOwn(inside);
    }
    if (isMap) {
        MergeMaps(inside);
    }
    --level_;
    return merged;
}

/// Merges tag and temporality. Without a base, what differs has been changed by both.
void Merger3::MergeOwn(const Triple& triple) {
    const auto settle = [&](auto base, auto ours, auto theirs, const char* what) {
        if (ours == theirs || (triple.base != nullptr && theirs == base)) {
            return ours;
        }
        if (triple.base != nullptr && ours == base) {
            return theirs;
        }
        Report(triple, what);
        return options_.favor == Favor::Theirs ? theirs : ours;
    };
    const Node* const base = triple.base != nullptr ? triple.base : triple.ours;
    const auto temporality = settle(base->GetTemporality(), triple.ours->GetTemporality(),
                                    triple.theirs->GetTemporality(), "temporality changed by both");
    if (temporality != triple.ours->GetTemporality()) {
        triple.ours->SetTemporality(temporality);
    }
    if (Map* const map = node_cast<Map>(triple.ours)) {
        const SemanticTag tag = settle(base->GetSemanticTag(), map->GetSemanticTag(), triple.theirs->GetSemanticTag(),
                                       "tag changed by both");
        if (tag != map->GetSemanticTagNV()) {
            map->SetSemanticTag(tag);
        }
    }
}

void Merger3::MergeMaps(const Triple& triple) {
    auto* const map = static_cast<Composite*>(triple.ours);
    const std::size_t length = key_.size();
    for (int index = NextIndex(triple, -1); index != INT_MAX; index = NextIndex(triple, index)) {
        AppendStep(key_, map, index, options_.names);
        Step({ChildOf(triple.base, index), ChildOf(triple.ours, index), ChildOf(triple.theirs, index)}, map, index);
        key_.resize(length);
    }
}

/// Merges two vectors by their elements; false when both have changed the same ones, and not one by one.
bool Merger3::MergeVectors(const Triple& triple) {
    const Vector* const base = node_cast<Vector>(triple.base);
    auto* const ours = static_cast<Vector*>(triple.ours);
    const auto* const theirs = static_cast<Vector*>(triple.theirs);
    const auto sizeOf = [](const Vector* vector) {
        return vector != nullptr ? const_cast<Vector*>(vector)->GetSize(TemporalityTemporary) : -1;
    };
    if (base == nullptr) {
        return false;
    }
    if (sizeOf(base) == sizeOf(ours) && sizeOf(base) == sizeOf(theirs)) {
        MergeMaps(triple);
        return true;
    }
    const Changed byUs = FindChanged(ours, sizeOf(ours), base, sizeOf(base));
    const Changed byThem = FindChanged(theirs, sizeOf(theirs), base, sizeOf(base));
    if (byThem.IsNothing()) {
        return true;
    }
    // Changes that touch are told apart by nobody: which one would come first?
    const bool before = byUs.IsNothing() || byThem.otherEnd < byUs.begin;
    if (!before && byThem.begin <= byUs.otherEnd) {
        return false;
    }
    const int shift = before ? 0 : sizeOf(ours) - sizeOf(base);
    for (int i = byThem.begin; i < byThem.otherEnd; ++i) {
        ours->Remove(byThem.begin + shift);
    }
    for (int i = byThem.begin; i < byThem.end; ++i) {
        InsertCopyTo(ours, i + shift, theirs->GetNV(i));
    }
    return true;
}

}  // namespace

std::uint64_t Merge3(Tree* base, Tree* ours, Tree* theirs, const MergeOptions& options, const OnConflict& onConflict) {
    Merger3 merger(ours, options, onConflict);
    merger.Step({base->GetRoot(), ours->GetRoot(), theirs->GetRoot()}, nullptr, 0);
    return merger.GetConflicts();
}

}  // namespace KivInspect
