#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Composite.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/Options.h>

namespace KivInspect {

/// What a new node has beside its value.
struct NewNode {
    std::int32_t index = -1;  ///< in a map; -1 where none is given
    KivGenerics::NodeType kind = KivGenerics::NodeTypeMap;
    std::optional<std::int32_t> tag;  ///< of a map, where one is given
    std::optional<std::int32_t> temporality;  ///< where one is given
};

/// The temporality that a node has when nothing else is said: that of a new one. What stands in a map is persistent, a root or an
/// element of a vector default.
KivGenerics::EnumOrvGenericsTemporality UsualTemporality(const KivGenerics::Node* node) noexcept;

/// The kind of this name, as ToText gives it, or nothing.
std::optional<KivGenerics::NodeType> FindKind(std::string_view name) noexcept;

/// The temporality of this name, or nothing.
std::optional<std::int32_t> FindTemporality(std::string_view name) noexcept;

/// Makes a tree from its nodes in the order parents first, each at its depth. What does not fit throws Failure.
class TreeBuilder {
public:
    explicit TreeBuilder(const KivStorage::LoadOptions& options);

    /// The next node at `depth`, the root's being 0. In between, what is deeper is closed.
    KivGenerics::Node* Add(std::size_t depth, const NewNode& node);
    /// How deep the next node may stand at most.
    std::size_t GetDepthLimit() const noexcept { return open_.size(); }
    /// The units that a text may have.
    std::size_t GetTextLimit() const noexcept { return options_.limits.stringUnits; }
    KivBase::ReturnPtrI<KivGenerics::Tree> Take() { return std::move(tree_); }

private:
    KivGenerics::Node* Make(KivGenerics::Composite* parent, const NewNode& node);
    KivGenerics::Node* MakeRoot(const NewNode& node);

    const KivStorage::LoadOptions& options_;
    KivBase::ReturnPtrI<KivGenerics::Tree> tree_;
    std::vector<KivGenerics::Composite*> open_;  // the composites on the way to the last node, and it, if it is one
};

}  // namespace KivInspect
