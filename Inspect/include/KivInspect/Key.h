#pragma once

#include <string>
#include <string_view>

#include <KivGenerics/Node.h>
#include <KivGenerics/Tree.h>
#include <KivInspect/Names.h>

namespace KivInspect {

/// A node's key, in UTF-8: what Node::GetKey gives, with names for indexes that have one. Empty for a root.
std::string GetKey(const KivGenerics::Node* node, const Names* names = nullptr);

/// Appends one step of a key and its colon: the name of `index` among the children of `parent`, or the number. Of a name, the
/// characters ':' and '\' get a '\' before them; a name of digits alone is not used.
void AppendStep(std::string& key, const KivGenerics::Node* parent, int index, const Names* names);

/// What a search by key answers: the node, or null and the reason in a sentence.
struct FoundNode {
    KivGenerics::Node* node = nullptr;
    std::string problem;
};

/// The node of a key as people write it: "1:65:0:", with names for any of the numbers, with or without the last colon. "" and
/// ":" are the root.
FoundNode FindNode(const KivGenerics::Tree* tree, std::string_view key, const Names* names = nullptr);

}  // namespace KivInspect
