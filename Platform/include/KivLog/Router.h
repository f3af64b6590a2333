#pragma once

#include <KivBase/Export.h>
#include <KivBase/ReferenceCounted.h>
#include <KivBase/ReturnPtrI.h>
#include <KivBase/WString.h>
#include <KivSynch/LockStackCategory.h>

namespace KivLog {

/// Where routed text ends up: a host's file, console or network.
class Sink {
public:
    virtual ~Sink() = default;
    /// Called by Router::Write on the writing thread, under no lock.
    virtual void Write(const char16_t* router, const char16_t* category, const char16_t* text) = 0;
};

/// Sends what is written to it to the sink that stands at that moment; without one the text is dropped.
class Router : public KivBase::ReferenceCounted {
public:
    virtual const char16_t* GetName() const = 0;
    virtual const char16_t* GetCategory() const = 0;
    /// Null text is ignored. Throws what the sink throws.
    virtual void Write(const char16_t* text) = 0;
};

/// A new router, its one reference held by the result. Throws std::bad_alloc.
KIV_PLATFORM_EXPORT KivBase::ReturnPtrI<Router> CreateRouter(const char16_t* name, const char16_t* category,
                                                             KivSynch::EnumOrvLockStackCategory lockCategory);

/// Sets the one sink of all routers; null for none. Returns the one that stood before. It must outlive its setting.
KIV_PLATFORM_EXPORT Sink* SetSink(Sink* sink) noexcept;

}  // namespace KivLog
