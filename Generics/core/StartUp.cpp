#include "core/StartUp.h"

#include <cstdint>
#include <new>

#include <KivBase/ModuleEntry.h>
#include <KivGenerics/Initializer.h>
#include <KivLog/Initializer.h>
#include <KivLog/Router.h>
#include <KivLogRouter/Initializer.h>
#include <KivSynch/AtomicLong.h>
#include <KivSynch/LockStackCategory.h>
#include <KivSynch/Sleep.h>

namespace KivGenerics {
namespace {

constexpr std::int32_t kFree = 0;
constexpr std::int32_t kHeld = 0x12345678;
constexpr auto kLockCategory = static_cast<KivSynch::EnumOrvLockStackCategory>(-3);
constexpr char16_t kRouterName[] = u"Orv Generics";

// Made in this order and taken down in the opposite one. The routers are set up for the host's logging; the library
// itself writes nothing to them.
struct LoggingState {
    KivLog::Initializer log;
    KivLogRouter::Initializer logRouter;
    KivBase::ReturnPtrI<KivLog::Router> errorRouter = KivLog::CreateRouter(kRouterName, u"Error", kLockCategory);
    KivBase::ReturnPtrI<KivLog::Router> traceRouter = KivLog::CreateRouter(kRouterName, u"TreeTrace", kLockCategory);
};

// A spin lock, since it must work before anything else of the process has been set up and after it has been taken down.
KivSynch::AtomicLong startUpLock(kFree);
int instances = 0;  // under the lock
LoggingState* state = nullptr;  // under the lock

class StartUpLock {
public:
    StartUpLock() noexcept {
        while (startUpLock.Exchange(kHeld) == kHeld) {
            Sleep(0);
        }
    }
    ~StartUpLock() { startUpLock.Set(kFree); }
    StartUpLock(const StartUpLock&) = delete;
    StartUpLock& operator=(const StartUpLock&) = delete;
};

void* moduleHandle = nullptr;
bool startedByModule = false;

}  // namespace

void StartUp() {
    const StartUpLock lock;
    if (++instances != 1) {
        return;
    }
    try {
        state = new (std::nothrow) LoggingState;
    } catch (...) {
        --instances;
        throw;
    }
}

void ShutDown() noexcept {
    const StartUpLock lock;
    if (--instances == 0) {
        delete state;
        state = nullptr;
    }
}

void* GetModuleHandleOfLibrary() noexcept {
    return moduleHandle;
}

Initializer::Initializer() {
    StartUp();
}

Initializer& Initializer::operator=(const Initializer&) noexcept {
    return *this;
}

Initializer::~Initializer() {
    ShutDown();
}

}  // namespace KivGenerics

// The module entry has no one to report a failure to: a start-up that fails leaves the library without its routers, and
// there is nothing to shut down then.
void KivBase::ModuleAttach(void* module) noexcept {
    KivGenerics::moduleHandle = module;
    try {
        KivGenerics::StartUp();
        KivGenerics::startedByModule = true;
    } catch (...) {
        KivGenerics::startedByModule = false;
    }
}

void KivBase::ModuleDetach() noexcept {
    if (KivGenerics::startedByModule) {
        KivGenerics::startedByModule = false;
        KivGenerics::ShutDown();
    }
}
