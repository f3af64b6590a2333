#include "targets/Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    KivFuzz::RunRoundTrip(bytes, count);
    return 0;
}
