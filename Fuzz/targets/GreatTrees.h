#pragma once

#include <KivGenerics/Tree.h>

#include "targets/Input.h"

namespace KivFuzz {

/// As GrowTree; or a tree for which an input has not enough bytes: a text that takes two blocks of a file or, of long inputs alone,
/// more children than two bytes count, a text that is too long to load, more levels than a save takes. With such a tree nothing
/// may be tried that recurses.
void GrowTreeOfAnySize(KivGenerics::Tree& tree, Input& input);

}  // namespace KivFuzz
