#pragma once

#include <cstdint>

namespace KivBase {

/// The interface of an object that counts its references and deletes itself when the last one goes.
///
/// Threads: both operations may be called from any thread.
class ReferenceCounted {
protected:
    // Declared first: the destructor owns the first slots of the virtual table, AddRef and Release the next two.
    virtual ~ReferenceCounted() = default;

public:
    /// Takes one reference; returns the new count.
    virtual std::int32_t AddRef() = 0;
    /// Gives one reference back; returns the new count. At 0 the object is gone.
    virtual std::int32_t Release() = 0;

protected:
    ReferenceCounted() = default;
    ReferenceCounted(const ReferenceCounted&) = default;
    ReferenceCounted& operator=(const ReferenceCounted&) = default;
};

}  // namespace KivBase
