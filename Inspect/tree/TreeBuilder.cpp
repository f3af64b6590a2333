#include "tree/TreeBuilder.h"

#include <array>
#include <new>
#include <string>

#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/Vector.h>

#include "files/Failure.h"

namespace KivInspect {

using namespace KivGenerics;

namespace {

constexpr std::int32_t MaxIndex = 0x1FFFFFFF;

[[noreturn]] void Refuse(const std::string& sentence) {
    throw Failure(InspectMalformed, sentence);
}

SemanticTag TagToMake(const NewNode& node) {
    if (node.tag && node.kind != NodeTypeMap) {
        Refuse("only a map has a tag.");
    }
    return static_cast<SemanticTag>(node.tag.value_or(SemanticTagNone));
}

int CheckedIndex(const Map* map, const NewNode& node) {
    if (node.index < 0 || MaxIndex < node.index) {
        Refuse("a child of a map needs an index from 0 to " + std::to_string(MaxIndex) + ".");
    }
    if (map->Get(node.index) != nullptr) {
        Refuse("there is a second child with index " + std::to_string(node.index) + ".");
    }
    return node.index;
}

void Complete(Node* made, const NewNode& node) {
    if (node.tag) {
        // A tag of 0 asks for none when a map is made.
        static_cast<Map*>(made)->SetSemanticTag(static_cast<SemanticTag>(*node.tag));
    }
    const std::int32_t temporality = node.temporality.value_or(UsualTemporality(made));
    if (temporality < -128 || 127 < temporality) {
        Refuse("a temporality is a number from -128 to 127.");
    }
    made->SetTemporality(static_cast<EnumOrvGenericsTemporality>(temporality));
}

}  // namespace

EnumOrvGenericsTemporality UsualTemporality(const Node* node) noexcept {
    return node_cast<Map>(static_cast<const Node*>(node->GetParent())) != nullptr ? TemporalityPersistent
                                                                                  : TemporalityDefault;
}

std::optional<NodeType> FindKind(std::string_view name) noexcept {
    for (std::int32_t kind = NodeTypeInteger; kind <= NodeTypeInteger64; ++kind) {
        if (name == ToText(static_cast<NodeType>(kind))) {
            return static_cast<NodeType>(kind);
        }
    }
    return std::nullopt;
}

std::optional<std::int32_t> FindTemporality(std::string_view name) noexcept {
    for (std::int32_t t = TemporalityReserved; t <= TemporalityTemporary; ++t) {
        if (name == ToText(static_cast<EnumOrvGenericsTemporality>(t))) {
            return t;
        }
    }
    return std::nullopt;
}

TreeBuilder::TreeBuilder(const KivStorage::LoadOptions& options)
    : options_(options), tree_(CreateGenericTree(options.objectType)) {
    if (!tree_) {
        throw std::bad_alloc();
    }
}

Node* TreeBuilder::Add(std::size_t depth, const NewNode& node) {
    if (depth > open_.size() || (depth == 0 && !tree_->IsEmpty())) {
        Refuse(depth == 0 ? "there is a second root." : "nothing that could hold this node stands above it.");
    }
    open_.resize(depth);
    Node* const made = open_.empty() ? MakeRoot(node) : Make(open_.back(), node);
    Complete(made, node);
    if (Composite* const composite = node_cast<Composite>(made)) {
        open_.push_back(composite);
        if (open_.size() > options_.limits.nesting) {
            throw Failure(InspectTooDeep, "vectors and maps are nested more than " +
                                              std::to_string(options_.limits.nesting) + " levels deep.");
        }
    }
    return made;
}

Node* TreeBuilder::MakeRoot(const NewNode& node) {
    if (node.index >= 0) {
        Refuse("a root has no index.");
    }
    return tree_->NewRoot(node.kind, false, TagToMake(node));
}

Node* TreeBuilder::Make(Composite* parent, const NewNode& node) {
    if (const Map* const map = node_cast<Map>(parent)) {
        return parent->NewNode(CheckedIndex(map, node), node.kind, false, TagToMake(node));
    }
    if (node.index >= 0) {
        Refuse("an element of a vector has no index.");
    }
    auto* const vector = static_cast<Vector*>(parent);
    return vector->Insert(vector->GetSize(TemporalityTemporary), node.kind, TagToMake(node));
}

}  // namespace KivInspect
