#pragma once

#include <functional>
#include <optional>
#include <string>

#include <KivGenerics/Node.h>
#include <KivGenerics/NodeType.h>
#include <KivGenerics/SemanticTag.h>
#include <KivGenerics/Temporality.h>
#include <KivGenerics/Tree.h>
#include <KivInspect/KeyPattern.h>
#include <KivInspect/Names.h>
#include <KivInspect/Regex.h>
#include <KivInspect/Walk.h>

namespace KivInspect {

/// What a node must be to be found: everything that is given.
struct FindQuery {
    std::optional<KeyPattern> key;
    std::optional<KivGenerics::NodeType> kind;
    std::optional<KivGenerics::SemanticTag> tag;  ///< of a map
    std::optional<KivGenerics::EnumOrvGenericsTemporality> temporality;  ///< its own
    /// The value of a leaf or an element of a set: as AppendValue writes it, or, of a text, the text itself.
    std::optional<std::string> value;
    /// Matches a text, or an element of a set of texts.
    std::optional<Regex> regex;
};

/// Shows what is found in the order of keys; the walk stands at the node. False ends the search.
using OnFound = std::function<bool(KivGenerics::Node* node, const Walk& walk)>;

/// Searches a tree from its root. With a key pattern, only where it may match.
void Find(const KivGenerics::Tree* tree, const FindQuery& query, const Names* names, const OnFound& onFound);

}  // namespace KivInspect
