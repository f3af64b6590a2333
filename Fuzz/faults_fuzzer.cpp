#include "targets/Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    KivFuzz::RunFaults(bytes, count);
    return 0;
}
