#include "targets/inspect/FormUse.h"
#include "targets/inspect/InspectTargets.h"

namespace KivFuzz {

void RunJson(const std::uint8_t* bytes, std::size_t count) {
    CheckForm(LoadJson, {reinterpret_cast<const char*>(bytes), count});
}

}  // namespace KivFuzz
