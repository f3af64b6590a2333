#pragma once

#include <KivGenerics/Tree.h>

namespace KivFuzz {

/// Calls what a host may do to a tree that it has loaded, whatever is in it, and checks that the tree is sound. Changes
/// nothing but derived temporalities.
void UseTree(KivGenerics::Tree& tree);

/// Saves the tree, loads that, and saves it again. What FindUnsavedParts passes must come back as it was, in the size that
/// was predicted, and be saved to the same bytes; what it lists may be lost, or not load.
void CheckRoundTrip(KivGenerics::Tree& tree, bool withTransient);

/// Whether `loaded` is what a save of `saved` takes: kinds, places, tags, temporalities and values.
bool IsSameAsSaved(KivGenerics::Tree& saved, KivGenerics::Tree& loaded, bool withTransient);

}  // namespace KivFuzz
