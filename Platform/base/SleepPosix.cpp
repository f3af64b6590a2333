#include <KivSynch/Sleep.h>

#include <sched.h>
#include <time.h>

void Sleep(unsigned long milliseconds) noexcept {
    if (milliseconds == 0) {
        sched_yield();
        return;
    }
    timespec rest = {static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1'000'000};
    while (nanosleep(&rest, &rest) != 0) {
        // A signal came: what was left of the time stands in `rest`.
    }
}
