#include "targets/Growing.h"
#include "targets/Targets.h"
#include "targets/TreeUse.h"

namespace KivFuzz {

void RunRoundTrip(const std::uint8_t* bytes, std::size_t count) {
    Input input(bytes, count);
    const bool withTransient = input.TakeByte() % 2 == 1;
    const auto tree = KivGenerics::CreateGenericTree(KivGenerics::EnumOrvObjectType(0));
    GrowTree(*tree, input);
    UseTree(*tree);
    CheckRoundTrip(*tree, withTransient);
}

}  // namespace KivFuzz
