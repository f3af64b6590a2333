#pragma once

#include <cstdint>

#include <KivBase/Export.h>

namespace KivLog {

/// Sees what the logging platform is asked for. A host can watch start-up and shut-down with it, a test record them.
///
/// Threads: called on the thread that causes the event.
/// An exception thrown by a starting event or by RouterCreated passes to whoever asked; the ending events must not throw.
class Observer {
public:
    virtual ~Observer() = default;
    virtual void LogStarting() {}  ///< a KivLog::Initializer is being made
    virtual void LogStopped() {}  ///< a KivLog::Initializer has gone
    virtual void LogRouterStarting() {}  ///< a KivLogRouter::Initializer is being made
    virtual void LogRouterStopped() {}  ///< a KivLogRouter::Initializer has gone
    /// CreateRouter was called.
    virtual void RouterCreated(const char16_t* /*name*/, const char16_t* /*category*/, std::int32_t /*lockCategory*/) {}
    /// The last reference on a router has gone.
    virtual void RouterReleased(const char16_t* /*name*/, const char16_t* /*category*/) {}
};

/// Sets the one observer; null for none. Returns the one that stood before. The observer must outlive its setting.
KIV_PLATFORM_EXPORT Observer* SetObserver(Observer* observer) noexcept;

}  // namespace KivLog
