#include <atomic>

#include <KivLog/Initializer.h>
#include <KivLogRouter/Initializer.h>

#include "logging/Observer.h"

namespace KivLog {
namespace {

std::atomic<Observer*> currentObserver{nullptr};

}  // namespace

Observer* SetObserver(Observer* observer) noexcept {
    return currentObserver.exchange(observer);
}

Observer* GetObserver() noexcept {
    return currentObserver.load();
}

Initializer::Initializer() {
    if (Observer* const observer = GetObserver()) {
        observer->LogStarting();
    }
}

Initializer::~Initializer() {
    if (Observer* const observer = GetObserver()) {
        observer->LogStopped();
    }
}

}  // namespace KivLog

namespace KivLogRouter {

Initializer::Initializer() {
    if (KivLog::Observer* const observer = KivLog::GetObserver()) {
        observer->LogRouterStarting();
    }
}

Initializer::~Initializer() {
    if (KivLog::Observer* const observer = KivLog::GetObserver()) {
        observer->LogRouterStopped();
    }
}

}  // namespace KivLogRouter
