#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <KivBase/WString.h>
#include <KivStorage/Export.h>

namespace KivGenerics {
class Tree;
}

namespace KivStorage {

/// Why a part of a tree does not come back from a save as it was.
enum class UnsavedReason : std::int32_t {
    RootNotAMap,            ///< only a map can be saved as root
    RootNotSaved,           ///< the root is more transient than the save, or empty and of default temporality
    RootLeaf,               ///< a value directly in the root: the saved tree does not load
    RootChildOutsideSlots,  ///< a child of the root beyond its fixed slots: the saved tree does not load
    RootSlotCountChanges,   ///< the root's tag asks for another number of slots than it has
    EmptyComposite,         ///< an empty vector or map of default temporality counts as temporary
    MixedKinds,             ///< an element of a vector is of another kind than the first
    MixedTemporality,       ///< an element of a vector of values has another temporality than the first, which wins
    TransientElement,       ///< more transient than the save, but saved with the vector that holds it
    TemporalityNotHeld,     ///< a temporality that does not fit into its bits
    SemanticTagNotHeld,     ///< 0 comes back as 1, a negative tag makes the saved tree unreadable
    Integer64Bit31,         ///< comes back 2^32 less
    TextHasNul,             ///< comes back cut before the NUL
    TextTooLong,            ///< more than 256,000 units: the saved tree does not load
    NestingTooDeep,         ///< more than 1,000 levels of composites: the saved tree does not load
};

/// A part of a tree that a save would lose or alter.
struct UnsavedPart {
    KivBase::WString key;  ///< Tree::FindNodeByKey finds the node by it; empty for the root
    UnsavedReason reason;
    std::string sentence;  ///< for people, in UTF-8
};

/// Everything in `tree` that would be lost or altered by a save, in depth-first order; empty for null and an empty tree.
///
/// What a save leaves out on purpose is not listed: nodes whose own temporality is above the save's, with everything
/// below them. A node has one entry for each reason. What lies below a lost node, or beyond the 1,000th level, has none of
/// its own.
///
/// Brings the tree's temporalities up to date, as a save does, and changes nothing else. A tree too deep for that
/// (StorageTreeTooDeep) gets the entries of NestingTooDeep alone. Linear in the nodes; memory grows with depth and findings.
/// Throws std::bad_alloc.
KIV_STORAGE_EXPORT std::vector<UnsavedPart> FindUnsavedParts(KivGenerics::Tree* tree, bool withTransient = false);

}  // namespace KivStorage
