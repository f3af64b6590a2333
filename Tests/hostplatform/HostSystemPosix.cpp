#include <KivCOMShared/Variant.h>
#include <KivSynch/Sleep.h>

#include <chrono>
#include <thread>

void Sleep(unsigned long milliseconds) noexcept {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void VariantInit(VARIANT* variant) noexcept {
    *variant = VARIANT{};
}
