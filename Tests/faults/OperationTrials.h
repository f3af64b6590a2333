#pragma once

#include <functional>
#include <string>
#include <vector>

#include <KivGenerics/Tree.h>

#include "faults/EveryFault.h"

namespace Faults {

struct Trial {
    /// "Integer::Set": the class and the operation.
    std::string name;
    Promise promise;
    std::function<void(KivGenerics::Tree& tree, KivGenerics::Tree& other)> operation;
};

/// Every public operation of every class, those of nodes on every kind of them.
std::vector<Trial> AllTrials();

}  // namespace Faults
