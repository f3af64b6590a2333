#pragma once

#include <string>

#include <KivGenerics/Map.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>

/// A tree of some size with every kind of node, for operations to fail on.
KivBase::ReturnPtrI<KivGenerics::Tree> NewDocument();
void FillDocument(KivGenerics::Tree& tree);

/// The tree as text: every node's key, kind, temporality and value, one a line. Equal texts, equal trees.
std::string Describe(KivGenerics::Tree& tree);

/// The number of nodes whose parent, index or tree is not what their place says; 0 for a sound tree.
int CountUnsoundNodes(KivGenerics::Tree& tree);
