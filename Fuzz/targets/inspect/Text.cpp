#include "targets/inspect/FormUse.h"
#include "targets/inspect/InspectTargets.h"

namespace KivFuzz {

void RunText(const std::uint8_t* bytes, std::size_t count) {
    CheckForm(LoadText, {reinterpret_cast<const char*>(bytes), count});
}

}  // namespace KivFuzz
