#pragma once

#include <KivLog/Observer.h>

namespace KivLog {

/// The observer that stands, or null.
Observer* GetObserver() noexcept;

}  // namespace KivLog
