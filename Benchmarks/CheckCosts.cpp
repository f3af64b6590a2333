// The checks of the costs alone, where the library that measures is not at hand.

#include <cstdio>

#include "CostCheck.h"

int main() {
    const int broken = CheckCosts() + CheckMemory() + CheckSets();
    std::printf("%d limits broken\n", broken);
    return broken == 0 ? 0 : 1;
}
