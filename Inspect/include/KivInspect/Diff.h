#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include <KivGenerics/Node.h>
#include <KivGenerics/Tree.h>
#include <KivInspect/Names.h>

namespace KivInspect {

/// What happened to a node between two trees.
enum class ChangeKind {
    Added,    ///< only the right tree has it
    Removed,  ///< only the left tree has it
    Changed,  ///< both have it, and it differs
};

/// In what two nodes of the same key differ; of composites, children apart.
struct Differences {
    bool kind = false;  ///< nothing else is compared then, and children neither
    bool tag = false;
    bool temporality = false;
    bool value = false;

    bool Any() const noexcept { return kind || tag || temporality || value; }
};

/// One change. The nodes are those of the trees, null on the side that has none. Below an added or removed composite there are no
/// changes of their own.
struct Change {
    ChangeKind kind;
    Differences differences;
    KivGenerics::Node* left;
    KivGenerics::Node* right;
    const std::string& key;  ///< valid during the call
};

struct DiffOptions {
    bool ignoreTag = false;
    bool ignoreTemporality = false;
    /// Doubles are the same when they are no farther apart than this, or than this part of the greater one. Otherwise they are
    /// the same when their bits are, so a NaN is equal to itself and 0.0 is not -0.0.
    double absolute = 0.0;
    double relative = 0.0;
    /// What is effectively more transient does not count; neither does what stands in it.
    std::optional<KivGenerics::EnumOrvGenericsTemporality> limit;
    const Names* names = nullptr;  ///< for the keys of changes
};

struct DiffTotals {
    std::uint64_t added = 0;
    std::uint64_t removed = 0;
    std::uint64_t changed = 0;
    std::uint64_t compared = 0;  ///< nodes that both trees have

    bool Any() const noexcept { return added + removed + changed > 0; }
};

/// What is shown each change; false ends the comparison.
using OnChange = std::function<bool(const Change& change)>;

/// Compares two trees by key and shows the changes in the order of keys, parents first. Elements of vectors are compared by
/// position. Changes neither tree, but brings their derived temporalities up to date when there is a limit. Linear, and needs
/// no stack of the thread.
DiffTotals Diff(KivGenerics::Tree* left, KivGenerics::Tree* right, const DiffOptions& options,
                const OnChange& onChange);

/// In what two nodes differ; children apart.
Differences Compare(KivGenerics::Node* left, KivGenerics::Node* right, const DiffOptions& options = {});

/// True when two trees are the same in everything that a text form holds.
bool AreSame(KivGenerics::Tree* left, KivGenerics::Tree* right, const DiffOptions& options = {});

/// True when two nodes, of whichever trees, are the same with everything below them; their own indexes do not count.
bool AreSame(KivGenerics::Node* left, KivGenerics::Node* right, const DiffOptions& options = {});

}  // namespace KivInspect
