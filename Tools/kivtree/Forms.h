#pragma once

#include <string>

#include <KivInspect/LoadFile.h>

#include "kivtree/Context.h"
#include "kivtree/OutputFile.h"

namespace KivTree {

/// The form that "binary", "text" or "json" names; without a name, the one that the ending of `file` stands for. Throws Trouble
/// when neither says.
KivInspect::Form ChooseForm(const std::string& name, const std::string& file);

/// Writes a tree in a form, reads back what was written, and lets it stand only when it is the same tree. In the binary form
/// temporary nodes are left out, and said to be. Throws Trouble when anything else would be lost.
void WriteProved(KivGenerics::Tree* tree, KivInspect::Form form, OutputFile& out);

}  // namespace KivTree
