#include "Failure.h"

#include <cstdio>
#include <cstdlib>

namespace Peers {

void Fail(const std::string& sentence) {
    std::fprintf(stderr, "%s\n", sentence.c_str());
    std::exit(1);
}

}  // namespace Peers
