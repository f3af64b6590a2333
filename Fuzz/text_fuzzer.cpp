#include "targets/inspect/InspectTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    KivFuzz::RunText(bytes, count);
    return 0;
}
