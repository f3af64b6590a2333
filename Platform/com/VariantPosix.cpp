#include <KivCOMShared/Variant.h>

void VariantInit(VARIANT* variant) noexcept {
    *variant = VARIANT{};
}
