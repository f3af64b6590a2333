#pragma once

#include <KivGenerics/Tree.h>

#include "targets/Input.h"

namespace KivFuzz {

/// Builds up a tree, and takes parts of it away again, as the bytes say: every kind of node, value, tag, temporality and place
/// that the public interface takes, and what it refuses.
void GrowTree(KivGenerics::Tree& tree, Input& input);

}  // namespace KivFuzz
