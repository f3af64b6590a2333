#pragma once

#include <functional>

#include <KivGenerics/Tree.h>

#include "faults/Faults.h"

namespace Faults {

/// What an operation promises when memory runs out: that nothing has changed, or that the tree is sound and can be used.
enum class Promise { TreeAsItWas, TreeUsable };

/// Runs an operation on a new document, beside another one, with its first allocation failing, then with its second, and so
/// on, until none fails. Expects the promise to be kept, and nothing to leak.
void RunWithEveryFault(const std::function<void(KivGenerics::Tree& tree, KivGenerics::Tree& other)>& operation,
                       Promise promise, Lasting lasting, bool answersNull);

}  // namespace Faults
