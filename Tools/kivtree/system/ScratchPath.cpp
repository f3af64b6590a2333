#include <cstdio>
#include <random>

#include "kivtree/system/ScratchFile.h"

namespace KivTree {

std::filesystem::path ScratchPathFor(const std::filesystem::path& target) {
    std::random_device random;
    char name[40];
    std::snprintf(name, sizeof name, ".kivtree-%08x%08x", random(), random());
    return target.parent_path() / name;
}

}  // namespace KivTree
