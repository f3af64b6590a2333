#include "targets/system/SystemTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    KivFuzz::RunSystem(bytes, count);
    return 0;
}
