#pragma once

#include <KivGenerics/Export.h>

namespace KivGenerics {

/// Keeps the library's logging set up while at least one exists. The loaded library itself holds one from load to unload,
/// so a host needs none; they are counted.
///
/// Threads: may be made and destroyed on any thread.
class KIV_GENERICS_EXPORT Initializer {
public:
    /// Throws what the host's logging throws when it cannot start; nothing is counted then.
    Initializer();
    Initializer(const Initializer&) = delete;
    /// Does nothing: both objects go on counting for themselves.
    Initializer& operator=(const Initializer&) noexcept;
    ~Initializer();
};

}  // namespace KivGenerics
