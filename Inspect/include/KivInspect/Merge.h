#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <KivGenerics/Node.h>
#include <KivGenerics/Tree.h>
#include <KivInspect/Names.h>

namespace KivInspect {

/// Which side a conflict is settled for.
enum class Favor {
    None,    ///< ours stands, and the conflict counts
    Ours,    ///< ours stands
    Theirs,  ///< theirs is taken
};

/// Two sides that do not agree about a node. The nodes are those of the trees before the conflict is settled; one is null where a
/// side has removed it.
struct Conflict {
    KivGenerics::Node* ours;
    KivGenerics::Node* theirs;
    const char* what;  ///< what they do not agree about, for people
    const std::string& key;  ///< valid during the call
};

using OnConflict = std::function<void(const Conflict& conflict)>;

struct MergeOptions {
    Favor favor = Favor::None;
    const Names* names = nullptr;  ///< for the keys of conflicts
};

/// Brings into `ours` what `theirs` has and it lacks, as Node::MergeWith does it, and shows each conflict; where that throws,
/// because nodes differ in kind, there is a conflict, too. Returns the number of conflicts. Without a favour the result is that
/// of MergeWith: our values, and of own temporalities that differ theirs.
std::uint64_t Merge(KivGenerics::Tree* ours, KivGenerics::Tree* theirs, const MergeOptions& options,
                    const OnConflict& onConflict);

/// Brings into `ours` what `theirs` has changed since `base`, which both come from: what only one side has changed, added or
/// removed is taken, what both have changed in different ways is a conflict. Returns the number of conflicts.
///
/// Maps are merged by index; vectors by their elements, when one side has changed other elements than the other. Needs stack for
/// each level of composites, and throws std::length_error for more than 4,000.
std::uint64_t Merge3(KivGenerics::Tree* base, KivGenerics::Tree* ours, KivGenerics::Tree* theirs,
                     const MergeOptions& options, const OnConflict& onConflict);

}  // namespace KivInspect
