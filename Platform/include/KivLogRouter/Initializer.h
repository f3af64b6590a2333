#pragma once

#include <KivBase/Export.h>
#include <KivBase/NoCopy.h>

namespace KivLogRouter {

/// Keeps the routing of log texts running while at least one exists.
class KIV_PLATFORM_EXPORT Initializer : private KivBase::NoCopy {
public:
    Initializer();
    ~Initializer();
};

}  // namespace KivLogRouter
