#pragma once

#include <string>

#include <KivGenerics/NodeType.h>
#include <KivGenerics/SemanticTag.h>
#include <KivGenerics/Temporality.h>
#include <KivInspect/Names.h>

namespace KivTree {

// What words of the command line mean. Each throws Trouble for a word that means nothing.

/// "default" to "temporary", or a number.
KivGenerics::EnumOrvGenericsTemporality ParseTemporality(const std::string& word);
/// "Integer" to "Integer64", in any case.
KivGenerics::NodeType ParseKind(const std::string& word);
/// A number, or a name of the dictionary.
KivGenerics::SemanticTag ParseTag(const std::string& word, const KivInspect::Names& names);

}  // namespace KivTree
